#include "workbench/data/columnar/stored_case_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "host/messages.h"
#include "workbench/data/cells/calendar_text.h"
#include "workbench/data/cells/decimal_text.h"
#include "workbench/data/cells/system_missing.h"
#include "workbench/data/columnar/stored_values.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// Stores what the column's values are worth, one per case; gives the first row whose value cases do not hold.
template <class Value, class ValueOf>
std::optional<std::size_t> decodeNumbers(const VectorCells& cells, std::size_t firstRow, std::size_t rows, OBS* slots,
                                         std::size_t caseSlots, ValueOf valueOf) {
  const Value* const values = cells.as<Value>();
  std::optional<std::size_t> refused;
  cells.presence.eachStretch(firstRow, rows, [&](std::size_t first, std::size_t count, bool areThere) {
    OBS* slot = slots + (first - firstRow) * caseSlots;
    if (!areThere) {
      for (std::size_t row = 0; row < count; ++row, slot += caseSlots) slot->number = systemMissing;
      return;
    }
    // A value that is not held is no number meanwhile, which none that is held is: the loop has no branch, and asks
    // once.
    bool areHeld = true;
    for (std::size_t row = first; row < first + count; ++row, slot += caseSlots) {
      const double value = valueOf(values[row]).value_or(std::numeric_limits<double>::quiet_NaN());
      areHeld = areHeld & !std::isnan(value);
      slot->number = value;
    }
    for (std::size_t row = first; !areHeld && !refused; ++row) {
      if (!valueOf(values[row])) refused = row - firstRow;
    }
  });
  return refused;
}

// Lays texts into their slots, with blanks behind them, in cases that have `caseSlots`; gives the first row whose text
// is longer than `width` bytes. `fewSlots` is the number of slots, known when this is built; 0: any other number.
template <std::size_t fewSlots>
std::optional<std::size_t> layTexts(const VectorCells& cells, std::size_t firstRow, std::size_t rows, OBS* slots,
                                    std::size_t caseSlots, std::size_t width) {
  const std::size_t slotBytes = (fewSlots != 0 ? fewSlots : (width + 7) / 8) * sizeof(OBS);
  const auto* const texts = cells.as<duckdb_string_t>();
  std::optional<std::size_t> refused;
  cells.presence.eachStretch(firstRow, rows, [&](std::size_t first, std::size_t count, bool areThere) {
    OBS* slot = slots + (first - firstRow) * caseSlots;
    for (std::size_t row = first; row < first + count; ++row, slot += caseSlots) {
      std::memset(slot->text, ' ', slotBytes);
      if (!areThere) continue;
      const std::size_t length = texts[row].value.inlined.length;
      if (length > width) {
        if (!refused) refused = row - firstRow;
        return;
      }
      const bool isInlined = length <= VectorCells::longestInlined;
      std::memcpy(slot->text, isInlined ? texts[row].value.inlined.inlined : texts[row].value.pointer.ptr, length);
    }
  });
  return refused;
}

std::optional<double> cellValue(std::string_view cell, FormatType format) {
  if (format == FormatType::dateTime) {
    const std::optional<CalendarValue> moment = dateTimeOf(cell);
    return moment ? std::optional(moment->value) : std::nullopt;
  }
  const std::optional<Decimal> number = decimalOf(cell);
  return number ? valueOf(*number) : std::nullopt;
}

// The same for values that come as texts.
std::optional<std::size_t> decodeCellTexts(const VectorCells& cells, std::size_t firstRow, std::size_t rows, OBS* slots,
                                           std::size_t caseSlots, FormatType format) {
  for (std::size_t row = 0; row < rows; ++row, slots += caseSlots) {
    const std::optional<double> value =
        cells.has(firstRow + row) ? cellValue(cells.text(firstRow + row), format) : std::optional(systemMissing);
    if (!value) return row;
    slots->number = *value;
  }
  return std::nullopt;
}

}  // namespace

StoredCaseReader::StoredCaseReader(std::shared_ptr<const StoredDataset> dataset, const VariableSubset& wanted)
    : dataset_(std::move(dataset)) {
  checkUnchanged();
  const StoredTable& table = *dataset_->table;
  std::vector<WantedColumn> columns;
  for (std::int32_t variable = 0; variable < dataset_->dictionary.size(); ++variable) {
    if (!wanted.has(variable)) continue;
    const StoredColumn& column = table.columns[static_cast<std::size_t>(variable)];
    const bool isNumeric = dataset_->dictionary.at(variable).isNumeric();
    columns.push_back({static_cast<std::size_t>(variable), &column, !isNumeric && !column.isText()});
    variables_.push_back(variable);
  }
  Outcome<std::unique_ptr<StoredRows>> rows = table.source->rows({table.columns.size(), columns});
  if (!rows) throw ErrorText(storedProblem(rows.problem(), *table.source).text());
  rows_ = std::move(*rows);
}

void StoredCaseReader::fill(CaseBlock& block) {
  std::size_t filled = 0;
  while (filled < block.capacity() && rows_ != nullptr) {
    if (row_ == rows_->rows() && !nextChunk()) continue;
    constexpr std::size_t atOnce = 256;  // cases that stay close at hand while column after column is laid into them
    const std::size_t rows = std::min({block.capacity() - filled, rows_->rows() - row_, atOnce});
    decode(block.at(filled), block.caseSlots(), rows);
    row_ += rows;
    filled += rows;
    cases_ += static_cast<std::int64_t>(rows);
  }
  block.setCases(filled);
}

// False when the table has ended.
bool StoredCaseReader::nextChunk() {
  row_ = 0;
  const StoredTable& table = *dataset_->table;
  const Outcome<bool> isThere = rows_->next();
  if (isThere && *isThere) return true;
  checkUnchanged();  // data that changed may well be the reason of an error
  if (!isThere) throw ErrorText(storedProblem(isThere.problem(), *table.source).text());
  if (cases_ != table.cases) {
    throw ErrorText(
        text::sentence("^1: ^2 cases were read, and ^3 are there; please report this as a fault of this program.",
                       {table.source->path(), fmt::to_string(cases_), fmt::to_string(table.cases)}));
  }
  rows_.reset();
  return false;
}

void StoredCaseReader::decode(OBS* cases, std::size_t caseSlots, std::size_t rows) {
  for (std::size_t index = 0; index < variables_.size(); ++index) {
    const std::int32_t variable = variables_[index];
    OBS* const slots = cases + dataset_->layout.slotOfVariable[static_cast<std::size_t>(variable)];
    decodeColumn(variable, rows_->values(index), rows, slots, caseSlots);
  }
}

void StoredCaseReader::decodeColumn(std::int32_t variable, const VectorCells& cells, std::size_t rows, OBS* values,
                                    std::size_t caseSlots) {
  const Variable& type = dataset_->dictionary.at(variable);
  if (!type.isNumeric()) {
    const bool allAreValues = dataset_->noValueTexts[static_cast<std::size_t>(variable)].empty();
    if (allAreValues) decodeTexts(variable, cells, rows, values, caseSlots);
    if (!allAreValues) decodeTextsOrNone(variable, cells, rows, values, caseSlots);
    return;
  }
  const StoredColumn& column = dataset_->table->columns[static_cast<std::size_t>(variable)];
  const auto decodeAs = [&]<class Value>(Value, auto valueOf) {
    return decodeNumbers<Value>(cells, row_, rows, values, caseSlots, valueOf);
  };
  std::optional<std::size_t> refused;
  switch (column.carrier) {
    case Carrier::int32:
      refused = decodeAs(std::int32_t{}, [](std::int32_t value) { return std::optional<double>(value); });
      break;
    case Carrier::int64:
      refused = decodeAs(std::int64_t{}, [](std::int64_t value) { return wholeValue(value); });
      break;
    case Carrier::decimal:
      refused = decodeAs(std::int64_t{}, [scale = column.scale](std::int64_t digits) {
        return std::optional(decimalValue(digits, scale));
      });
      break;
    case Carrier::real:
      refused = decodeAs(double{}, [](double value) { return realValue(value); });
      break;
    case Carrier::date:
      refused = decodeAs(std::int32_t{}, dateValue);
      break;
    case Carrier::time:
      refused = decodeAs(std::int64_t{}, timeValue);
      break;
    case Carrier::dateTime:
      refused = decodeAs(std::int64_t{}, dateTimeValue);
      break;
    case Carrier::cellText:
    case Carrier::text:
      refused = decodeCellTexts(cells, row_, rows, values, caseSlots, type.format.type);
      break;
  }
  if (refused) refuse(variable, *refused, "In column \"^1\" the value is none that its type has.");
}

void StoredCaseReader::decodeTexts(std::int32_t variable, const VectorCells& cells, std::size_t rows, OBS* values,
                                   std::size_t caseSlots) const {
  const Variable& type = dataset_->dictionary.at(variable);
  const auto width = static_cast<std::size_t>(type.width);
  const auto layAll = [&]<std::size_t fewSlots>() {
    return layTexts<fewSlots>(cells, row_, rows, values, caseSlots, width);
  };
  std::optional<std::size_t> refused;
  switch (type.slots()) {
    case 1:
      refused = layAll.operator()<1>();
      break;
    case 2:
      refused = layAll.operator()<2>();
      break;
    case 3:
      refused = layAll.operator()<3>();
      break;
    case 4:
      refused = layAll.operator()<4>();
      break;
    default:
      refused = layAll.operator()<0>();
  }
  if (refused) refuseLongText(variable, *refused);
}

// The same where some texts stand for no value, however long they are.
void StoredCaseReader::decodeTextsOrNone(std::int32_t variable, const VectorCells& cells, std::size_t rows, OBS* values,
                                         std::size_t caseSlots) const {
  const Variable& type = dataset_->dictionary.at(variable);
  const std::vector<std::string>& noValue = dataset_->noValueTexts[static_cast<std::size_t>(variable)];
  for (std::size_t row = 0; row < rows; ++row, values += caseSlots) {
    std::string_view text = cells.text(row_ + row);
    if (std::find(noValue.begin(), noValue.end(), text) != noValue.end()) text = "";
    if (text.size() > static_cast<std::size_t>(type.width)) refuseLongText(variable, row);
    std::memset(values->text, ' ', type.slots() * sizeof(OBS));
    std::memcpy(values->text, text.data(), text.size());
  }
}

void StoredCaseReader::refuseLongText(std::int32_t variable, std::size_t row) const {
  refuse(variable, row, "In column \"^1\" the value is longer than its column is wide.");
}

void StoredCaseReader::refuse(std::int32_t variable, std::size_t row, std::string_view why) const {
  const std::string number = fmt::to_string(cases_ + static_cast<std::int64_t>(row) + 1);
  throw ErrorText(Problem{text::sentence(why, {dataset_->dictionary.at(variable).name}),
                          text::sentence("^1, row ^2", {dataset_->table->source->path(), number}),
                          text::sentence("Correct the value or the type.")}
                      .text());
}

void StoredCaseReader::checkUnchanged() const {
  const StoredTable& table = *dataset_->table;
  if (table.source->identity() == table.identity) return;
  throw ErrorText(
      text::sentence("^1: The data have changed since they were opened; open them again.", {table.source->path()}));
}

}  // namespace workbench::data
