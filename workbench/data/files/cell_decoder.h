// CellDecoder: the cells of a table's columns as values in the slots of cases, whoever reads the cells.
//
// Used by one thread at a time.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/case_reader.h"
#include "workbench/data/cells/cell_reader.h"
#include "workbench/data/cells/short_decimal.h"
#include "workbench/data/cells/system_missing.h"
#include "workbench/data/files/csv_table.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class CellDecoder {
 public:
  // The table, or its dictionary and layout, outlives the decoder. The slots of variables that are not wanted are left
  // as they are.
  explicit CellDecoder(const CsvTable& table, const VariableSubset& wanted = {})
      : CellDecoder(table.columns, table.dictionary, table.layout, wanted) {}
  // The same for a table whose columns feed variables of this dictionary.
  CellDecoder(const std::vector<CsvColumn>& columns, const Dictionary& dictionary, const CaseLayout& layout,
              const VariableSubset& wanted);

  // Stores so many cells of a column, one per case, into cases that lie `caseSlots` slots apart. `cells` gives a row's
  // text by text(row), and by isNull(row) whether it holds no value whatever its column; arePadded promises
  // readableBehind of every text. Gives the row of a cell that does not read, and ends there.
  template <class Cells>
  std::optional<std::size_t> decode(std::size_t column, const Cells& cells, std::size_t rows, OBS* cases,
                                    std::size_t caseSlots);
  // Makes missing what no column feeds.
  void fillUnfed(OBS* cases, std::size_t rows, std::size_t caseSlots) const;

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
  static std::optional<double> scaledNumberOf(std::string_view cell);  // requires: readableBehind
  static std::optional<double> longNumberOf(std::string_view cell);
  static std::optional<double> momentOf(std::string_view cell, FormatType format);
  template <class Cells, class ValueOf>
  std::optional<std::size_t> decodeNumbers(const Cells& cells, std::size_t rows, OBS* values, std::size_t caseSlots,
                                           ValueOf valueOf);
  template <class Cells, class HoldsNoValue>
  std::optional<std::size_t> decodeTexts(const Column& column, const Cells& cells, std::size_t rows, OBS* values,
                                         std::size_t caseSlots, HoldsNoValue holdsNoValue);

  const Dictionary& dictionary_;
  const CaseLayout& layout_;
  std::vector<Column> columns_;
  std::vector<std::int32_t> unfed_;  // variables
};

// Stores a text and blanks behind it, eight bytes at a time. Requires: readableBehind; it is no longer than slotBytes.
inline void storePadded(std::string_view text, OBS* slots, std::size_t slotBytes) {
  constexpr std::uint64_t blanks = 0x2020202020202020;
  const OBS* const behind = slots + slotBytes / sizeof(OBS);
  const char* next = text.data();
  std::size_t rest = text.size();
  for (; rest >= sizeof blanks; rest -= sizeof blanks, next += sizeof blanks) {
    std::memcpy(slots++->text, next, sizeof blanks);
  }
  if (slots == behind) return;
  const std::uint64_t inside = (std::uint64_t{1} << (rest * 8)) - 1;
  const std::uint64_t last = (eightBytes(next) & inside) | (blanks & ~inside);
  std::memcpy(slots++->text, &last, sizeof last);
  for (; slots != behind; ++slots) std::memcpy(slots->text, &blanks, sizeof blanks);
}

template <class Cells>
std::optional<std::size_t> CellDecoder::decode(std::size_t column, const Cells& cells, std::size_t rows, OBS* cases,
                                               std::size_t caseSlots) {
  Column& how = columns_[column];
  OBS* const values = cases + how.slot;
  switch (how.decoding) {
    case Decoding::number:
      return decodeNumbers(cells, rows, values, caseSlots, [](std::string_view cell) {
        ShortDecimal number;
        if (Cells::arePadded ? number.readPadded(cell) : number.read(cell)) return std::optional(number.value());
        if (cell.empty()) return std::optional(systemMissing);
        return Cells::arePadded ? scaledNumberOf(cell) : longNumberOf(cell);
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
  return std::nullopt;
}

template <class Cells, class ValueOf>
std::optional<std::size_t> CellDecoder::decodeNumbers(const Cells& cells, std::size_t rows, OBS* values,
                                                      std::size_t caseSlots, ValueOf valueOf) {
  const Cells own = cells;
  for (std::size_t row = 0; row < rows; ++row, values += caseSlots) {
    const std::string_view cell = own.text(row);
    const std::optional<double> value = own.isNull(row) ? std::optional(systemMissing) : valueOf(cell);
    if (!value) return row;
    values->number = *value;
  }
  return std::nullopt;
}

template <class Cells, class HoldsNoValue>
std::optional<std::size_t> CellDecoder::decodeTexts(const Column& column, const Cells& cells, std::size_t rows,
                                                    OBS* values, std::size_t caseSlots, HoldsNoValue holdsNoValue) {
  const Cells own = cells;
  for (std::size_t row = 0; row < rows; ++row, values += caseSlots) {
    const std::string_view cell = own.text(row);
    // An empty text stays where it is, too: what stands behind it can be read.
    const std::string_view value = own.isNull(row) || holdsNoValue(cell) ? cell.substr(0, 0) : cell;
    if (value.size() > column.width) return row;
    if constexpr (Cells::arePadded && std::endian::native == std::endian::little) {
      storePadded(value, values, column.slotBytes);
    } else {
      std::memcpy(values->text, value.data(), value.size());
      std::memset(values->text + value.size(), ' ', column.slotBytes - value.size());
    }
  }
  return std::nullopt;
}

}  // namespace workbench::data
