#include "workbench/data/files/cell_decoder.h"

#include <charconv>

#include "workbench/data/cells/calendar_text.h"
#include "workbench/data/cells/scaled_decimal.h"
#include "workbench/data/files/declared_column.h"
#include "workbench/text/wording.h"

namespace workbench::data {

CellDecoder::CellDecoder(const std::vector<CsvColumn>& columns, const Dictionary& dictionary, const CaseLayout& layout,
                         const VariableSubset& wanted)
    : dictionary_(dictionary), layout_(layout) {
  std::vector<bool> isFed(static_cast<std::size_t>(dictionary.size()), false);
  for (const CsvColumn& column : columns) {
    columns_.push_back(column.variable && wanted.has(*column.variable) ? columnOf(column) : Column());
    if (column.variable) isFed[static_cast<std::size_t>(*column.variable)] = true;
  }
  for (std::int32_t variable = 0; variable < dictionary.size(); ++variable) {
    if (!isFed[static_cast<std::size_t>(variable)] && wanted.has(variable)) unfed_.push_back(variable);
  }
}

CellDecoder::Column CellDecoder::columnOf(const CsvColumn& column) const {
  Column how;
  const Variable& variable = dictionary_.at(*column.variable);
  how.variable = *column.variable;
  how.slot = layout_.slotOfVariable[static_cast<std::size_t>(*column.variable)];
  how.format = variable.format.type;
  how.width = static_cast<std::size_t>(variable.width);
  how.slotBytes = variable.isNumeric() ? 0 : variable.slots() * sizeof(OBS);
  if (column.reading) how.reader.emplace(*column.reading);
  if (variable.isNumeric()) {
    const bool isMoment =
        how.format == FormatType::date || how.format == FormatType::time || how.format == FormatType::dateTime;
    how.decoding = isMoment ? Decoding::moment : Decoding::number;
    if (column.reading) how.decoding = Decoding::declaredNumber;
  } else {
    how.decoding = column.reading ? Decoding::declaredText : Decoding::text;
  }
  return how;
}

std::optional<double> CellDecoder::scaledNumberOf(std::string_view cell) {
  if (ScaledDecimal number; number.readPadded(cell)) return number.value();
  return longNumberOf(cell);
}

// The scan has seen that it is a number, and that it is held. What remains to be told from one is what the conversion
// takes for a number beside.
std::optional<double> CellDecoder::longNumberOf(std::string_view cell) {
  const std::string_view withoutSign = cell.substr(cell.starts_with('+') || cell.starts_with('-') ? 1 : 0);
  const char first = withoutSign.empty() ? '\0' : withoutSign.front();
  if (first != '.' && (first < '0' || first > '9')) return std::nullopt;
  if (cell.starts_with('+')) cell = withoutSign;  // the one form that from_chars does not know
  double value = 0;
  const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), value);
  if (error != std::errc() || end != cell.data() + cell.size()) return std::nullopt;
  return value;
}

std::optional<double> CellDecoder::momentOf(std::string_view cell, FormatType format) {
  std::optional<CalendarValue> read;
  if (format == FormatType::date) read = dateOf(cell);
  if (format == FormatType::time) read = timeOf(cell);
  if (format == FormatType::dateTime) read = dateTimeOf(cell);
  return read ? std::optional(read->value) : std::nullopt;
}

void CellDecoder::fillUnfed(OBS* cases, std::size_t rows, std::size_t caseSlots) const {
  for (const std::int32_t index : unfed_) {
    const Variable& variable = dictionary_.at(index);
    OBS* values = cases + layout_.slotOfVariable[static_cast<std::size_t>(index)];
    for (std::size_t row = 0; row < rows; ++row, values += caseSlots) {
      if (variable.isNumeric()) {
        values->number = systemMissing;
      } else {
        std::memset(values->text, ' ', variable.slots() * sizeof(OBS));
      }
    }
  }
}

// The scan has read every cell in the same way; so whatever is refused here changed since, or was declared to be
// narrower than it is.
Problem CellDecoder::refusal(std::size_t column, std::string_view cell, const std::string& where) {
  Column& how = columns_[column];
  const std::string& name = dictionary_.at(how.variable).name;
  if (how.decoding == Decoding::declaredNumber) {
    return cellProblem(where, name, cell, *how.reader);
  }
  return {text::sentence(how.decoding == Decoding::number
                             ? "In column \"^1\" the value ^2 is not of the type that its column has."
                             : "In column \"^1\" the value ^2 is longer than its column is wide.",
                         {name, sightingOf(cell, 0).quoted()}),
          where, text::sentence("Correct the value or the type.")};
}

}  // namespace workbench::data
