#include "tests/model/observed_table.h"

#include <fmt/format.h>

#include <vector>

#include "tests/model/cell_text.h"
#include "tests/model/table.h"

namespace workbench::tests::model {

namespace {

std::vector<std::string> observedItems(const std::vector<output::Text>& items) {
  std::vector<std::string> all;
  for (const output::Text& item : items) all.push_back(observedText(item));
  return all;
}

struct TextVisitor {
  std::string operator()(const output::StringText& held) const { return held.translate ? held.key : plain(held.key); }
  std::string operator()(const output::NumberText& held) const {
    return held.format == BpFormat::percent ? percentage(held.value) : bareNumber(held.value);
  }
  std::string operator()(const output::VariableText& held) const {
    const std::string label = held.label ? ' ' + plain(*held.label) : "";
    return fmt::format("<{}{} {}>", held.name, label, static_cast<int>(held.show));
  }
  std::string operator()(const output::ValueText& held) const {
    const std::string value =
        held.value.index() == 0 ? bareNumber(std::get<double>(held.value)) : plain(std::get<std::string>(held.value));
    return fmt::format("{}({}:{}.{})={}{} {}", held.variable->name, static_cast<int>(held.variable->format),
                       held.variable->width, held.variable->decimals, value, held.label ? ' ' + plain(*held.label) : "",
                       static_cast<int>(held.show));
  }
  std::string operator()(const output::CompositeText& held) const {
    return keyedComposite(held.translate ? held.pattern : plain(held.pattern), observedItems(held.items));
  }
  std::string operator()(const output::ListText& held) const { return list(observedItems(held.items)); }
};

std::string notesText(const std::vector<std::int32_t>& notes) {
  std::string all;
  for (const std::int32_t note : notes) all += fmt::format("^{}", note);
  return all;
}

std::string positionText(const std::optional<output::Position>& position) {
  if (!position) return "";
  return fmt::format("({},{},{},{})", position->place, position->index, position->flags[0], position->flags[1]);
}

std::string categoriesText(const output::Dimension& dimension, const output::Category& node) {
  std::string all;
  for (const std::int32_t child : node.children) {
    const output::Category& category = dimension.nodes[static_cast<std::size_t>(child)];
    const std::string title = observedText(category.title);
    all += ' ' + (category.isGroup
                      ? groupText(title, category.showTitle, category.sort, categoriesText(dimension, category))
                      : title + notesText(category.notes));
  }
  return all;
}

// From the dimension down to a node; empty when the node is not below that one.
Path pathTo(const output::Dimension& dimension, std::int32_t from, std::int32_t node) {
  for (const std::int32_t child : dimension.nodes[static_cast<std::size_t>(from)].children) {
    const std::string title = observedText(dimension.nodes[static_cast<std::size_t>(child)].title);
    if (child == node) return {title};
    Path path = pathTo(dimension, child, node);
    if (path.empty()) continue;
    path.insert(path.begin(), title);
    return path;
  }
  return {};
}

}  // namespace

std::string observedText(const output::Text& text) { return std::visit(TextVisitor(), text.held); }

std::string observedTable(const output::Table& table) {
  std::string all = tableHead(observedText(table.title), observedText(table.defaultTitle), table.flag,
                              table.minDataColumnWidth, table.caption ? observedText(*table.caption) : "none");
  std::vector<std::vector<Path>> paths;  // per dimension and node
  for (const output::Dimension& dimension : table.dimensions) {
    all += dimensionLine(observedText(dimension.title), dimension.sort, positionText(dimension.position),
                         categoriesText(dimension, dimension.nodes.front()));
    paths.emplace_back();
    for (std::size_t node = 0; node < dimension.nodes.size(); ++node) {
      paths.back().push_back(pathTo(dimension, 0, static_cast<std::int32_t>(node)));
    }
  }
  for (std::size_t index = 0; index < table.cells.size(); ++index) {
    const auto at = table.at(index);
    std::vector<Path> address;
    for (std::size_t number = 0; number < at.size(); ++number) {
      address.push_back(paths[number][static_cast<std::size_t>(at[number])]);
    }
    const output::Cell& cell = table.cells[index];
    all += cellLine(address, observedText(*cell.content), notesText(cell.notes));
  }
  for (const output::Text& footnote : table.footnotes) all += footnoteLine(observedText(footnote));
  return all;
}

}  // namespace workbench::tests::model
