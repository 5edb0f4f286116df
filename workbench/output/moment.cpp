#include "workbench/output/moment.h"

#include <unicode/dtptngen.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <charconv>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string_view>

#include "workbench/text/wording.h"

namespace workbench::output {

Outcome<MomentOfResults> momentOfResults() {
  constexpr const char* variable = "SOURCE_DATE_EPOCH";
  const char* const given = std::getenv(variable);
  if (given == nullptr || *given == '\0') {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return MomentOfResults{std::chrono::duration_cast<std::chrono::seconds>(now).count(), false};
  }
  const std::string_view digits(given);
  std::int64_t seconds = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), seconds);
  if (error == std::errc() && end == digits.data() + digits.size() && seconds >= 0)
    return MomentOfResults{seconds, true};
  return Problem{text::sentence("This is no time in seconds since 1970."), variable,
                 text::sentence("Write a whole number, or leave the variable out.")};
}

std::string shownMoment(std::int64_t moment, const std::string& language) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Locale locale(language.c_str());
  const std::unique_ptr<icu::DateTimePatternGenerator> patterns(
      icu::DateTimePatternGenerator::createInstance(locale, status));
  if (U_FAILURE(status)) throw std::runtime_error(text::sentence("ICU's data for dates cannot be loaded."));
  icu::SimpleDateFormat format(patterns->getBestPattern("yMMMMdHHmm", status), locale, status);
  if (U_FAILURE(status)) throw std::runtime_error(text::sentence("ICU's data for dates cannot be loaded."));
  format.setTimeZone(*icu::TimeZone::getGMT());
  icu::UnicodeString wide;
  format.format(static_cast<UDate>(moment) * 1000, wide);
  std::string text;
  wide.toUTF8String(text);
  return text + " UTC";
}

}  // namespace workbench::output
