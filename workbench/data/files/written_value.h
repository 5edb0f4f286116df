// How values stand in text files, whatever the form of these is.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "workbench/data/dictionary.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// Why the variables' names cannot be written, or that there is none; nothing when they can.
std::optional<Problem> whyNotWrittenAsText(const std::string& path, const Dictionary& dictionary);

// Whether its values are written as the texts of dates and times, not as digits.
bool isMoment(const Variable& variable);

// The shortest number that reads as the same value, or the date or time in the form of ISO 8601. Refuses what is no
// finite number and what is no such date or time; throws ErrorText then. Requires: the value is not missing; cases
// count from 1.
std::string numberText(const Variable& variable, double value, const std::string& path, std::uint64_t caseNumber);

// The text without the blanks at its end. Refuses what holds NUL or is no UTF-8; throws ErrorText then.
std::string_view characterText(const Variable& variable, const OBS* value, const std::string& path,
                               std::uint64_t caseNumber);

}  // namespace workbench::data
