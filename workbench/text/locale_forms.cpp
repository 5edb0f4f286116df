#include "workbench/text/locale_forms.h"

#include <fmt/format.h>
#include <unicode/decimfmt.h>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/numfmt.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace workbench::text {
namespace {

void require(UErrorCode status, std::string_view locale) {
  if (U_FAILURE(status)) throw std::runtime_error(fmt::format("The number forms of {} cannot be loaded.", locale));
}

icu::Locale localeOf(std::string_view name) {
  const std::string_view bare = name.substr(0, name.find('.'));
  const bool isEnglish = bare.empty() || bare == "C" || bare == "POSIX";
  icu::Locale locale = icu::Locale::createCanonical(isEnglish ? "en" : std::string(bare).c_str());
  UErrorCode status = U_ZERO_ERROR;
  locale.setKeywordValue("numbers", "latn", status);
  require(status, name);
  return locale;
}

std::string utf8(const icu::UnicodeString& wide) {
  std::string text;
  wide.toUTF8String(text);
  return text;
}

// ICU's own formatter of the locale: of numbers, or of percentages.
template <class Make>
std::unique_ptr<icu::DecimalFormat> formatterOf(Make make, const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::NumberFormat> format(make(locale, status));
  require(status, locale.getName());
  auto* decimal = dynamic_cast<icu::DecimalFormat*>(format.get());
  if (decimal == nullptr) require(U_UNSUPPORTED_ERROR, locale.getName());
  format.release();
  return std::unique_ptr<icu::DecimalFormat>(decimal);
}

}  // namespace

LocaleForms numberFormsOf(std::string_view name) {
  using Make = icu::NumberFormat* (*)(const icu::Locale&, UErrorCode&);
  const icu::Locale locale = localeOf(name);
  const auto numbers = formatterOf(static_cast<Make>(&icu::NumberFormat::createInstance), locale);
  const auto percentages = formatterOf(static_cast<Make>(&icu::NumberFormat::createPercentInstance), locale);
  const icu::DecimalFormatSymbols& symbols = *numbers->getDecimalFormatSymbols();
  LocaleForms forms;
  forms.decimalMark = utf8(symbols.getConstSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol));
  forms.groupMark = utf8(symbols.getConstSymbol(icu::DecimalFormatSymbols::kGroupingSeparatorSymbol));
  forms.groupSize = numbers->isGroupingUsed() != 0 ? numbers->getGroupingSize() : 0;
  const int secondary = numbers->getSecondaryGroupingSize();
  forms.nextGroupSize = secondary > 0 ? secondary : forms.groupSize;
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString sample =
      icu::number::NumberFormatter::withLocale(locale).formatInt(1234, status).toString(status);
  require(status, name);
  forms.fewestDigitsBeforeMark = sample.length() > 4 ? 1 : 2;
  icu::UnicodeString affix;
  forms.beforePercentage = utf8(percentages->getPositivePrefix(affix));
  forms.behindPercentage = utf8(percentages->getPositiveSuffix(affix));
  return forms;
}

std::string withDecimalMark(std::string text, const LocaleForms& forms) {
  const std::size_t point = text.find('.');
  if (point != std::string::npos) text.replace(point, 1, forms.decimalMark);
  return text;
}

std::string withGroups(const std::string& text, const LocaleForms& forms) {
  const std::size_t start = text.starts_with('-') ? 1 : 0;
  const std::size_t end = std::min(text.find_first_not_of("0123456789", start), text.size());
  const std::size_t first = static_cast<std::size_t>(forms.groupSize);
  const std::size_t next = static_cast<std::size_t>(forms.nextGroupSize);
  const std::size_t fewest = first + static_cast<std::size_t>(forms.fewestDigitsBeforeMark);
  const bool isGrouped = first > 0 && end - start >= fewest && text.find('e', end) == std::string::npos;
  if (!isGrouped) return withDecimalMark(text, forms);
  std::string result = text.substr(0, start);
  for (std::size_t place = start; place < end; ++place) {
    const std::size_t left = end - place;
    if (place != start && left >= first && (left - first) % next == 0) result += forms.groupMark;
    result += text[place];
  }
  return result + withDecimalMark(text.substr(end), forms);
}

std::string filledForm(std::string_view pattern, std::initializer_list<std::string_view> items) {
  std::string text;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const bool isItem = pattern[at] == '^' && at + 1 < pattern.size() && pattern[at + 1] >= '1' &&
                        pattern[at + 1] < '1' + static_cast<char>(items.size());
    if (isItem) {
      text += items.begin()[pattern[++at] - '1'];
    } else {
      text += pattern[at];
    }
  }
  return text;
}

}  // namespace workbench::text
