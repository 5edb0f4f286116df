#include "workbench/data/files/column_evidence.h"

#include <algorithm>
#include <numeric>

#include "workbench/data/cells/calendar_text.h"
#include "workbench/data/cells/decimal_text.h"
#include "workbench/text/string_comparison.h"

namespace workbench::data {

namespace {

std::optional<double> numberOf(std::string_view cell) {
  if (ShortDecimal number; readPaddedShortDecimal(cell, number)) return number.value();
  const std::optional<Decimal> number = decimalOf(cell);
  return number ? valueOf(*number) : std::nullopt;
}

}  // namespace

CellSighting sightingOf(std::string_view cell, std::uint64_t line) {
  constexpr std::size_t longest = 40;
  if (cell.size() <= longest) return {line, std::string(cell), true};
  std::size_t length = longest;
  const auto continuesCharacter = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; };
  while (length > 0 && continuesCharacter(cell[length])) --length;
  return {line, std::string(cell.substr(0, length)), false};
}

void ColumnEvidence::add(const CellBatch& cells, std::size_t column) {
  if (numbersRise_ || textsRise_) followOrder(cells, column);
  for (std::size_t record = 0; record < cells.records(); ++record) {
    const std::string_view cell = cells.isNull(record, column) ? std::string_view() : cells.text(record, column);
    add(cell, readPaddedShortDecimal, [&] { return cells.lineOf(record, column); });
  }
}

void ColumnEvidence::addAs(std::string_view text, const CellBatch& cells, std::size_t record, std::size_t column) {
  numbersRise_ = textsRise_ = false;
  add(text, readShortDecimal, [&] { return cells.lineOf(record, column); });
}

template <class ReadShort, class LineOf>
void ColumnEvidence::add(std::string_view cell, ReadShort readShort, LineOf lineOf) {
  const auto kind = static_cast<std::size_t>(seen(cell, readShort));
  longestText_ = std::max(longestText_, cell.size());
  if (counts_[kind]++ == 0 && kind != static_cast<std::size_t>(CellKind::empty)) {
    first_[kind] = sightingOf(cell, lineOf());
  }
}

// Up to the first cell that is not greater; in most columns that is a matter of a few.
void ColumnEvidence::followOrder(const CellBatch& cells, std::size_t column) {
  for (std::size_t record = 0; record < cells.records() && numbersRise_; ++record) {
    const std::optional<double> number = numberOf(cells.text(record, column));
    numbersRise_ = number && (!lastNumber_ || *lastNumber_ < *number);
    lastNumber_ = number;
  }
  for (std::size_t record = 0; record < cells.records() && textsRise_; ++record) {
    const std::string_view cell = text::withoutTrailingBlanks(cells.text(record, column));
    textsRise_ = !lastText_ || *lastText_ < cell;
    if (!lastText_) lastText_.emplace();
    lastText_->assign(cell);
  }
}

// Most cells are told by their first character and their length.
template <class ReadShort>
CellKind ColumnEvidence::seen(std::string_view cell, ReadShort readShort) {
  if (cell.empty()) return CellKind::empty;
  const char first = cell.front();
  const bool beginsWithDigit = first >= '0' && first <= '9';
  if (!beginsWithDigit && first != '-' && first != '+' && first != '.') return CellKind::text;
  if (ShortDecimal number; readShort(cell, number)) {
    const std::int32_t sign = number.negative ? 1 : 0;
    wholeWidth_ = std::max(wholeWidth_, std::max(number.wholeDigits, 1) + sign);
    fractionDigits_ = std::max(fractionDigits_, number.fractionDigits);
    longestMantissa_ = std::max(longestMantissa_, number.mantissa);
    return CellKind::number;
  }
  if (beginsWithDigit && dateOf(cell)) return CellKind::date;
  if (const std::optional<Decimal> number = decimalOf(cell)) {
    if (!isHeld(*number)) return CellKind::text;
    wholeWidth_ = std::max(wholeWidth_, number->expandedWholeDigits() + (number->negative ? 1 : 0));
    fractionDigits_ = std::max(fractionDigits_, number->expandedFractionDigits());
    significantDigits_ = std::max(significantDigits_, number->significantDigits());
    return CellKind::number;
  }
  if (!beginsWithDigit) return CellKind::text;
  if (const std::optional<CalendarValue> time = timeOf(cell); time && time->isHeld) {
    secondsDigits_ = std::max(secondsDigits_, time->fractionDigits);
    return CellKind::time;
  }
  if (const std::optional<CalendarValue> dateTime = dateTimeOf(cell); dateTime && dateTime->isHeld) {
    secondsDigits_ = std::max(secondsDigits_, dateTime->fractionDigits);
    return CellKind::dateTime;
  }
  return CellKind::text;
}

void ColumnEvidence::merge(const ColumnEvidence& other) {
  numbersRise_ = textsRise_ = false;
  for (std::size_t kind = 0; kind < cellKinds; ++kind) {
    counts_[kind] += other.counts_[kind];
    if (first_[kind].line == 0) first_[kind] = other.first_[kind];
  }
  longestText_ = std::max(longestText_, other.longestText_);
  wholeWidth_ = std::max(wholeWidth_, other.wholeWidth_);
  fractionDigits_ = std::max(fractionDigits_, other.fractionDigits_);
  significantDigits_ = std::max(significantDigits_, other.significantDigits_);
  longestMantissa_ = std::max(longestMantissa_, other.longestMantissa_);
  secondsDigits_ = std::max(secondsDigits_, other.secondsDigits_);
}

std::int32_t ColumnEvidence::significantDigits() const {
  std::int32_t digits = 0;
  for (std::uint64_t rest = longestMantissa_; rest != 0; rest /= 10) ++digits;
  return std::max(digits, significantDigits_);
}

std::uint64_t ColumnEvidence::filled() const {
  return std::accumulate(counts_.begin(), counts_.end(), std::uint64_t{0}) - count(CellKind::empty);
}

CellKind ColumnEvidence::kind() const {
  const std::uint64_t all = filled();
  if (all == 0) return CellKind::empty;
  for (const CellKind kind : {CellKind::number, CellKind::date, CellKind::time, CellKind::dateTime}) {
    if (count(kind) == all) return kind;
  }
  return CellKind::text;
}

const CellSighting& ColumnEvidence::firstOtherThan(CellKind kind) const {
  const CellSighting* earliest = &first_[static_cast<std::size_t>(CellKind::empty)];  // which has line 0
  for (std::size_t other = 0; other < cellKinds; ++other) {
    const CellSighting& sighting = first_[other];
    if (other == static_cast<std::size_t>(kind) || sighting.line == 0) continue;
    if (earliest->line == 0 || sighting.line < earliest->line) earliest = &sighting;
  }
  return *earliest;
}

std::string_view whyOtherThan(CellKind kind, const CellSighting& cell) {
  switch (kind) {
    case CellKind::date:
      return "is no ISO date";
    case CellKind::time: {
      const std::optional<CalendarValue> time = cell.isWhole ? timeOf(cell.text) : std::nullopt;
      return time ? "has a finer fraction than is held" : "is no time like 23:59:59";
    }
    case CellKind::dateTime: {
      const std::optional<CalendarValue> dateTime = cell.isWhole ? dateTimeOf(cell.text) : std::nullopt;
      return dateTime ? "has a finer fraction than is held" : "is no ISO date with a time";
    }
    default:
      break;
  }
  if (!cell.isWhole) return "is no number";
  if (const std::optional<Decimal> number = decimalOf(cell.text)) {
    const bool isWhole = !number->hasExponent && number->lastDigit < number->wholeDigits;
    if (isWhole) return "is a whole number beyond 2^53, which is not held exactly";
    return "is a number that is not held exactly";
  }
  const std::size_t firstDigit = cell.text.find_first_not_of("+-");
  const bool isDigits = cell.text.find_first_not_of("+-.0123456789") == std::string::npos;
  if (isDigits && firstDigit != std::string::npos && cell.text[firstDigit] == '0') return "has a leading zero";
  return "is no number";
}

}  // namespace workbench::data
