#include "tests/model/naive_order.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>

namespace workbench::tests::model {

namespace {

bool sameBits(double left, double right) {
  return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

}  // namespace

CaseOrder::CaseOrder(const World& world, std::vector<CaseIdPlace> ids) : world_(world), ids_(std::move(ids)) {}

bool CaseOrder::mayFollow(Side side, const Case* before, const Case& one) const {
  // An ID may start again from the bottom when the ID right before it has gone up. The bottom is a blank text, or less
  // than any number. A text that stays at the bottom has not gone up, so the ID behind it may not start again.
  bool startsAgain = before == nullptr;
  for (std::size_t id = 0; id < ids_.size(); ++id) {
    int step = 0;
    if (isNumber(id)) {
      const double number = numberOf(one[placeOf(id, side)]);
      const double last = startsAgain ? -HUGE_VAL : numberOf((*before)[placeOf(id, side)]);
      step = last > number ? -1 : sameBits(last, number) ? 0 : 1;
    } else {
      step = compareTexts(textOf(id, side, one), startsAgain ? "" : textOf(id, side, *before));
    }
    if (step < 0) return false;
    startsAgain = before == nullptr || step > 0;
  }
  return true;
}

int CaseOrder::compare(const Case& active, const Case& compared) const {
  for (std::size_t id = 0; id < ids_.size(); ++id) {
    if (isNumber(id)) {
      const double left = numberOf(active[placeOf(id, Side::active)]);
      const double right = numberOf(compared[placeOf(id, Side::compared)]);
      if (!sameBits(left, right)) return right > left ? -1 : 1;
    } else {
      const int order = compareTexts(textOf(id, Side::active, active), textOf(id, Side::compared, compared));
      if (order != 0) return order;
    }
  }
  return 0;
}

// As many bytes as the active variable has, on both sides.
std::string CaseOrder::textOf(std::size_t id, Side side, const Case& one) const {
  const auto width = static_cast<std::size_t>(world_.active.variables[ids_[id].active].width);
  return withoutTrailingBlanks(model::textOf(one[placeOf(id, side)]).substr(0, width));
}

int CaseOrder::compareTexts(const std::string& left, const std::string& right) const {
  if (left == right || world_.collation.empty()) return left.compare(right);
  return world_.collate(left, right);
}

std::size_t CaseOrder::placeOf(std::size_t id, Side side) const {
  return side == Side::active ? ids_[id].active : ids_[id].compared;
}

std::optional<std::vector<CaseIdPlace>> findCaseIds(const World& world, const Options& options) {
  std::vector<CaseIdPlace> ids;
  for (const std::size_t active : options.caseIds) {
    const auto compared = placeOf(world.compared, world.active.variables[active].name);
    if (!compared) return std::nullopt;
    if (world.active.variables[active].isNumber() != world.compared.variables[*compared].isNumber())
      return std::nullopt;
    ids.push_back({active, *compared});
  }
  return ids;
}

}  // namespace workbench::tests::model
