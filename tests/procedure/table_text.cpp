#include "tests/procedure/table_text.h"

#include <fmt/format.h>

#include <vector>

#include "tests/support/dataset_builder.h"

namespace workbench::tests {

namespace {

std::string quoted(const std::string& text) {
  std::string all;
  for (const char character : text) all += character == '\n' ? std::string("\\n") : std::string(1, character);
  return '"' + all + '"';
}

std::string numberText(double number) { return number == missing ? "." : fmt::format("{}", number); }

std::string joined(const std::vector<output::Text>& items) {
  std::string all;
  for (const output::Text& item : items) all += (all.empty() ? "" : "|") + exact(item);
  return all;
}

std::string flag(bool value) { return value ? "true" : "false"; }

std::string positionText(const std::optional<output::Position>& position) {
  if (!position) return "(unplaced)";
  return fmt::format("({},{},{},{})", position->place, position->index, flag(position->flags[0]),
                     flag(position->flags[1]));
}

// The categories of a node, each with a blank before it.
std::string childrenOf(const output::Dimension& dimension, const output::Category& node) {
  std::string all;
  for (const std::int32_t child : node.children) {
    const output::Category& category = dimension.nodes[static_cast<std::size_t>(child)];
    const std::string title = exact(category.title);
    if (category.isGroup) {
      all += fmt::format(" [{} {},{}:{}]", title, flag(category.showTitle), category.sort,
                         childrenOf(dimension, category));
    } else {
      all += ' ' + title;
      for (const std::int32_t note : category.notes) all += fmt::format("^{}", note);
    }
  }
  return all;
}

}  // namespace

std::string exact(const output::Text& text) {
  struct Visitor {
    std::string operator()(const output::StringText& held) const {
      return held.translate ? held.key : quoted(held.key);
    }
    std::string operator()(const output::NumberText& held) const {
      return numberText(held.value) + (held.format == BpFormat::percent ? "%" : "");
    }
    std::string operator()(const output::VariableText& held) const {
      return held.show == BpVariableShow::nameAndLabel ? fmt::format("<{}>", held.name)
                                                       : fmt::format("<{},{}>", held.name, static_cast<int>(held.show));
    }
    std::string operator()(const output::ValueText& held) const {
      const auto* number = std::get_if<double>(&held.value);
      return held.variable->name + ':' +
             (number != nullptr ? numberText(*number) : quoted(std::get<std::string>(held.value)));
    }
    std::string operator()(const output::CompositeText& held) const {
      return (held.translate ? held.pattern : quoted(held.pattern)) + '{' + joined(held.items) + '}';
    }
    std::string operator()(const output::ListText& held) const { return '[' + joined(held.items) + ']'; }
  };
  return std::visit(Visitor(), text.held);
}

std::string shapeOf(const output::Table* table) {
  if (table == nullptr) return "no table";
  std::string all;
  for (const output::Dimension& dimension : table->dimensions) {
    all += fmt::format("{} {} {}{}\n", exact(dimension.title), dimension.sort, positionText(dimension.position),
                       childrenOf(dimension, dimension.nodes.front()));
  }
  return all;
}

std::string cellsOf(const output::Table* table) {
  if (table == nullptr) return "no table";
  std::string all;
  for (std::size_t index = 0; index < table->cells.size(); ++index) {
    std::string line;
    const auto at = table->at(index);
    for (std::size_t number = 0; number < at.size(); ++number) {
      const output::Dimension& dimension = table->dimensions[number];
      line += (line.empty() ? "" : "|") + exact(dimension.nodes[static_cast<std::size_t>(at[number])].title);
    }
    line += " = " + exact(*table->cells[index].content);
    for (const std::int32_t note : table->cells[index].notes) line += fmt::format("^{}", note);
    all += line + '\n';
  }
  return all;
}

std::string captionOf(const output::Table* table) {
  if (table == nullptr) return "no table";
  return table->caption ? exact(*table->caption) : "none";
}

}  // namespace workbench::tests
