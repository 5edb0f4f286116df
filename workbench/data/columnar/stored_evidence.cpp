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

// Of numbers whose digits grow with them, and that are held when the lowest and the highest of them are.
constexpr auto byExtremes = [](const auto* values, std::size_t count, const auto& valueOf) {
  auto lowest = *values;
  auto highest = *values;
  for (std::size_t index = 1; index < count; ++index) {
    lowest = std::min(lowest, values[index]);
    highest = std::max(highest, values[index]);
  }
  return valueOf(lowest).has_value() && valueOf(highest).has_value();
};

}  // namespace

void StoredEvidence::add(const VectorCells& cells, std::size_t rows) {
  switch (column_.carrier) {
    case Carrier::int32:
      addNumbers<std::int32_t>(
          CellKind::number, cells, rows,
          [this](std::int32_t value) {
            shape_.addWhole(value);
            return std::optional<double>(value);
          },
          byExtremes);
      break;
    case Carrier::int64:
      addNumbers<std::int64_t>(
          CellKind::number, cells, rows,
          [this](std::int64_t value) {
            const std::optional<double> held = wholeValue(value);
            if (held) shape_.addWhole(value);
            return held;
          },
          byExtremes);
      break;
    case Carrier::decimal:
      addNumbers<std::int64_t>(
          CellKind::number, cells, rows,
          [this](std::int64_t digits) {
            shape_.addDecimal(digits, column_.scale);
            return std::optional(decimalValue(digits, column_.scale));
          },
          byExtremes);
      break;
    case Carrier::real:
      addNumbers<double>(
          CellKind::number, cells, rows,
          [this](double value) {
            const std::optional<double> held = realValue(value);
            if (held) shape_.addReal(value);
            return held;
          },
          [](const double* values, std::size_t count, const auto& valueOf) {
            return std::all_of(values, values + count, [&](double value) { return valueOf(value).has_value(); });
          });
      break;
    case Carrier::date:
      addNumbers<std::int32_t>(
          CellKind::date, cells, rows, [](std::int32_t days) { return dateValue(days); }, byExtremes);
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

// valueOf gives nothing for what cases do not hold as a number of that kind. areUsual(values, count, valueOf) looks at
// several values at once, and is false when some of them may not be held; then they are looked at one by one.
template <class Value, class ValueOf, class AreUsual>
void StoredEvidence::addNumbers(CellKind kind, const VectorCells& cells, std::size_t rows, ValueOf valueOf,
                                AreUsual areUsual) {
  const Value* const values = cells.as<Value>();
  cells.presence.eachStretch(0, rows, [&](std::size_t first, std::size_t count, bool areThere) {
    if (!areThere) {
      empty_ += count;
      rises_ = false;
    } else if (values_.count != 0 && areUsual(values + first, count, valueOf)) {
      values_.count += count;
      if (!rises_) return;
      follow(*valueOf(values[first]));
      for (std::size_t row = first + 1; rises_ && row < first + count; ++row) rises_ = values[row - 1] < values[row];
      lastNumber_ = *valueOf(values[first + count - 1]);
    } else {
      addOneByOne(kind, values, first, count, valueOf);
    }
  });
}

template <class Value, class ValueOf>
void StoredEvidence::addOneByOne(CellKind kind, const Value* values, std::size_t first, std::size_t count,
                                 ValueOf valueOf) {
  for (std::size_t row = first; row < first + count; ++row) {
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
  addNumbers<std::int64_t>(
      kind, cells, rows,
      [&](std::int64_t microseconds) {
        const std::optional<double> value = valueOf(microseconds);
        if (value) values_.secondsDigits = std::max(values_.secondsDigits, secondsDigitsOf(microseconds));
        return value;
      },
      [](const std::int64_t*, std::size_t, const auto&) { return false; });
}

void StoredEvidence::addTexts(const VectorCells& cells, std::size_t rows) {
  cells.presence.eachStretch(0, rows, [&](std::size_t first, std::size_t count, bool areThere) {
    if (!areThere) {
      empty_ += count;
      rises_ = false;
    } else if (rises_ || values_.count == 0) {
      addTextsOneByOne(cells, first, count);
    } else {
      addLengths(cells, first, count);
    }
  });
}

// Of texts behind the first one that do not rise any more nothing else counts.
void StoredEvidence::addLengths(const VectorCells& cells, std::size_t first, std::size_t count) {
  std::size_t empty = 0;
  for (std::size_t row = first; row < first + count; ++row) {
    const std::size_t length = cells.textLength(row);
    empty += length == 0 ? 1 : 0;
    values_.longestText = std::max(values_.longestText, length);
  }
  empty_ += empty;
  values_.count += count - empty;
}

void StoredEvidence::addTextsOneByOne(const VectorCells& cells, std::size_t first, std::size_t count) {
  for (std::size_t row = first; row < first + count; ++row) {
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
