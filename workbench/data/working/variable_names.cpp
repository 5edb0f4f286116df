#include "workbench/data/working/variable_names.h"

#include <fmt/format.h>

#include "workbench/data/dictionary.h"
#include "workbench/data/working/refusal.h"

namespace workbench::data {

void checkVariableName(std::string_view name) {
  if (name.empty()) refuse("A variable needs a name.");
  // A dictionary without variables takes a name as it is when all its characters may stand in one.
  if (Dictionary().goodName(name) != name) refuse("The name ^1 has characters that no variable name may hold.", {name});
}

void checkStorageWidth(std::int32_t width) {
  if (width >= 0 && width <= widestString) return;
  refuse("^1 is no storage width of a variable; it is 0 for a number, else 1 to ^2 bytes.",
         {fmt::to_string(width), fmt::to_string(widestString)});
}

}  // namespace workbench::data
