#include "workbench/data/files/declared_column.h"

#include <algorithm>
#include <utility>

#include "workbench/text/string_comparison.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

DeclaredColumn inOrder(DeclaredColumn column) {
  std::sort(column.numbers.begin(), column.numbers.end());
  for (std::string& text : column.texts) text = text::withoutTrailingBlanks(text);
  std::sort(column.texts.begin(), column.texts.end());
  return column;
}

template <class LineOf>
void note(std::uint64_t& count, CellSighting& first, std::string_view cell, LineOf lineOf) {
  if (count++ == 0) first = sightingOf(cell, lineOf());
}

}  // namespace

DeclaredCells::DeclaredCells(DeclaredColumn column) : column_(inOrder(std::move(column))), reader_(column_.reading) {}

std::size_t DeclaredCells::add(const CellBatch& cells, std::size_t column, std::size_t records,
                               ColumnEvidence& evidence) {
  const ColumnCells own = cells.column(column);
  for (std::size_t record = 0; record < records; ++record) {
    const std::string_view cell = own.text(record);
    if (own.isNull(record) || reader_.holdsNoValue(cell)) {
      evidence.addAs("", cells, record, column);
      continue;
    }
    if (!reader_.plainText(cell, plain_)) return record;
    evidence.addAs(plain_, cells, record, column);
    const auto line = [&] { return cells.lineOf(record, column); };
    if (isOutside(cell)) note(findings_.outside, findings_.firstOutside, cell, line);
    if (reader_.hasOddGroups(cell)) note(findings_.oddGroups, findings_.firstOddGroups, cell, line);
  }
  return records;
}

bool DeclaredCells::isOutside(std::string_view cell) {
  if (!column_.numbers.empty()) {
    const std::optional<double> value = reader_.number(cell);
    return !value || !std::binary_search(column_.numbers.begin(), column_.numbers.end(), *value);
  }
  if (column_.texts.empty()) return false;
  return !std::binary_search(column_.texts.begin(), column_.texts.end(), text::withoutTrailingBlanks(cell),
                             std::less<std::string_view>());
}

DeclaredFindings DeclaredCells::findings() const {
  DeclaredFindings findings = findings_;
  findings.zoned = reader_.sawZones();
  return findings;
}

Problem cellProblem(const std::string& where, std::string_view column, std::string_view cell, CellReader& reader) {
  const std::string why = reader.whyNot(cell, sightingOf(cell, 0).quoted());
  return {text::sentence("Column \"^1\" is declared as ^2, and ^3.", {column, nameOf(reader.reading().type), why}),
          where, text::sentence("Correct the cell or what is declared, or list its text among the missing values.")};
}

}  // namespace workbench::data
