// What the end of a file's name says, in letters of any case.
#pragma once

#include <algorithm>
#include <string_view>

namespace workbench::data {

// Requires: the ending is in lower case.
inline bool hasEnding(std::string_view name, std::string_view ending) {
  const auto lower = [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
  };
  return name.size() >= ending.size() &&
         std::equal(ending.begin(), ending.end(), name.end() - static_cast<std::ptrdiff_t>(ending.size()),
                    [&](char wanted, char found) { return wanted == lower(found); });
}

}  // namespace workbench::data
