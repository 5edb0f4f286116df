#include "workbench/data/working/handed_out.h"

#include <utility>
#include <vector>

namespace workbench::data {
namespace {

std::vector<HandedOut*>& allHandedOut() {
  static std::vector<HandedOut*> all;
  return all;
}

}  // namespace

HandedOut::HandedOut() { allHandedOut().push_back(this); }

HandedOut::~HandedOut() { std::erase(allHandedOut(), this); }

std::size_t letGoOfAllHandedOut() noexcept {
  std::size_t count = 0;
  for (; !allHandedOut().empty(); ++count) {
    HandedOut* const youngest = allHandedOut().back();
    allHandedOut().pop_back();
    youngest->letGo();
  }
  return count;
}

}  // namespace workbench::data
