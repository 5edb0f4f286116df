// CellDecoder: the cells of a table's columns as values in the slots of cases, whoever reads the cells.
//
// Used by one thread at a time.
#pragma once

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/case_reader.h"
#include "workbench/data/cells/cell_reader.h"
#include "workbench/data/cells/decimal_text.h"
#include "workbench/data/cells/system_missing.h"
#include "workbench/data/files/csv_table.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class CellDecoder {
 public:
  // The table outlives the decoder. The slots of variables that are not wanted are left as they are.
  explicit CellDecoder(const CsvTable& table, const VariableSubset& wanted = {});

  // Stores so many cells of a column, one per case, into cases that lie `caseSlots` slots apart. `cells` gives a row's
  // text by text(row), and by isNull(row) whether it holds no value whatever its column. Gives the row of a cell that
  // does not read, and ends there.
  template <class Cells>
  std::optional<std::size_t> decode(std::size_t column, const Cells& cells, std::size_t rows, OBS* cases,
                                    std::size_t caseSlots);
  // Makes missing what no column feeds.
  void fillUnfed(OBS* cases, std::size_t rows, std::size_t caseSlots) const;

  // Of all cells so far, taken or not.
  std::uint64_t bytesRead() const { return bytesRead_; }
  // What to tell of a cell that did not read. `where` is its file and line or case.
  Problem refusal(std::size_t column, std::string_view cell, const std::string& where);

 private:
  enum class Decoding { skipped, number, moment, text, declaredNumber, declaredText };
  struct Column {
    Decoding decoding = Decoding::skipped;
    std::int32_t variable = -1;
    std::size_t slot = 0;
    FormatType format = FormatType::number;  // tells a date from a time, where nothing is declared
    std::size_t width = 0;                   // of a text, in bytes
    std::size_t slotBytes = 0;               // of a text
    std::optional<CellReader> reader;
  };

  Column columnOf(const CsvColumn& column) const;  // requires: it feeds a variable
  // Of filled cells; nothing when they are none of that kind.
  static std::optional<double> longNumberOf(std::string_view cell);
  static std::optional<double> momentOf(std::string_view cell, FormatType format);
  template <class Cells, class ValueOf>
  std::optional<std::size_t> decodeNumbers(const Cells& cells, std::size_t rows, OBS* values, std::size_t caseSlots,
                                           ValueOf valueOf);
  template <class Cells, class HoldsNoValue>
  std::optional<std::size_t> decodeTexts(const Column& column, const Cells& cells, std::size_t rows, OBS* values,
                                         std::size_t caseSlots, HoldsNoValue holdsNoValue);

  const CsvTable& table_;
  std::vector<Column> columns_;
  std::vector<std::int32_t> unfed_;  // variables
  std::uint64_t bytesRead_ = 0;
};

template <class Cells>
std::optional<std::size_t> CellDecoder::decode(std::size_t column, const Cells& cells, std::size_t rows, OBS* cases,
                                               std::size_t caseSlots) {
  Column& how = columns_[column];
  OBS* const values = cases + how.slot;
  switch (how.decoding) {
    case Decoding::number:
      return decodeNumbers(cells, rows, values, caseSlots, [](std::string_view cell) {
        if (ShortDecimal number; readShortDecimal(cell, number)) return std::optional(number.value());
        return cell.empty() ? std::optional(systemMissing) : longNumberOf(cell);
      });
    case Decoding::moment:
      return decodeNumbers(cells, rows, values, caseSlots, [format = how.format](std::string_view cell) {
        return cell.empty() ? std::optional(systemMissing) : momentOf(cell, format);
      });
    case Decoding::declaredNumber:
      return decodeNumbers(cells, rows, values, caseSlots, [&reader = *how.reader](std::string_view cell) {
        return reader.holdsNoValue(cell) ? std::optional(systemMissing) : reader.number(cell);
      });
    case Decoding::text:
      return decodeTexts(how, cells, rows, values, caseSlots, [](std::string_view) { return false; });
    case Decoding::declaredText:
      return decodeTexts(how, cells, rows, values, caseSlots,
                         [&reader = *how.reader](std::string_view cell) { return reader.holdsNoValue(cell); });
    case Decoding::skipped:
      break;
  }
  for (std::size_t row = 0; row < rows; ++row) bytesRead_ += cells.text(row).size();
  return std::nullopt;
}

template <class Cells, class ValueOf>
std::optional<std::size_t> CellDecoder::decodeNumbers(const Cells& cells, std::size_t rows, OBS* values,
                                                      std::size_t caseSlots, ValueOf valueOf) {
  std::uint64_t bytes = 0;
  for (std::size_t row = 0; row < rows; ++row, values += caseSlots) {
    const std::string_view cell = cells.text(row);
    const std::optional<double> value = cells.isNull(row) ? std::optional(systemMissing) : valueOf(cell);
    if (!value) return row;
    values->number = *value;
    bytes += cell.size();
  }
  bytesRead_ += bytes;
  return std::nullopt;
}

template <class Cells, class HoldsNoValue>
std::optional<std::size_t> CellDecoder::decodeTexts(const Column& column, const Cells& cells, std::size_t rows,
                                                    OBS* values, std::size_t caseSlots, HoldsNoValue holdsNoValue) {
  std::uint64_t bytes = 0;
  for (std::size_t row = 0; row < rows; ++row, values += caseSlots) {
    const std::string_view cell = cells.text(row);
    const std::string_view value = cells.isNull(row) || holdsNoValue(cell) ? std::string_view("") : cell;
    if (value.size() > column.width) return row;
    std::memcpy(values->text, value.data(), value.size());
    std::memset(values->text + value.size(), ' ', column.slotBytes - value.size());
    bytes += cell.size();
  }
  bytesRead_ += bytes;
  return std::nullopt;
}

}  // namespace workbench::data
