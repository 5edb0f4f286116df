#include "workbench/runtime/journal.h"

#include <fmt/format.h>

namespace workbench {

void Journal::beginCommand(std::string_view name) {
  names_.clear();
  counts_.clear();
  if (isOn()) line(fmt::format("# {}", name));
}

std::string Journal::created(const void* object, std::string_view type) {
  auto count = counts_.find(type);
  if (count == counts_.end()) count = counts_.emplace(std::string(type), 0).first;
  std::string name = fmt::format("{}#{}", type, ++count->second);
  names_[object] = name;
  return name;
}

std::string Journal::nameOf(const void* object, std::string_view type) {
  const auto known = names_.find(object);
  return known != names_.end() ? known->second : created(object, type);
}

void Journal::destroyed(const void* object) {
  const auto known = names_.find(object);
  if (known == names_.end()) return;
  if (isOn()) line("~" + known->second);
  names_.erase(known);
}

std::string Journal::quoted(std::string_view text) {
  std::string result = "\"";
  for (const char character : text) {
    if (character == '"' || character == '\\') {
      result += '\\';
      result += character;
    } else if (character == '\n') {
      result += "\\n";
    } else if (static_cast<unsigned char>(character) < 0x20 || character == 0x7f) {
      result += fmt::format("\\x{:02x}", static_cast<unsigned char>(character));
    } else {
      result += character;
    }
  }
  return result + '"';
}

Journal& journal() {
  static Journal theJournal;
  return theJournal;
}

}  // namespace workbench
