// What all writers refuse: values that a file cannot hold.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "workbench/data/dictionary.h"

namespace workbench::data {

// A value that cannot be written: throws ErrorText with where and why, a sentence in which ^1 stands for the case's
// number (which counts from 1), ^2 for the variable's name and ^3 for the value where it is shown.
[[noreturn]] void refuseValue(const std::string& path, std::uint64_t caseNumber, const Variable& variable,
                              std::string_view why, std::string_view value = {});

// The sentence for a number that is none.
constexpr const char* noFiniteNumber =
    "In case ^1 the value of \"^2\" is no finite number, so it cannot be written; correct the value.";

// The sentence for a text that cannot be written where texts are characters; null: it can.
const char* problemOfText(std::string_view text);

}  // namespace workbench::data
