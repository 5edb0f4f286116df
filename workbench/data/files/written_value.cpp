#include "workbench/data/files/written_value.h"

#include <fmt/format.h>

#include <cmath>

#include "workbench/data/cells/calendar_text.h"
#include "workbench/data/cells/decimal_text.h"
#include "workbench/data/files/refused_value.h"
#include "workbench/text/string_comparison.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

std::optional<std::string> momentText(FormatType format, double value) {
  switch (format) {
    case FormatType::date:
      return dateText(value);
    case FormatType::time:
      return timeText(value);
    case FormatType::dateTime:
      return dateTimeText(value);
    default:
      return durationText(value);
  }
}

}  // namespace

// An empty name would not be kept as it is.
std::optional<Problem> whyNotWrittenAsText(const std::string& path, const Dictionary& dictionary) {
  if (dictionary.size() == 0) {
    return Problem{text::sentence("A dataset without variables cannot be written as text."), path,
                   text::sentence("Save one that has a variable, or none.")};
  }
  for (std::int32_t index = 0; index < dictionary.size(); ++index) {
    const std::string& name = dictionary.at(index).name;
    if (name.empty() || problemOfText(name) != nullptr) {
      return Problem{text::sentence("The name of variable ^1 cannot be written as text.", {fmt::to_string(index + 1)}),
                     path, ""};
    }
  }
  return std::nullopt;
}

bool isMoment(const Variable& variable) {
  const FormatType format = variable.format.type;
  return format == FormatType::date || format == FormatType::time || format == FormatType::dateTime ||
         format == FormatType::duration;
}

std::string numberText(const Variable& variable, double value, const std::string& path, std::uint64_t caseNumber) {
  if (!std::isfinite(value)) refuseValue(path, caseNumber, variable, noFiniteNumber);
  if (!isMoment(variable)) return decimalText(value);
  std::optional<std::string> text = momentText(variable.format.type, value);
  if (!text) {
    refuseValue(
        path, caseNumber, variable,
        "In case ^1 the value of \"^2\" is ^3, which its print format cannot show as a date or time, so it cannot "
        "be written; correct the value.",
        fmt::to_string(value));
  }
  return *std::move(text);
}

std::string_view characterText(const Variable& variable, const OBS* value, const std::string& path,
                               std::uint64_t caseNumber) {
  const std::string_view characters(value->text, static_cast<std::size_t>(variable.width));
  const std::string_view text = text::withoutTrailingBlanks(characters);
  if (const char* const why = problemOfText(text)) refuseValue(path, caseNumber, variable, why);
  return text;
}

}  // namespace workbench::data
