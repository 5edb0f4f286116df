#include "procedures/profile/paired_cases.h"

#include <utility>

#include "procedures/profile/value_equality.h"

namespace profile {

PairedCases::PairedCases(VRIX_DataSource& active, VRIX_DataSource& comparison, std::vector<CaseIdVariable> ids)
    : ids_(std::move(ids)) {
  sides_[activeSide].cases = active.CreateCaseIterator(IteratorOptions::standard);
  sides_[comparisonSide].cases = comparison.CreateCaseIterator(IteratorOptions::standard);
  for (Side& side : sides_) {
    side.values.resize(ids_.size());
    side.before.resize(ids_.size());
  }
}

PairedCases::Step PairedCases::next() {
  if (last_ != Step::comparisonOnly) read(activeSide);
  if (last_ != Step::activeOnly) read(comparisonSide);

  const State active = sides_[activeSide].state;
  const State comparison = sides_[comparisonSide].state;
  if (active == State::outOfOrder) return last_ = Step::activeOutOfOrder;
  if (comparison == State::outOfOrder) return last_ = Step::comparisonOutOfOrder;
  if (active == State::ended && comparison == State::ended) return last_ = Step::ended;
  if (comparison == State::ended) return last_ = Step::activeOnly;
  if (active == State::ended) return last_ = Step::comparisonOnly;
  const int order = comparedIds();
  return last_ = order < 0 ? Step::activeOnly : (order > 0 ? Step::comparisonOnly : Step::pair);
}

void PairedCases::read(std::size_t number) {
  Side& side = sides_[number];
  if (side.state != State::current) return;
  if (!side.cases->NextCase()) {
    side.state = State::ended;
    return;
  }
  ++side.row;
  if (ids_.empty()) return;
  takeIds(number);
  if (side.row > 1 && !isInOrder(number)) side.state = State::outOfOrder;
}

void PairedCases::takeIds(std::size_t number) {
  Side& side = sides_[number];
  side.before.swap(side.values);
  for (std::size_t id = 0; id < ids_.size(); ++id) {
    const OBS* value = side.cases->GetObsPointer(ids_[id].index[number]);
    if (ids_[id].isText) {
      side.values[id].text.assign(value->text, ids_[id].width[number]);
    } else {
      side.values[id].number = value->number;
    }
  }
}

bool PairedCases::isInOrder(std::size_t number) const {
  const Side& side = sides_[number];
  for (std::size_t id = 0; id < ids_.size(); ++id) {
    if (ids_[id].isText) {
      const int order = VRIXMBstrcoll_A(side.before[id].text, side.values[id].text);
      if (order != 0) return order < 0;
    } else if (!sameBits(side.before[id].number, side.values[id].number)) {
      return side.before[id].number <= side.values[id].number;
    }
  }
  return true;
}

// Of two zeros of different signs the comparison dataset's counts as the lower one, as in a comparison.
int PairedCases::comparedIds() const {
  for (std::size_t id = 0; id < ids_.size(); ++id) {
    const CaseIdValue& active = sides_[activeSide].values[id];
    const CaseIdValue& comparison = sides_[comparisonSide].values[id];
    if (ids_[id].isText) {
      const int order = VRIXMBstrcoll_A(active.text, comparison.text);
      if (order != 0) return order;
    } else if (!sameBits(active.number, comparison.number)) {
      return comparison.number > active.number ? -1 : 1;
    }
  }
  return 0;
}

}  // namespace profile
