#include "workbench/output/xlsx_cell.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <optional>

#include "workbench/output/display_text.h"
#include "workbench/output/sentences.h"
#include "workbench/output/value_format.h"

namespace workbench::output {
namespace {

constexpr std::string_view ellipsis = "\xE2\x80\xA6";
constexpr double secondsOfDay = 86400;

// A number as a workbook keeps it.
struct Held {
  double value = 0;
  std::string format;
};

std::string withDecimals(std::string format, std::int32_t decimals) {
  constexpr std::int32_t mostDecimals = 30;  // of a number format
  const std::int32_t kept = std::clamp(decimals, 0, mostDecimals);
  if (kept > 0) format += '.' + std::string(static_cast<std::size_t>(kept), '0');
  return format;
}

// The digits that tell the number from any other.
std::size_t significantDigits(double value) {
  std::string digits;
  for (const char character : fullNumber(std::fabs(value))) {
    if (character == 'e') break;
    if (character != '.') digits += character;
  }
  const std::size_t first = digits.find_first_not_of('0');
  return first == std::string::npos ? 0 : digits.find_last_not_of('0') - first + 1;
}

// Spreadsheets show 15 digits, and their numbers end somewhat earlier than doubles.
bool isWithinRange(double value) {
  constexpr double largest = 9.99999999999999e307;
  constexpr double smallest = 2.2250738585072014e-308;
  const double magnitude = std::fabs(value);
  return std::isfinite(value) && (magnitude == 0 || (magnitude >= smallest && magnitude <= largest));
}

bool isKeptWhole(double value) {
  constexpr std::size_t digitsShown = 15;
  return isWithinRange(value) && significantDigits(value) <= digitsShown;
}

std::size_t decimalsOf(const std::string& text) {
  const std::size_t point = text.find('.');
  return point == std::string::npos ? 0 : text.size() - point - 1;
}

std::string paddedFormat(std::int32_t width, std::int32_t decimals) {
  const std::int32_t behind = decimals > 0 ? decimals + 1 : 0;
  const auto zeros = [&](std::int32_t count) {
    return withDecimals(std::string(static_cast<std::size_t>(std::clamp(count, 1, 40)), '0'), decimals);
  };
  return zeros(width - behind) + ";-" + zeros(width - behind - 1);
}

// Days of a spreadsheet are right from March 1900 on, and end with the year 9999.
std::optional<Held> date(double days, const std::string& format) {
  constexpr double firstDay = -25508;
  constexpr double lastDay = 2932896;
  constexpr double dayOf1970 = 25569;
  if (!(days >= firstDay && days < lastDay + 1)) return std::nullopt;
  return Held{days + dayOf1970, format};
}

// A time of day or a moment: a spreadsheet shows thousandths of a second.
std::string timeFormat(std::string hours, std::int32_t decimals) {
  return hours + withDecimals(":mm:ss", std::min(decimals, 3));
}

bool hasAtMostThousandths(double value, FormatType type) { return decimalsOf(fullNumber(value, type)) <= 3; }

std::optional<Held> plainNumber(double value, std::string format) {
  if (!isKeptWhole(value)) return std::nullopt;
  return Held{value, std::move(format)};
}

// Nothing where a cell would not hold all of the value.
std::optional<Held> heldValue(double value, const ValueVariable& variable, const text::LocaleForms& forms) {
  const std::string dateFormat = text::filledForm(forms.date, {"yyyy", "mm", "dd"});
  switch (variable.format) {
    case FormatType::comma:
    case FormatType::dot:
      return plainNumber(value, withDecimals("#,##0", variable.decimals));
    case FormatType::dollar:
      return plainNumber(value, "\"$\"" + withDecimals("#,##0", variable.decimals));
    case FormatType::percent:
      return plainNumber(value, withDecimals("0", variable.decimals) + "\"%\"");
    case FormatType::scientific:
      return plainNumber(value, withDecimals("0", variable.decimals) + "E+00");
    case FormatType::restricted:
      return plainNumber(value, paddedFormat(variable.width, variable.decimals));
    case FormatType::date:
      return date(value, dateFormat);
    case FormatType::time:
      if (!(value >= 0 && value < 1e9) || !hasAtMostThousandths(value, variable.format)) return std::nullopt;
      return Held{value / secondsOfDay, timeFormat("[hh]", variable.decimals)};
    case FormatType::dateTime:
      if (!hasAtMostThousandths(value, variable.format)) return std::nullopt;
      return date(value / secondsOfDay, dateFormat + timeFormat(" hh", variable.decimals));
    case FormatType::duration:
      return std::nullopt;
    case FormatType::text:
      return plainNumber(value, "");
    default:
      return plainNumber(value, withDecimals("0", variable.decimals));
  }
}

// The number that reads like this one with its point moved: 0.999 of 99.9, where dividing gives 0.9990000000000001.
double hundredth(double value) {
  const std::string text = fullNumber(value);
  if (text.find('e') != std::string::npos || !std::isfinite(value)) return value / 100;
  const std::string moved = text + "e-2";
  double result = 0;
  std::from_chars(moved.data(), moved.data() + moved.size(), result);
  return result;
}

// A statistic may be rounded where spreadsheets do; a percentage is a share of 1 there.
std::optional<Held> heldStatistic(const NumberText& text) {
  if (text.format != BpFormat::percent) {
    if (!isWithinRange(text.value)) return std::nullopt;
    return Held{text.value, "#,##0"};
  }
  const double share = hundredth(text.value);
  const std::string shown = percentText(text.value);
  const bool isWrittenOut = shown.find('e') == std::string::npos;
  if (!isWithinRange(share) || !isWrittenOut) return std::nullopt;
  return Held{share, withDecimals("0", static_cast<std::int32_t>(decimalsOf(shown)) - 1) + "%"};
}

// Each section of a format, with the marks as they stand behind the number.
std::string formatWithMarks(const std::string& format, const std::string& marks) {
  if (marks.empty()) return format;
  const std::string quoted = fmt::format("\"{}\"", marks);
  const std::string whole = format.empty() ? "General" : format;
  const std::size_t section = whole.find(';');
  if (section == std::string::npos) return whole + quoted;
  return whole.substr(0, section) + quoted + whole.substr(section) + quoted;
}

// The number of a text that is one; nothing for the missing value, which has a sign of its own.
std::optional<double> numberOf(const Text& text) {
  std::optional<double> number;
  if (const auto* statistic = std::get_if<NumberText>(&text.held)) number = statistic->value;
  const auto* value = std::get_if<ValueText>(&text.held);
  if (value != nullptr && std::holds_alternative<double>(value->value)) number = std::get<double>(value->value);
  return number && !isSystemMissing(*number) ? number : std::nullopt;
}

// All of a number, where its print format may not show it.
std::string fullText(const Text& text, const text::Wording& wording) {
  const auto* value = std::get_if<ValueText>(&text.held);
  if (value == nullptr) return shown(text, wording, xlsxStyle);
  return fullNumber(std::get<double>(value->value), value->variable->format, wording.forms());
}

bool isDuration(const Text& text) {
  const auto* value = std::get_if<ValueText>(&text.held);
  return value != nullptr && value->variable->format == FormatType::duration;
}

// Two of the characters that a workbook's files may not have are UTF-8 all the same.
std::string withoutNoncharacters(const std::string& text) {
  std::string result = text;
  for (const char* const character : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
    for (std::size_t at = result.find(character); at != std::string::npos; at = result.find(character, at)) {
      result.replace(at, 3, "\xEF\xBF\xBD");
    }
  }
  return result;
}

// Only so many lines fit into a cell; those that follow are joined, with the sign for a line break.
std::string withFewLines(const std::string& text) {
  constexpr int mostBreaks = 253;
  std::string result;
  int breaks = 0;
  for (const char character : text) {
    if (character == '\n' && ++breaks > mostBreaks) {
      result += "\xE2\x90\x8A";
    } else {
      result += character;
    }
  }
  return result;
}

// In a workbook "_x0041_" stands for the character of that number: a text that reads so has its first sign escaped.
std::string escaped(const std::string& text) {
  constexpr std::size_t length = 7;
  const auto isCode = [&](std::size_t at) {
    return text.compare(at, 2, "_x") == 0 && at + length <= text.size() && text[at + length - 1] == '_' &&
           std::all_of(text.begin() + static_cast<std::ptrdiff_t>(at + 2),
                       text.begin() + static_cast<std::ptrdiff_t>(at + length - 1),
                       [](char one) { return std::isxdigit(static_cast<unsigned char>(one)) != 0; });
  };
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '_' && isCode(at)) result += "_x005F";
    result += text[at];
  }
  return result;
}

bool fits(const std::string& text, std::size_t mostUnits) { return beginning(text, mostUnits).size() == text.size(); }

// The longest beginning that fits when it is escaped.
std::string cutToFit(const std::string& text, std::size_t mostUnits) {
  std::size_t fitting = 0;
  for (std::size_t tooMany = mostUnits + 1; tooMany - fitting > 1;) {
    const std::size_t units = fitting + (tooMany - fitting) / 2;
    (fits(escaped(beginning(text, units)), mostUnits) ? fitting : tooMany) = units;
  }
  return beginning(text, fitting);
}

}  // namespace

XlsxCell xlsxCell(const Text& text, const std::string& marks, const text::Wording& wording, const XlsxLimits& limits,
                  XlsxRemarks& remarks) {
  XlsxLimits room = limits;
  room.textUnits -= std::min(room.textUnits, marks.size());
  const std::optional<double> number = numberOf(text);
  if (!number) return {xlsxText(shown(text, wording, xlsxStyle), room, remarks) + marks, {}};
  const auto* value = std::get_if<ValueText>(&text.held);
  const std::optional<Held> held = value != nullptr ? heldValue(*number, *value->variable, wording.forms())
                                                    : heldStatistic(std::get<NumberText>(text.held));
  if (held) return {held->value, formatWithMarks(held->format, marks)};
  if (!isDuration(text)) remarks.insert(XlsxRemark::numbersAreTexts);
  return {xlsxText(fullText(text, wording), room, remarks) + marks, {}};
}

std::string xlsxText(std::string_view text, const XlsxLimits& limits, XlsxRemarks& remarks) {
  std::string readable = withoutNoncharacters(visible(text));
  if (readable != text) remarks.insert(XlsxRemark::signsAreShown);
  readable = withFewLines(readable);
  const std::string whole = escaped(readable);
  if (fits(whole, limits.textUnits)) return whole;
  remarks.insert(XlsxRemark::textsAreCut);
  return escaped(cutToFit(readable, limits.textUnits - 1)).append(ellipsis);
}

std::string remarkSentence(XlsxRemark remark, const XlsxLimits& limits, const text::Wording& wording) {
  switch (remark) {
    case XlsxRemark::textsAreCut: {
      const std::string most = countText(static_cast<double>(limits.textUnits), wording.forms());
      return shownSentence(sentences::cutTexts, {most}, wording);
    }
    case XlsxRemark::numbersAreTexts:
      return wording.resolve(sentences::numbersAsTexts);
    case XlsxRemark::signsAreShown:
      break;
  }
  return wording.resolve(sentences::shownBySigns);
}

}  // namespace workbench::output
