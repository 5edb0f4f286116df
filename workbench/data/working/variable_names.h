// What a new variable may be: its name, its storage width.
#pragma once

#include <cstdint>
#include <string_view>

namespace workbench::data {

inline constexpr std::string_view nameOfNewVariable = "Variable";  // until it is given another one
inline constexpr std::int32_t widestString = 32767;                // bytes

// Both throw ErrorText.
void checkVariableName(std::string_view name);
void checkStorageWidth(std::int32_t width);

}  // namespace workbench::data
