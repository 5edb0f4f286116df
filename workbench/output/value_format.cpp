#include "workbench/output/value_format.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "workbench/data/cells/calendar_text.h"
#include "workbench/output/date_format.h"

namespace workbench::output {
namespace {

constexpr double largestWrittenOut = 1e21;   // from here on numbers have an exponent
constexpr double smallestWrittenOut = 1e-6;  // below it, in full form
constexpr std::int32_t mostDecimals = 40;    // no format asks for more, nor for more leading zeros
constexpr std::int32_t mostPercentDecimals = 17;

// The value itself, or its neighbour away from zero when it lies exactly between two numbers of so many decimals. The
// library rounds exact halves to the even digit; people expect them to be rounded up.
double withHalvesAwayFromZero(double value, std::int32_t decimals) {
  if (decimals > 22) return value;  // powers of ten are exact up to there
  const double scale = std::pow(10.0, decimals);
  const double scaled = value * scale;
  const bool isExact = std::fma(value, scale, -scaled) == 0;
  const bool isHalf = std::fabs(scaled - std::trunc(scaled)) == 0.5;
  return isExact && isHalf ? std::nextafter(value, std::copysign(HUGE_VAL, value)) : value;
}

std::string withoutSignOfZero(std::string text) {
  const bool isNegativeZero = text.starts_with('-') && text.find_first_of("123456789") == std::string::npos;
  return isNegativeZero ? text.substr(1) : text;
}

std::string fixed(double value, std::int32_t decimals) {
  if (std::fabs(value) >= largestWrittenOut) return fullNumber(value);
  const std::int32_t kept = std::clamp(decimals, 0, mostDecimals);
  return withoutSignOfZero(fmt::format("{:.{}f}", withHalvesAwayFromZero(value, kept), kept));
}

std::string scientific(double value, std::int32_t decimals) {
  return withoutSignOfZero(fmt::format("{:.{}E}", value, std::clamp(decimals, 0, mostDecimals)));
}

std::string zeroPadded(double value, std::int32_t width, std::int32_t decimals) {
  const std::string text = fixed(value, decimals);
  if (text.find('e') != std::string::npos) return text;
  const std::size_t wanted = static_cast<std::size_t>(std::clamp(width, 0, mostDecimals));
  if (text.size() >= wanted) return text;
  const bool isNegative = text.starts_with('-');
  return fmt::format("{}{:0>{}}", isNegative ? "-" : "", text.substr(isNegative ? 1 : 0),
                     wanted - (isNegative ? 1U : 0U));
}

// 1234567.5 with a mark between every three digits of its whole part.
std::string grouped(const std::string& text, char group, char decimalMark) {
  if (text.find('e') != std::string::npos) return text;
  const std::size_t start = text.starts_with('-') ? 1 : 0;
  const std::size_t point = std::min(text.find('.'), text.size());
  std::string result = text.substr(0, start);
  for (std::size_t place = start; place < point; ++place) {
    if (place != start && (point - place) % 3 == 0) result += group;
    result += text[place];
  }
  if (point == text.size()) return result;
  result += decimalMark;
  return result.append(text, point + 1);
}

// An ISO date, or a date and a time of day, as the locale writes it; a plain number has its decimal mark.
std::string inForms(const std::string& text, FormatType type, const text::LocaleForms& forms) {
  constexpr std::size_t dateLength = 10;  // 2026-11-21
  const bool isDate = text.size() >= dateLength && text[4] == '-' && text[7] == '-';
  if ((type != FormatType::date && type != FormatType::dateTime) || !isDate) return withDecimalMark(text, forms);
  const std::string_view iso = text;
  const std::string date = text::filledForm(forms.date, {iso.substr(0, 4), iso.substr(5, 2), iso.substr(8, 2)});
  if (text.size() == dateLength) return date;
  return text::filledForm(forms.moment, {date, withDecimalMark(text.substr(dateLength + 1), forms)});
}

std::string withDollar(const std::string& text) {
  return text.starts_with('-') ? fmt::format("-${}", text.substr(1)) : fmt::format("${}", text);
}

// In the formats that have no marks of their own.
std::string unmarkedNumber(double value, FormatType type, std::int32_t width, std::int32_t decimals) {
  switch (type) {
    case FormatType::number:
    case FormatType::customA:
    case FormatType::customB:
    case FormatType::customC:
    case FormatType::customD:
    case FormatType::customE:
      return fixed(value, decimals);
    case FormatType::scientific:
      return scientific(value, decimals);
    case FormatType::restricted:
      return zeroPadded(value, width, decimals);
    case FormatType::date:
      return dateText(value).value_or(fullNumber(value));
    case FormatType::time:
      return timeText(value, decimals).value_or(fullNumber(value));
    case FormatType::dateTime:
      return dateTimeText(value, decimals).value_or(fullNumber(value));
    case FormatType::duration:
      return data::durationText(value).value_or(fullNumber(value));
    default:
      return fullNumber(value);  // a format of texts, or one that is not known, says nothing of numbers
  }
}

// A percentage without its sign.
std::string percentage(double value) {
  if (!std::isfinite(value)) return fullNumber(value);
  std::string text;
  for (std::int32_t decimals = 1; decimals <= mostPercentDecimals; ++decimals) {
    text = fixed(value, decimals);
    const bool seemsNothing = value != 0 && text.find_first_of("123456789") == std::string::npos;
    const bool seemsWhole = std::fabs(value) < 100 && (text.starts_with("100") || text.starts_with("-100"));
    if (!seemsNothing && !seemsWhole) break;
  }
  const bool showsNothing = value != 0 && text.find_first_of("123456789") == std::string::npos;
  return showsNothing ? fullNumber(value) : text;
}

std::string withPercentSign(const std::string& text, const text::LocaleForms& forms) {
  return forms.beforePercentage + withDecimalMark(text, forms) + forms.behindPercentage;
}

}  // namespace

// The machine constant of that name; asked of the host, it would be a call in the journal.
bool isSystemMissing(double value) { return value == std::numeric_limits<double>::lowest(); }

std::string formattedNumber(double value, FormatType type, std::int32_t width, std::int32_t decimals, NumberStyle style,
                            const text::LocaleForms& forms) {
  if (isSystemMissing(value)) return ".";
  if (!std::isfinite(value)) return fullNumber(value);
  if (style == NumberStyle::full) return fullNumber(value, type);
  const bool isPlain = style == NumberStyle::plain;
  switch (type) {
    case FormatType::comma:
      return isPlain ? fixed(value, decimals) : grouped(fixed(value, decimals), ',', '.');
    case FormatType::dot:
      return isPlain ? fixed(value, decimals) : grouped(fixed(value, decimals), '.', ',');
    case FormatType::dollar:
      return isPlain ? fixed(value, decimals) : withDollar(grouped(fixed(value, decimals), ',', '.'));
    case FormatType::percent:
      return isPlain ? fixed(value, decimals) + "%" : withPercentSign(fixed(value, decimals), forms);
    default:
      break;
  }
  const std::string text = unmarkedNumber(value, type, width, decimals);
  return isPlain || type == FormatType::duration ? text : inForms(text, type, forms);
}

std::string fullNumber(double value) {
  if (isSystemMissing(value)) return ".";
  const double magnitude = std::fabs(value);
  const bool isWrittenOut = magnitude == 0 || (magnitude >= smallestWrittenOut && magnitude < largestWrittenOut);
  std::array<char, 64> text;  // 21 digits, or 17 with up to 6 zeros before them, a sign and a point
  const std::to_chars_result end =
      std::to_chars(text.data(), text.data() + text.size(), value,
                    isWrittenOut ? std::chars_format::fixed : std::chars_format::scientific);
  return {text.data(), end.ptr};
}

std::string fullNumber(double value, FormatType type) {
  if (isSystemMissing(value)) return ".";
  std::optional<std::string> text;
  for (std::int32_t decimals = 0; decimals <= mostTimeDecimals; ++decimals) {
    if (type == FormatType::time) text = timeText(value, decimals);
    if (type == FormatType::dateTime) text = dateTimeText(value, decimals);
    const double scaled = value * std::pow(10.0, decimals);
    if (scaled == std::nearbyint(scaled)) break;
  }
  const bool isWholeDay = value == std::floor(value);
  if (type == FormatType::date && isWholeDay) text = dateText(value);
  if (type == FormatType::duration) text = data::durationText(value);
  return text.value_or(fullNumber(value));
}

std::string fullNumber(double value, FormatType type, const text::LocaleForms& forms) {
  const std::string text = fullNumber(value, type);
  return isSystemMissing(value) || type == FormatType::duration ? text : inForms(text, type, forms);
}

std::string countText(double value) {
  if (isSystemMissing(value)) return ".";
  return std::isfinite(value) ? fixed(value, 0) : fullNumber(value);
}

std::string countText(double value, const text::LocaleForms& forms) {
  const std::string text = countText(value);
  return isSystemMissing(value) || !std::isfinite(value) ? text : withGroups(text, forms);
}

std::string percentText(double value) { return isSystemMissing(value) ? "." : percentage(value) + "%"; }

std::string percentText(double value, const text::LocaleForms& forms) {
  return isSystemMissing(value) ? "." : withPercentSign(percentage(value), forms);
}

}  // namespace workbench::output
