#include "workbench/data/cells/number_text.h"

#include <algorithm>
#include <array>

#include "workbench/data/cells/decimal_text.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr std::string_view outerBlanks = " \t\n\v\f\r";

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool isExponentMark(char character) { return character == 'e' || character == 'E'; }

bool isSign(char character) { return character == '-' || character == '+'; }

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(outerBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(outerBlanks) + 1 - first);
}

// Also the minus sign that typesetting uses.
bool holdsDigitOrSign(std::string_view text) {
  return text.find_first_of("0123456789+-") != std::string_view::npos || text.find("\u2212") != std::string_view::npos;
}

bool isWhole(std::string_view plain) {
  const std::size_t first = !plain.empty() && isSign(plain.front()) ? 1 : 0;
  return plain.size() > first && std::all_of(plain.begin() + static_cast<std::ptrdiff_t>(first), plain.end(), isDigit);
}

// "NaN", "INF" and "-INF" in any case: numbers of the declared type, and none that data can hold.
bool isNotFinite(std::string_view cell) {
  std::string lower(trimmed(cell));
  for (char& character : lower) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  }
  constexpr auto words = std::to_array<std::string_view>({"nan", "inf", "-inf"});
  return std::find(words.begin(), words.end(), lower) != words.end();
}

}  // namespace

NumberText::NumberText(const CellReading& reading)
    : isInteger_(reading.type == CellType::integer),
      bareNumber_(reading.bareNumber),
      decimalChar_(reading.decimalChar),
      groupChar_(reading.groupChar) {}

std::optional<std::string_view> NumberText::plain(std::string_view cell) {
  const std::optional<std::string_view> candidate = candidateIn(cell);
  if (!candidate) return std::nullopt;
  plain_.clear();
  std::string_view rest = *candidate;
  if (!rest.empty() && isSign(rest.front())) {
    if (rest.front() == '-') plain_ += '-';
    rest.remove_prefix(1);
  }
  const std::size_t firstDigit = plain_.size();
  while (!rest.empty()) {
    if (!groupChar_.empty() && rest.starts_with(groupChar_)) {
      rest.remove_prefix(groupChar_.size());
    } else if (!isInteger_ && rest.starts_with(decimalChar_)) {
      plain_ += '.';
      rest.remove_prefix(decimalChar_.size());
    } else if (rest.front() == '.' || (plain_.size() == firstDigit && isSign(rest.front()))) {
      return std::nullopt;  // a point that is no decimal mark here, or a second sign
    } else {
      plain_ += rest.front();
      rest.remove_prefix(1);
    }
  }
  std::size_t zeros = 0;
  while (firstDigit + zeros + 1 < plain_.size() && plain_[firstDigit + zeros] == '0' &&
         isDigit(plain_[firstDigit + zeros + 1])) {
    ++zeros;
  }
  plain_.erase(firstDigit, zeros);
  const bool isOfType = isInteger_ ? isWhole(plain_) : decimalOf(plain_).has_value();
  return isOfType ? std::optional<std::string_view>(plain_) : std::nullopt;
}

std::optional<std::string_view> NumberText::candidateIn(std::string_view cell) const {
  const std::string_view text = trimmed(cell);
  return bareNumber_ ? text : numberInside(text);
}

std::optional<std::string_view> NumberText::numberInside(std::string_view cell) const {
  for (std::size_t start = 0; start < cell.size(); ++start) {
    const std::size_t length = numberLength(cell.substr(start));
    if (length == 0) continue;
    if (holdsDigitOrSign(cell.substr(0, start)) || holdsDigitOrSign(cell.substr(start + length))) return std::nullopt;
    return cell.substr(start, length);
  }
  return std::nullopt;
}

// Of the longest number at the text's start; 0: there is none.
std::size_t NumberText::numberLength(std::string_view text) const {
  const std::size_t sign = !text.empty() && isSign(text.front()) ? 1 : 0;
  const std::size_t whole = digitsLength(text.substr(sign));
  std::size_t length = sign + whole;
  if (isInteger_) return whole == 0 ? 0 : length;
  std::size_t fraction = 0;
  if (text.substr(length).starts_with(decimalChar_)) {
    fraction = digitsLength(text.substr(length + decimalChar_.size()));
    if (whole + fraction != 0) length += decimalChar_.size() + fraction;
  }
  if (whole + fraction == 0) return 0;
  if (length < text.size() && isExponentMark(text[length])) {
    const std::size_t exponentSign = length + 1 < text.size() && isSign(text[length + 1]) ? 1 : 0;
    const std::string_view exponent = text.substr(length + 1 + exponentSign);
    const std::size_t digits = std::min(exponent.find_first_not_of("0123456789"), exponent.size());
    if (digits != 0) length += 1 + exponentSign + digits;
  }
  return length;
}

// Of the digits at the text's start, group marks between two of them included.
std::size_t NumberText::digitsLength(std::string_view text) const {
  std::size_t length = 0;
  while (length < text.size()) {
    const std::string_view rest = text.substr(length);
    const bool isGroupMark = length != 0 && !groupChar_.empty() && rest.starts_with(groupChar_) &&
                             rest.size() > groupChar_.size() && isDigit(rest[groupChar_.size()]);
    if (isGroupMark) {
      length += groupChar_.size();
    } else if (isDigit(rest.front())) {
      ++length;
    } else {
      break;
    }
  }
  return length;
}

bool NumberText::hasOddGroups(std::string_view cell) const {
  if (groupChar_.empty() || cell.find(groupChar_) == std::string_view::npos) return false;
  const std::optional<std::string_view> candidate = candidateIn(cell);
  if (!candidate || candidate->find(groupChar_) == std::string_view::npos) return false;
  constexpr std::size_t groupDigits = 3;
  std::size_t digits = 0;
  bool isFirst = true;
  const auto isOdd = [&] { return isFirst ? digits == 0 || digits > groupDigits : digits != groupDigits; };
  std::string_view rest = *candidate;
  if (!rest.empty() && isSign(rest.front())) rest.remove_prefix(1);
  while (!rest.empty()) {
    if (rest.starts_with(groupChar_)) {
      if (isOdd()) return true;
      digits = 0;
      isFirst = false;
      rest.remove_prefix(groupChar_.size());
    } else if (isDigit(rest.front())) {
      ++digits;
      rest.remove_prefix(1);
    } else {
      break;  // the decimals, or the exponent
    }
  }
  return (!isFirst && isOdd()) || rest.find(groupChar_) != std::string_view::npos;
}

std::string NumberText::whyNot(std::string_view cell, std::string_view subject) const {
  if (!isInteger_ && isNotFinite(cell)) {
    return text::sentence("^1 is no finite number, and data hold no other", {subject});
  }
  if (!bareNumber_) {
    const bool hasDigit = std::any_of(cell.begin(), cell.end(), isDigit);
    if (!hasDigit) return text::sentence(isInteger_ ? "^1 has no integer in it" : "^1 has no number in it", {subject});
    return text::sentence(isInteger_ ? "^1 has a digit or a sign apart from its integer"
                                     : "^1 has a digit or a sign apart from its number",
                          {subject});
  }
  if (!isInteger_ && decimalChar_ != ".")
    return text::sentence("^1 is no number with \"^2\" before its decimals", {subject, decimalChar_});
  return text::sentence(isInteger_ ? "^1 is no integer" : "^1 is no number", {subject});
}

}  // namespace workbench::data
