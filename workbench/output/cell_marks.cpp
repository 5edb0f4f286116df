#include "workbench/output/cell_marks.h"

namespace workbench::output {

bool setsTwoAgainstEachOther(const Text& text) {
  const auto* composite = std::get_if<CompositeText>(&text.held);
  if (composite == nullptr || composite->translate || composite->items.size() != 2) return false;
  const std::size_t first = composite->pattern.find("^1");
  const std::size_t second = composite->pattern.find("^2");
  if (first == std::string::npos || second == std::string::npos || second < first) return false;
  return composite->pattern.substr(first, second - first).find('\n') != std::string::npos;
}

}  // namespace workbench::output
