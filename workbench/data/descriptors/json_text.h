// JsonDocument: a JSON file, read strictly.
//
// Beside what is no JSON a key that stands twice is refused (one of the two would be lost in silence), as are nesting
// and sizes that no descriptor has, NUL bytes outside texts, bytes that are no UTF-8, and numbers beyond the range of
// doubles. One byte order mark at the start is dropped.
#pragma once

#include <cstddef>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <unordered_set>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

using Json = nlohmann::ordered_json;  // keys stay in their order

inline constexpr std::size_t largestJsonFile = std::size_t{16} << 20;  // bytes
inline constexpr std::size_t deepestJson = 64;                         // objects and lists inside each other

struct JsonDocument {
  std::string path;  // as shown to people
  std::shared_ptr<const Json> root;
  // JSON pointers of the numbers that no double holds as they are written.
  std::unordered_set<std::string> roundedNumbers;
};

// The problem names the file, and the line and column or the JSON pointer.
Outcome<JsonDocument> readJsonFile(const std::string& path);
Outcome<JsonDocument> jsonDocument(std::string_view text, const std::string& path);

// The JSON pointer of a member of what the given pointer points to.
std::string pointerTo(std::string_view parent, std::string_view key);
std::string pointerTo(std::string_view parent, std::size_t index);

}  // namespace workbench::data
