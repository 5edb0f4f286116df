#include "workbench/text/message_pattern.h"

#include <fmt/format.h>
#include <unicode/msgfmt.h>

#include <stdexcept>
#include <vector>

namespace workbench::text {

std::string filledMessage(const std::string& pattern, std::span<const double> numbers, const std::string& language) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::MessageFormat format(icu::UnicodeString::fromUTF8(pattern), icu::Locale(language.c_str()), status);
  const std::vector<icu::Formattable> arguments(numbers.begin(), numbers.end());
  icu::UnicodeString filled;
  icu::FieldPosition ignored(icu::FieldPosition::DONT_CARE);
  format.format(arguments.data(), static_cast<std::int32_t>(arguments.size()), filled, ignored, status);
  if (U_FAILURE(status)) throw std::logic_error(fmt::format("message pattern: {}: {}", pattern, u_errorName(status)));
  std::string text;
  filled.toUTF8String(text);
  return text;
}

}  // namespace workbench::text
