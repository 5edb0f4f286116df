// Laws that hold for every table, however it is filled.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <ctime>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "host/messages.h"
#include "tests/output/samples.h"
#include "tests/text/any_text.h"
#include "workbench/output/json_writer.h"
#include "workbench/output/table_layout.h"
#include "workbench/output/terminal_writer.h"

namespace workbench::output {
namespace {

BpPlace anyPlace() { return *rc::gen::element(BpPlace::rows, BpPlace::columns, BpPlace::layers); }

// Makes calls at random: new and known categories and groups, cells, footnotes.
void fillAtRandom(BpPivotTable& table, const BpAnnotation& first, const BpAnnotation& second) {
  std::vector<BpDimension> dimensions;
  std::vector<BpGroup> groups;
  std::vector<BpCategory> categories;
  for (int number = *rc::gen::inRange(1, 5); number > 0; --number) {
    BpDimension dimension = table.Dimension(plain(*text::anyText()), BpSort::asMade);
    if (*rc::gen::arbitrary<bool>()) {
      dimension.Position(anyPlace(), *rc::gen::inRange(-1, 3), *rc::gen::arbitrary<bool>(), false);
    }
    dimensions.push_back(dimension);
    groups.push_back(dimension);
  }
  for (int call = *rc::gen::inRange(0, 60); call > 0; --call) {
    const BpString title(*rc::gen::element<std::string>("a", "b", "c", "\x1b", "日本"), *rc::gen::arbitrary<bool>());
    BpGroup group = groups[static_cast<std::size_t>(*rc::gen::inRange<int>(0, static_cast<int>(groups.size())))];
    const int kind = *rc::gen::inRange(0, 6);
    if (kind == 0) groups.push_back(group.Group(title, *rc::gen::arbitrary<bool>(), BpSort::asMade));
    if (kind == 1 || categories.empty()) categories.push_back(group.Category(title));
    if (kind <= 1) continue;
    BpCategory& category =
        categories[static_cast<std::size_t>(*rc::gen::inRange<int>(0, static_cast<int>(categories.size())))];
    if (kind == 2) category.Note(*rc::gen::arbitrary<bool>() ? first : second);
    try {
      if (kind == 3) category.CellNote(*rc::gen::arbitrary<bool>() ? first : second);
      if (kind >= 4) category.Cell(both(count(call), title));
    } catch (const ErrorText&) {
      continue;  // another dimension has no category yet
    }
  }
}

void checkIndexes(const Table& table) {
  std::set<std::vector<std::int32_t>> addresses;
  RC_ASSERT(table.addresses.size() == table.cells.size() * table.dimensions.size());
  for (std::size_t cell = 0; cell < table.cells.size(); ++cell) {
    const std::span<const std::int32_t> at = table.at(cell);
    RC_ASSERT(addresses.emplace(at.begin(), at.end()).second);
    RC_ASSERT(table.cells[cell].content != nullptr);
    for (std::size_t number = 0; number < at.size(); ++number) {
      RC_ASSERT(!table.dimensions[number].nodes[static_cast<std::size_t>(at[number])].isGroup);
    }
    for (const std::int32_t note : table.cells[cell].notes) {
      RC_ASSERT(static_cast<std::size_t>(note) < table.footnotes.size());
    }
  }
  for (const Dimension& dimension : table.dimensions) {
    std::set<std::int32_t> reached{0};
    for (const Category& category : dimension.nodes) {
      for (const std::int32_t child : category.children) RC_ASSERT(reached.insert(child).second);
    }
    RC_ASSERT(reached.size() == dimension.nodes.size());
  }
}

// Every place of the grid's headers is covered exactly once.
void checkCovered(const std::vector<HeaderCell>& headers, std::int32_t rows, std::int32_t columns) {
  std::map<std::pair<std::int32_t, std::int32_t>, int> covered;
  for (const HeaderCell& header : headers) {
    for (std::int32_t row = 0; row < header.rowSpan; ++row) {
      for (std::int32_t column = 0; column < header.columnSpan; ++column) {
        RC_ASSERT(++covered[std::pair(header.row + row, header.column + column)] == 1);
      }
    }
  }
  RC_ASSERT(covered.size() == static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns));
}

RC_GTEST_PROP(RandomTables, HaveConsistentIndexesAndCanBeShown, (std::uint8_t width)) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    BpPivotTable table = procedure.PivotTable(key("Table"), plain("Table"), true);
    const BpAnnotation first(plain(*text::anyText()).Replicate());
    const BpAnnotation second(plain(*text::anyText()).Replicate());
    fillAtRandom(table, first, second);
    checkIndexes(command.table());
    std::size_t placed = 0;
    for (const TableLayout& layout : layoutsOf(command.table(), english())) {
      placed += layout.placedCells.size();
      checkCovered(layout.rowHeaders, layout.headerColumns > 0 ? layout.rows : 0, layout.headerColumns);
      const bool hasColumnHeaders = !layout.columnHeaders.empty();
      checkCovered(layout.columnHeaders, hasColumnHeaders ? layout.headerRows : 0, layout.columns);
    }
    RC_ASSERT(placed == command.table().cells.size());
    if (*rc::gen::inRange(0, 5) == 0) table.Destroy();
  }
  const Document document = command.intoDocument();
  std::ostringstream text;
  writeText(text, document, TextOptions{.wording = english(), .width = width});
  std::ostringstream json;
  writeJson(json, document, english());
  RC_ASSERT(nlohmann::json::accept(json.str()));
}

TEST(LargeTables, AreFilledInAboutConstantTimePerCell) {
  RunningCommand command;
  BpProcedure procedure("Test", 1);
  const auto secondsFor = [&](int rowCount, int columnCount) {
    BpPivotTable table = procedure.PivotTable(key("Table"), plain("Table"), true);
    BpDimension rows = table.Dimension(plain("rows"), BpSort::asMade);
    BpDimension columns = table.Dimension(plain("columns"), BpSort::asMade);
    const std::clock_t start = std::clock();
    for (int column = 0; column < columnCount; ++column) {
      columns.Category(count(column));
      for (int row = 0; row < rowCount; ++row) rows.Category(count(row)).Cell(plain(""));
    }
    const std::clock_t end = std::clock();
    table.Destroy();
    return static_cast<double>(end - start) / CLOCKS_PER_SEC;
  };
  const double small = secondsFor(20, 1000);
  const double large = secondsFor(20, 10000);
  // Ten times the cells; a look-up that walks through the categories would take a hundred times as long.
  EXPECT_LT(large, 40 * small + 0.5);
}

}  // namespace
}  // namespace workbench::output
