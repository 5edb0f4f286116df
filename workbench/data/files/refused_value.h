// What all writers refuse: values that a file cannot hold.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "workbench/data/dictionary.h"

namespace workbench::data {

// A value that cannot be written: throws ErrorText with what, where and why ("is no UTF-8"). The case's number counts
// from 1.
[[noreturn]] void refuseValue(const std::string& path, std::uint64_t caseNumber, const Variable& variable,
                              std::string_view why);

// Why a text cannot be written where texts are characters; null: it can.
const char* problemOfText(std::string_view text);

}  // namespace workbench::data
