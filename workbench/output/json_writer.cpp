#include "workbench/output/json_writer.h"

#include <fmt/format.h>

#include <cmath>
#include <ostream>
#include <string>
#include <unordered_map>

#include "workbench/output/json_stream.h"
#include "workbench/output/text_rendering.h"

namespace workbench::output {
namespace {

constexpr TextStyle plainStyle{NumberStyle::plain, false};

std::string outcomeName(Command::Outcome outcome) {
  switch (outcome) {
    case Command::Outcome::refused:
      return "refused";
    case Command::Outcome::failed:
      return "failed";
    case Command::Outcome::completed:
      break;
  }
  return "completed";
}

Json verdictName(const std::optional<Verdict>& verdict) {
  if (!verdict) return nullptr;
  switch (*verdict) {
    case Verdict::different:
      return "different";
    case Verdict::trouble:
      return "trouble";
    case Verdict::same:
      break;
  }
  return "same";
}

// The members of a text that are its own; `text` comes last and is the same for all kinds.
struct TextMembers {
  const TextShower& shower;

  Json operator()(const StringText& text) const {
    return {{"kind", "string"}, {"key", text.key}, {"translate", text.translate}};
  }

  Json operator()(const NumberText& text) const {
    const char* format = text.format == BpFormat::percent ? "percent" : "count";
    return {{"kind", "number"}, {"value", jsonNumber(text.value)}, {"format", format}};
  }

  Json operator()(const VariableText& text) const {
    const Json label = text.label ? Json(*text.label) : Json(nullptr);
    return {{"kind", "variable"}, {"name", text.name}, {"label", label}, {"show", static_cast<int>(text.show)}};
  }

  // How a value is shown is a matter of its print format, which texts have none of.
  Json operator()(const ValueText& text) const {
    const double* number = std::get_if<double>(&text.value);
    Json members = {{"kind", "value"}, {"variable", text.variable->name}};
    members["value"] = number != nullptr ? jsonNumber(*number) : Json(std::get<std::string>(text.value));
    if (text.label) members["label"] = *text.label;
    if (number != nullptr) members["show"] = static_cast<int>(text.show);
    return members;
  }

  Json operator()(const CompositeText& text) const {
    return {
        {"kind", "composite"}, {"pattern", text.pattern}, {"translate", text.translate}, {"items", items(text.items)}};
  }

  Json operator()(const ListText& text) const { return {{"kind", "list"}, {"items", items(text.items)}}; }

  Json items(const std::vector<Text>& texts) const;
};

Json textObject(const Text& text, const TextShower& shower) {
  Json object = std::visit(TextMembers{shower}, text.held);
  if (!std::holds_alternative<ListText>(text.held)) object["text"] = shower(text);
  return object;
}

Json TextMembers::items(const std::vector<Text>& texts) const {
  Json all = Json::array();
  for (const Text& text : texts) all.push_back(textObject(text, shower));
  return all;
}

class DocumentWriter {
 public:
  DocumentWriter(std::ostream& out, const text::Wording& wording) : json_(out), wording_(wording) {}

  void write(const Document& document) {
    const auto all = json_.object();
    json_.member("format", "compare-datasets-results");
    json_.member("version", 1);
    {
      const auto commands = json_.array("commands");
      for (const std::unique_ptr<Command>& command : document.commands) write(*command);
    }
    json_.member("verdict", verdictName(document.verdict));
  }

 private:
  Json text(const Text& text) const { return jsonText(text, wording_); }
  Json textOrNull(const std::optional<Text>& text) const { return text ? jsonText(*text, wording_) : Json(nullptr); }

  void write(const Command& command) {
    const auto object = json_.object();
    json_.member("name", command.name);
    json_.member("syntax", command.syntax);
    json_.member("outcome", outcomeName(command.outcome));
    Json procedure;
    if (command.procedureTitle) procedure = {{"title", *command.procedureTitle}, {"code", command.procedureCode}};
    json_.member("procedure", procedure);
    const auto items = json_.array("items");
    for (const Item& item : command.items) {
      if (const auto* message = std::get_if<Message>(&item)) {
        write(*message);
      } else if (const auto* note = std::get_if<Note>(&item)) {
        write(*note);
      } else if (const Table& table = *std::get<std::unique_ptr<Table>>(item); !table.destroyed) {
        write(table);
      }
    }
  }

  void write(const Message& message) {
    Json object = {{"item", "message"}};
    if (message.number) {
      object["number"] = *message.number;
      object["codes"] = {message.show, message.level};
    } else {
      object["show"] = message.show;
      object["level"] = message.level;
    }
    if (message.source == Message::Source::parser) object["source"] = "parser";
    if (message.source == Message::Source::host) object["source"] = "host";
    if (message.line) object["line"] = *message.line;
    if (message.column) object["column"] = *message.column;
    object["message"] = text(message.text);
    json_.element(object);
  }

  void write(const Note& note) {
    Json texts = Json::array();
    for (const Text& one : note.texts) texts.push_back(text(one));
    json_.element({{"item", "note"}, {"group", note.group}, {"texts", texts}});
  }

  void write(const Table& table) {
    const auto object = json_.object();
    const auto* key = std::get_if<StringText>(&table.title.held);
    json_.member("item", "table");
    json_.member("key", key != nullptr ? key->key : std::string());
    json_.member("title", text(table.title));
    json_.member("defaultTitle", text(table.defaultTitle));
    json_.member("caption", textOrNull(table.caption));
    json_.member("minDataColumnWidth", table.minDataColumnWidth ? Json(*table.minDataColumnWidth) : Json(nullptr));
    json_.member("flag", table.flag);
    writeDimensions(table);
    writeCells(table);
    const auto footnotes = json_.array("footnotes");
    for (const Text& footnote : table.footnotes) json_.element(text(footnote));
  }

  void writeDimensions(const Table& table) {
    const auto dimensions = json_.array("dimensions");
    for (const Dimension& dimension : table.dimensions) {
      const auto object = json_.object();
      json_.member("title", text(dimension.title));
      json_.member("sort", dimension.sort);
      Json position;
      if (dimension.position) {
        position = {{"place", dimension.position->place}, {"index", dimension.position->index}};
        position["flags"] = {dimension.position->flags[0], dimension.position->flags[1]};
      }
      json_.member("position", position);
      writeCategories(dimension, dimension.nodes[0]);
    }
  }

  void writeCategories(const Dimension& dimension, const Category& group) {
    const auto categories = json_.array("categories");
    std::vector<const Text*> titles;
    for (const std::int32_t child : group.children) {
      titles.push_back(&dimension.nodes[static_cast<std::size_t>(child)].title);
    }
    const TextShower shower(titles, wording_, plainStyle);
    for (const std::int32_t child : group.children) {
      const Category& category = dimension.nodes[static_cast<std::size_t>(child)];
      const Json title = textObject(category.title, shower);
      if (!category.isGroup) {
        json_.element({{"title", title}, {"notes", category.notes}});
        continue;
      }
      const auto object = json_.object();
      json_.member("title", title);
      json_.member("group", true);
      json_.member("flag", category.showTitle);
      json_.member("sort", category.sort);
      writeCategories(dimension, category);
    }
  }

  void writeCells(const Table& table) {
    std::vector<std::vector<std::int32_t>> positions;
    for (const Dimension& dimension : table.dimensions) positions.push_back(dimension.leafPositions());
    const auto cells = json_.array("cells");
    std::unordered_map<const Text*, std::string> shared;  // the JSON of contents that many cells have
    std::vector<std::int32_t> at(table.dimensions.size());
    for (std::size_t number = 0; number < table.cells.size(); ++number) {
      const Cell& cell = table.cells[number];
      const std::span<const std::int32_t> nodes = table.at(number);
      for (std::size_t dimension = 0; dimension < nodes.size(); ++dimension) {
        at[dimension] = positions[dimension][static_cast<std::size_t>(nodes[dimension])];
      }
      std::string own;
      std::string& content = cell.content.use_count() > 1 ? shared[cell.content.get()] : own;
      if (content.empty()) content = compactJson(text(*cell.content));
      json_.elementOf(fmt::format(R"({{"at":[{}],"content":{},"notes":[{}]}})", fmt::join(at, ","), content,
                                  fmt::join(cell.notes, ",")));
    }
  }

  JsonStream json_;
  const text::Wording& wording_;
};

}  // namespace

void writeJson(std::ostream& out, const Document& document, const text::Wording& wording) {
  DocumentWriter(out, wording).write(document);
}

Json jsonText(const Text& text, const text::Wording& wording) {
  return textObject(text, TextShower({&text}, wording, plainStyle));
}

Json jsonNumber(double value) {
  constexpr double largestWhole = 9007199254740992.0;  // 2^53: up to it every whole number is a double
  if (isSystemMissing(value) || !std::isfinite(value)) return nullptr;
  const bool isNegativeZero = value == 0 && std::signbit(value);
  const bool isWhole = value == std::nearbyint(value) && std::fabs(value) <= largestWhole;
  if (isWhole && !isNegativeZero) return static_cast<std::int64_t>(value);
  return value;
}

}  // namespace workbench::output
