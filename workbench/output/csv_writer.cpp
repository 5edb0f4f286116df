#include "workbench/output/csv_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>
#include <string_view>

#include "workbench/output/flat_grid.h"
#include "workbench/output/sentences.h"
#include "workbench/output/shown_results.h"
#include "workbench/text/utf8.h"

namespace workbench::output {
namespace {

constexpr TextStyle csvStyle{NumberStyle::full, false};

std::vector<const Table*> shownTables(const Document& document, const TextOptions& options) {
  std::vector<const Table*> tables;
  for (const ShownCommand& command : shownCommands(document, options.onlyTable)) {
    for (const Item* item : command.items) {
      if (const Table* table = tableOf(*item)) tables.push_back(table);
    }
  }
  return tables;
}

std::string withReplacements(const std::string& text) {
  if (text::isUtf8(text)) return text;
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const text::Character character = text::characterAt(text, at);
    text::appendCharacter(result, character.codePoint < 0 ? 0xFFFD : character.codePoint);
    at += character.bytes;
  }
  return result;
}

std::string field(const std::string& text) {
  const std::string content = withReplacements(text);
  const bool isPlain =
      content.find_first_of(",\"\r\n") == std::string::npos && !content.starts_with(' ') && !content.ends_with(' ');
  if (isPlain) return content;
  std::string quoted = "\"";
  for (const char character : content) {
    if (character == '"') quoted += '"';
    quoted += character;
  }
  return quoted + '"';
}

class Record {
 public:
  explicit Record(std::ostream& out) : out_(out) {}

  void add(const std::string& text) {
    if (fields_++ > 0) line_ += ',';
    line_ += field(text);
  }
  // An empty line would be no record.
  void end() {
    out_ << (line_.empty() ? "\"\"" : line_) << "\r\n";
    line_.clear();
    fields_ = 0;
  }

 private:
  std::ostream& out_;
  std::string line_;
  int fields_ = 0;
};

// The table with its layers as outermost row labels: one grid, with the same columns for all of them.
Table withoutLayers(const Table& table) {
  constexpr int outermost = 1 << 28;
  Table flat = table;
  for (Dimension& dimension : flat.dimensions) {
    if (!dimension.position || dimension.position->place != static_cast<int>(BpPlace::layers)) continue;
    dimension.position->place = static_cast<int>(BpPlace::rows);
    dimension.position->index = std::clamp(dimension.position->index, -outermost, outermost) - 2 * outermost;
  }
  return flat;
}

bool hasLayers(const Table& table) {
  return std::any_of(table.dimensions.begin(), table.dimensions.end(), [](const Dimension& dimension) {
    return dimension.position && dimension.position->place == static_cast<int>(BpPlace::layers);
  });
}

void writeGrid(std::ostream& out, const TableLayout& layout, const text::Wording& wording) {
  Record record(out);
  const FlatGrid grid(layout);
  const auto textOf = [](const HeaderCell* cell) { return cell != nullptr ? cell->text : std::string(); };
  for (std::int32_t level = 0; level < layout.headerColumns; ++level) record.add(textOf(grid.corner(level)));
  for (std::int32_t column = 0; column < layout.columns; ++column) {
    record.add(grid.columnHeader(column, [](const HeaderCell& cell) { return cell.text; }));
  }
  record.end();
  for (std::int32_t row = 0; row < layout.rows; ++row) {
    for (std::int32_t level = 0; level < layout.headerColumns; ++level) {
      const HeaderCell* const header = grid.rowHeader(row, level);
      const bool isFirst = header != nullptr && header->column == level;
      record.add(isFirst ? header->text : std::string());
    }
    std::int32_t next = 0;
    for (const PlacedCell& placed : layout.cellsOf(row)) {
      for (; next < placed.column; ++next) record.add({});
      record.add(shown(*layout.table->cells[placed.cell].content, wording, csvStyle));
      ++next;
    }
    for (; next < layout.columns; ++next) record.add({});
    record.end();
  }
}

void writeTable(std::ostream& out, const Table& table, const text::Wording& wording) {
  const std::vector<TableLayout> layouts = layoutsOf(table, wording, csvStyle);
  if (!layouts.empty()) writeGrid(out, layouts.front(), wording);
}

std::string keysOf(const std::vector<const Table*>& tables) {
  std::vector<std::string> keys;
  for (const Table* table : tables) {
    std::string key(keyOf(*table));
    if (!key.empty() && std::find(keys.begin(), keys.end(), key) == keys.end()) keys.push_back(std::move(key));
  }
  return fmt::format("{}", fmt::join(keys, ", "));
}

Problem noSingleTable(const std::vector<const Table*>& tables, const TextOptions& options) {
  const auto sentence = [&](std::string_view pattern, std::vector<std::string> items = {}) {
    return shownSentence(pattern, std::move(items), options.wording);
  };
  if (tables.empty()) return {sentence(sentences::noTable), "", ""};
  if (options.onlyTable) {
    return {sentence(sentences::severalOfOneKey, {*options.onlyTable}), "--table", sentence(sentences::oneCommand)};
  }
  return {sentence(sentences::severalTables), "--format csv", sentence(sentences::nameOneTable, {keysOf(tables)})};
}

}  // namespace

Outcome<Done> writeCsv(std::ostream& out, const Document& document, const TextOptions& options) {
  const std::vector<const Table*> tables = shownTables(document, options);
  if (tables.empty() && options.onlyTable) return Done{};
  if (tables.size() != 1) return noSingleTable(tables, options);
  if (hasLayers(*tables.front())) {
    writeTable(out, withoutLayers(*tables.front()), options.wording);
  } else {
    writeTable(out, *tables.front(), options.wording);
  }
  return Done{};
}

}  // namespace workbench::output
