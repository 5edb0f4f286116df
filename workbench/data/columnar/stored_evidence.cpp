#include "workbench/data/columnar/stored_evidence.h"

#include <fmt/format.h>

#include <algorithm>

#include "workbench/data/cells/calendar_text.h"
#include "workbench/data/columnar/stored_values.h"
#include "workbench/data/files/cell_batch.h"
#include "workbench/text/string_comparison.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

std::string beyondCalendar() { return text::sentence("a value that the calendar does not hold"); }

}  // namespace

void StoredEvidence::add(const VectorCells& cells, std::size_t rows) {
  switch (column_.carrier) {
    case Carrier::int32:
      addNumbers<std::int32_t>(CellKind::number, cells, rows, [this](std::int32_t value) {
        shape_.addWhole(value);
        return std::optional<double>(value);
      });
      break;
    case Carrier::int64:
      addNumbers<std::int64_t>(CellKind::number, cells, rows, [this](std::int64_t value) {
        const std::optional<double> held = wholeValue(value);
        if (held) shape_.addWhole(value);
        return held;
      });
      break;
    case Carrier::decimal:
      addNumbers<std::int64_t>(CellKind::number, cells, rows, [this](std::int64_t digits) {
        shape_.addDecimal(digits, column_.scale);
        return std::optional(decimalValue(digits, column_.scale));
      });
      break;
    case Carrier::real:
      addNumbers<double>(CellKind::number, cells, rows, [this](double value) {
        const std::optional<double> held = realValue(value);
        if (held) shape_.addReal(value);
        return held;
      });
      break;
    case Carrier::date:
      addNumbers<std::int32_t>(CellKind::date, cells, rows, dateValue);
      break;
    case Carrier::time:
      addMoments(CellKind::time, cells, rows, timeValue);
      break;
    case Carrier::dateTime:
      addMoments(CellKind::dateTime, cells, rows, dateTimeValue);
      break;
    case Carrier::cellText:
      addCellTexts(cells, rows);
      break;
    case Carrier::text:
      addTexts(cells, rows);
      break;
  }
  rowsBefore_ += rows;
}

// valueOf gives nothing for what cases do not hold as a number of that kind.
template <class Value, class ValueOf>
void StoredEvidence::addNumbers(CellKind kind, const VectorCells& cells, std::size_t rows, ValueOf valueOf) {
  const Value* const values = cells.as<Value>();
  for (std::size_t row = 0; row < rows; ++row) {
    if (!cells.has(row)) {
      ++empty_;
      rises_ = false;
      continue;
    }
    const std::optional<double> value = valueOf(values[row]);
    if (!value) {
      rises_ = false;
      if (others_.count++ == 0)
        noteFirst(others_, row, kind == CellKind::number ? fmt::format("{}", values[row]) : beyondCalendar());
      continue;
    }
    if (values_.count++ == 0) noteFirst(values_, row, textOf(kind, *value));
    if (rises_) follow(*value);
  }
}

template <class ValueOf>
void StoredEvidence::addMoments(CellKind kind, const VectorCells& cells, std::size_t rows, ValueOf valueOf) {
  addNumbers<std::int64_t>(kind, cells, rows, [&](std::int64_t microseconds) {
    const std::optional<double> value = valueOf(microseconds);
    if (value) values_.secondsDigits = std::max(values_.secondsDigits, secondsDigitsOf(microseconds));
    return value;
  });
}

void StoredEvidence::addTexts(const VectorCells& cells, std::size_t rows) {
  for (std::size_t row = 0; row < rows; ++row) {
    const std::string_view cell = cells.text(row);
    if (cell.empty()) {
      ++empty_;
      rises_ = false;
      continue;
    }
    values_.longestText = std::max(values_.longestText, cell.size());
    if (values_.count++ == 0) {
      values_.first = sightingOf(cell, rowsBefore_ + row + 1);
      values_.first.isStored = true;
    }
    if (!rises_) continue;
    const std::string_view trimmed = text::withoutTrailingBlanks(cell);
    rises_ = lastText_ < trimmed;
    lastText_.assign(trimmed);
  }
}

void StoredEvidence::addCellTexts(const VectorCells& cells, std::size_t rows) {
  rises_ = false;
  CellBatch batch;
  for (std::size_t row = 0; row < rows; ++row) {
    batch.add(cells.text(row), !cells.has(row), rowsBefore_ + row + 1);
    batch.endRecord();
  }
  batch.finish(1);
  ofCellTexts_.add(batch, 0);
}

std::string StoredEvidence::textOf(CellKind kind, double value) {
  std::optional<std::string> text;
  if (kind == CellKind::date) text = dateText(value);
  if (kind == CellKind::time) text = timeText(value);
  if (kind == CellKind::dateTime) text = dateTimeText(value);
  return text ? *text : fmt::format("{}", value);
}

void StoredEvidence::noteFirst(ColumnEvidence::Summary& of, std::size_t row, const std::string& text) const {
  of.first = sightingOf(text, rowsBefore_ + row + 1);
  of.first.isStored = true;
}

void StoredEvidence::follow(double value) {
  rises_ = !lastNumber_ || *lastNumber_ < value;
  lastNumber_ = value;
}

ColumnEvidence StoredEvidence::evidence() const {
  if (column_.carrier == Carrier::cellText) return ofCellTexts_;
  ColumnEvidence evidence;
  ColumnEvidence::Summary values = values_;
  if (kindOf(column_) == CellKind::number) {
    values.wholeWidth = shape_.wholeWidth();
    values.fractionDigits = shape_.fractionDigits();
    values.significantDigits = shape_.significantDigits();
  }
  evidence.add(kindOf(column_), values);
  evidence.add(CellKind::text, others_);
  evidence.add(CellKind::empty, {.count = empty_, .first = {}});
  evidence.declare(kindOf(column_));
  return evidence;
}

}  // namespace workbench::data
