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

namespace workbench::output {

std::int64_t momentOfResults() {
  if (const char* given = std::getenv("SOURCE_DATE_EPOCH")) {
    const std::string_view text(given);
    std::int64_t moment = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), moment);
    if (error == std::errc() && end == text.data() + text.size()) return moment;
  }
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::seconds>(now).count();
}

std::string shownMoment(std::int64_t moment, const std::string& language) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Locale locale(language.c_str());
  const std::unique_ptr<icu::DateTimePatternGenerator> patterns(
      icu::DateTimePatternGenerator::createInstance(locale, status));
  if (U_FAILURE(status)) throw std::runtime_error("ICU's data for dates cannot be loaded.");
  icu::SimpleDateFormat format(patterns->getBestPattern("yMMMMdHHmm", status), locale, status);
  if (U_FAILURE(status)) throw std::runtime_error("ICU's data for dates cannot be loaded.");
  format.setTimeZone(*icu::TimeZone::getGMT());
  icu::UnicodeString wide;
  format.format(static_cast<UDate>(moment) * 1000, wide);
  std::string text;
  wide.toUTF8String(text);
  return text + " UTC";
}

}  // namespace workbench::output
