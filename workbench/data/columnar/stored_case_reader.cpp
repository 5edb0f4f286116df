#include "workbench/data/columnar/stored_case_reader.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstring>
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
  const Value* const values = cells.as<Value>() + firstRow;
  for (std::size_t row = 0; row < rows; ++row, slots += caseSlots) {
    if (!cells.has(firstRow + row)) {
      slots->number = systemMissing;
      continue;
    }
    const std::optional<double> value = valueOf(values[row]);
    if (!value) return row;
    slots->number = *value;
  }
  return std::nullopt;
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
  std::vector<std::string> fetched;
  for (std::int32_t variable = 0; variable < dataset_->dictionary.size(); ++variable) {
    if (!wanted.has(variable)) continue;
    const StoredColumn& column = table.columns[static_cast<std::size_t>(variable)];
    const bool isNumeric = dataset_->dictionary.at(variable).isNumeric();
    fetched.push_back(isNumeric || column.isText() ? fetchedColumn(column) : fetchedText(column));
    variables_.push_back(variable);
  }
  if (fetched.empty()) fetched.emplace_back("TRUE");
  Outcome<std::unique_ptr<DuckDbQuery>> query =
      DuckDbQuery::start(fmt::format("SELECT {} FROM {}", fmt::join(fetched, ", "), table.source->relation()));
  if (!query) throw ErrorText(storedProblem(query.problem(), *table.source).text());
  query_ = std::move(*query);
}

void StoredCaseReader::fill(CaseBlock& block) {
  std::size_t filled = 0;
  while (filled < block.capacity() && query_ != nullptr) {
    if (row_ == query_->rows() && !nextChunk()) continue;
    const std::size_t rows = std::min(block.capacity() - filled, query_->rows() - row_);
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
  const Outcome<bool> isThere = query_->nextChunk();
  if (isThere && *isThere) return true;
  checkUnchanged();  // data that changed may well be the reason of an error
  if (!isThere) throw ErrorText(storedProblem(isThere.problem(), *table.source).text());
  if (cases_ != table.cases) {
    throw ErrorText(
        text::sentence("^1: ^2 cases were read, and ^3 are there; please report this as a fault of this program.",
                       {table.source->path(), fmt::to_string(cases_), fmt::to_string(table.cases)}));
  }
  query_.reset();
  return false;
}

void StoredCaseReader::decode(OBS* cases, std::size_t caseSlots, std::size_t rows) {
  for (std::size_t index = 0; index < variables_.size(); ++index) {
    const std::int32_t variable = variables_[index];
    const auto [values, present] = query_->values(index);
    OBS* const slots = cases + dataset_->layout.slotOfVariable[static_cast<std::size_t>(variable)];
    decodeColumn(variable, {values, present}, rows, slots, caseSlots);
  }
}

void StoredCaseReader::decodeColumn(std::int32_t variable, const VectorCells& cells, std::size_t rows, OBS* values,
                                    std::size_t caseSlots) {
  const Variable& type = dataset_->dictionary.at(variable);
  if (!type.isNumeric()) {
    decodeTexts(variable, cells, rows, values, caseSlots);
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
      refused = decodeAs(std::int64_t{}, wholeValue);
      break;
    case Carrier::decimal:
      refused = decodeAs(std::int64_t{}, [scale = column.scale](std::int64_t digits) {
        return std::optional(decimalValue(digits, scale));
      });
      break;
    case Carrier::real:
      refused = decodeAs(double{}, realValue);
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
  const std::vector<std::string>& noValue = dataset_->noValueTexts[static_cast<std::size_t>(variable)];
  const std::size_t slotBytes = type.slots() * sizeof(OBS);
  for (std::size_t row = 0; row < rows; ++row, values += caseSlots) {
    std::string_view text = cells.text(row_ + row);
    if (std::find(noValue.begin(), noValue.end(), text) != noValue.end()) text = "";
    if (text.size() > static_cast<std::size_t>(type.width))
      refuse(variable, row, "In column \"^1\" the value is longer than its column is wide.");
    std::memcpy(values->text, text.data(), text.size());
    std::memset(values->text + text.size(), ' ', slotBytes - text.size());
  }
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
