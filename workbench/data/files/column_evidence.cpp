#include "workbench/data/files/column_evidence.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <numeric>

#include "workbench/data/cells/calendar_text.h"
#include "workbench/data/cells/decimal_text.h"
#include "workbench/data/cells/scaled_decimal.h"
#include "workbench/text/string_comparison.h"
#include "workbench/text/wording.h"

namespace workbench::data {

namespace {

std::optional<double> numberOf(std::string_view cell) {
  if (ShortDecimal number; number.readPadded(cell)) return number.value();
  if (ScaledDecimal number; number.readPadded(cell)) return number.value();
  const std::optional<Decimal> number = decimalOf(cell);
  return number ? valueOf(*number) : std::nullopt;
}

// A digit, a minus, a point, and the one sign between these.
bool mayBeginShort(char first) { return first >= '-' && first <= '9'; }
bool mayBeginScaled(char first) { return first >= '+' && first <= '9'; }

// The parts of ShortNumbers::shapes.
constexpr std::int32_t wholePart = 16;
constexpr std::int32_t negativePart = 32;
constexpr std::uint64_t partBits = 0xFFFF;

// The highest number whose bit is set in the lowest part, or 0.
std::int32_t highestIn(std::uint64_t shapes) { return std::max(63 - std::countl_zero(shapes & partBits), 0); }

}  // namespace

CellSighting sightingOf(std::string_view cell, std::uint64_t line) {
  constexpr std::size_t longest = 40;
  if (cell.size() <= longest) return {line, std::string(cell), true};
  std::size_t length = longest;
  const auto continuesCharacter = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; };
  while (length > 0 && continuesCharacter(cell[length])) --length;
  return {line, std::string(cell.substr(0, length)), false};
}

inline void ColumnEvidence::ShortNumbers::add(const ShortDecimal& number) {
  const std::int32_t whole = number.isNegative() ? negativePart : wholePart;
  shapes |= std::uint64_t{1} << number.fractionDigits() | std::uint64_t{1} << (whole + number.wholeDigits());
  firstDigits |= number.firstDigits();
  lastDigits |= number.lastDigits();
}

void ColumnEvidence::ShortNumbers::merge(const ShortNumbers& other) {
  shapes |= other.shapes;
  firstDigits |= other.firstDigits;
  lastDigits |= other.lastDigits;
}

// The sign counts, and one digit stands before the point in any case.
std::int32_t ColumnEvidence::ShortNumbers::wholeWidth() const {
  const std::int32_t width = std::max(highestIn(shapes >> wholePart), 1);
  const std::uint64_t negative = shapes >> negativePart & partBits;
  return negative == 0 ? width : std::max(width, std::max(highestIn(negative), 1) + 1);
}

std::int32_t ColumnEvidence::ShortNumbers::fractionDigits() const { return highestIn(shapes); }

std::int32_t ColumnEvidence::ShortNumbers::significantDigits() const {
  constexpr std::int32_t digitsOfWord = 8;
  if (firstDigits != 0) return 2 * digitsOfWord - std::countr_zero(firstDigits) / 8;
  return std::max(digitsOfWord - std::countr_zero(lastDigits) / 8, 1);
}

// Most columns are short numbers throughout, or texts that do not begin like one.
void ColumnEvidence::add(const CellBatch& cells, std::size_t column) {
  if (cells.isText(column)) declare(CellKind::text);
  if (numbersRise_ || textsRise_) followOrder(cells, column);
  const ColumnCells own = cells.column(column);
  const std::size_t records = cells.records();
  const bool mayHoldTexts = cells.isText(column);
  ShortNumbers shortNumbers;
  std::size_t longestText = 0;
  std::uint64_t empty = 0;
  std::uint64_t others = 0;
  for (std::size_t record = 0; record < records; ++record) {
    const std::string_view cell = own.text(record);
    if (cell.empty() || own.isNull(record)) {
      ++empty;
      continue;
    }
    longestText = std::max(longestText, cell.size());
    if (mayHoldTexts && own.isText(record)) {
      ++others;
      noteText(cell, cells.lineOf(record, column));
    } else if (ShortDecimal number; mayBeginShort(cell.front()) && number.readPadded(cell)) {
      shortNumbers.add(number);
    } else if (ScaledDecimal scaled; mayBeginScaled(cell.front()) && scaled.readPadded(cell)) {
      ++others;
      widen(scaled);
      note(CellKind::number, cell, [&] { return cells.lineOf(record, column); });
    } else {
      ++others;
      note(seenOther(cell), cell, [&] { return cells.lineOf(record, column); });
    }
  }
  longestText_ = std::max(longestText_, longestText);
  counts_[static_cast<std::size_t>(CellKind::empty)] += empty;
  counts_[static_cast<std::size_t>(CellKind::number)] += records - empty - others;
  if (shortNumbers_.isEmpty() && !shortNumbers.isEmpty()) noteFirstShort(cells, column);
  shortNumbers_.merge(ShortNumbers(shortNumbers));
}

// The first number may be a longer one.
void ColumnEvidence::noteFirstShort(const CellBatch& cells, std::size_t column) {
  const ColumnCells own = cells.column(column);
  std::size_t record = 0;
  for (ShortDecimal number; own.isNull(record) || own.isText(record) || !number.readPadded(own.text(record));) ++record;
  const std::uint64_t line = cells.lineOf(record, column);
  CellSighting& first = first_[static_cast<std::size_t>(CellKind::number)];
  if (first.line == 0 || line < first.line) first = sightingOf(own.text(record), line);
}

void ColumnEvidence::addAs(std::string_view text, const CellBatch& cells, std::size_t record, std::size_t column) {
  numbersRise_ = textsRise_ = false;
  longestText_ = std::max(longestText_, text.size());
  ShortDecimal number;
  const bool isShort = number.read(text);
  if (isShort) shortNumbers_.add(number);
  note(isShort ? CellKind::number : seenOther(text), text, [&] { return cells.lineOf(record, column); });
}

void ColumnEvidence::add(CellKind kind, const Summary& cells) {
  if (cells.count == 0) return;
  numbersRise_ = textsRise_ = false;
  const auto index = static_cast<std::size_t>(kind);
  if (counts_[index] == 0 && kind != CellKind::empty) first_[index] = cells.first;
  counts_[index] += cells.count;
  longestText_ = std::max(longestText_, cells.longestText);
  wholeWidth_ = std::max(wholeWidth_, cells.wholeWidth);
  fractionDigits_ = std::max(fractionDigits_, cells.fractionDigits);
  significantDigits_ = std::max(significantDigits_, cells.significantDigits);
  secondsDigits_ = std::max(secondsDigits_, cells.secondsDigits);
}

template <class LineOf>
void ColumnEvidence::note(CellKind kind, std::string_view cell, LineOf lineOf) {
  const auto index = static_cast<std::size_t>(kind);
  if (counts_[index]++ == 0 && kind != CellKind::empty) first_[index] = sightingOf(cell, lineOf());
}

// Of a cell that looks like something else.
void ColumnEvidence::noteText(std::string_view cell, std::uint64_t line) {
  note(CellKind::text, cell, [line] { return line; });
  constexpr auto index = static_cast<std::size_t>(CellKind::text);
  if (counts_[index] == 1) first_[index].isStored = true;
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
    textsRise_ = lastText_ < cell;
    lastText_.assign(cell);
  }
}

template <class Number>
void ColumnEvidence::widen(const Number& number) {
  wholeWidth_ = std::max(wholeWidth_, number.expandedWholeDigits() + (number.isNegative() ? 1 : 0));
  fractionDigits_ = std::max(fractionDigits_, number.expandedFractionDigits());
  significantDigits_ = std::max(significantDigits_, number.significantDigits());
}

// Of a cell that is no short number.
CellKind ColumnEvidence::seenOther(std::string_view cell) {
  if (cell.empty()) return CellKind::empty;
  const char first = cell.front();
  const bool beginsWithDigit = first >= '0' && first <= '9';
  if (!beginsWithDigit && first != '-' && first != '+' && first != '.') return CellKind::text;
  if (beginsWithDigit && dateOf(cell)) return CellKind::date;
  if (const std::optional<Decimal> number = decimalOf(cell)) {
    if (!isHeld(*number)) return CellKind::text;
    widen(*number);
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
  shortNumbers_.merge(other.shortNumbers_);
  secondsDigits_ = std::max(secondsDigits_, other.secondsDigits_);
  if (other.declared_ == CellKind::text || declared_ == CellKind::empty) declared_ = other.declared_;
}

std::uint64_t ColumnEvidence::filled() const {
  return std::accumulate(counts_.begin(), counts_.end(), std::uint64_t{0}) - count(CellKind::empty);
}

CellKind ColumnEvidence::kind() const {
  const std::uint64_t all = filled();
  if (all == 0 || declared_ == CellKind::text) return declared_;
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

namespace {

// Of the clause, with ^1 for the cell.
std::string_view patternOfWhy(CellKind kind, const CellSighting& cell) {
  if (cell.isStored) return "^1 is stored as something else";
  switch (kind) {
    case CellKind::date:
      return "^1 is no ISO date";
    case CellKind::time: {
      const std::optional<CalendarValue> time = cell.isWhole ? timeOf(cell.text) : std::nullopt;
      return time ? "^1 has a finer fraction than is held" : "^1 is no time like 23:59:59";
    }
    case CellKind::dateTime: {
      const std::optional<CalendarValue> dateTime = cell.isWhole ? dateTimeOf(cell.text) : std::nullopt;
      return dateTime ? "^1 has a finer fraction than is held" : "^1 is no ISO date with a time";
    }
    default:
      break;
  }
  if (!cell.isWhole) return "^1 is no number";
  if (const std::optional<Decimal> number = decimalOf(cell.text)) {
    const bool isWhole = !number->hasExponent && number->lastDigit < number->wholeDigits;
    if (isWhole) return "^1 is a whole number beyond 2^53, which is not held exactly";
    return "^1 is a number that is not held exactly";
  }
  const std::size_t firstDigit = cell.text.find_first_not_of("+-");
  const bool isDigits = cell.text.find_first_not_of("+-.0123456789") == std::string::npos;
  if (isDigits && firstDigit != std::string::npos && cell.text[firstDigit] == '0') return "^1 has a leading zero";
  return "^1 is no number";
}

}  // namespace

std::string CellSighting::quoted() const { return fmt::format("\"{}{}\"", text, isWhole ? "" : "..."); }

std::string whyOtherThan(CellKind kind, const CellSighting& cell) {
  return text::sentence(patternOfWhy(kind, cell), {cell.quoted()});
}

}  // namespace workbench::data
