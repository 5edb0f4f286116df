#include "workbench/data/working/sort.h"

#include <algorithm>
#include <new>
#include <utility>

#include "host/messages.h"
#include "workbench/data/working/dataset_roles.h"
#include "workbench/data/working/kept_blocks.h"
#include "workbench/data/working/refusal.h"
#include "workbench/data/working/sort_order.h"
#include "workbench/runtime/journal.h"

namespace workbench::data {
namespace {

Outcome<std::vector<SortKey>> keysOf(const Dataset& dataset, const SortRequest& request) {
  std::vector<SortKey> keys;
  for (std::size_t index = 0; index < request.by.size(); ++index) {
    const auto variable = variableNamed(dataset.dictionary(), request.by[index]);
    if (!variable) return variable.problem();
    const std::int32_t width = dataset.dictionary().at(*variable).width;
    SortKey key;
    key.slot = dataset.layout().slotOfVariable[static_cast<std::size_t>(*variable)];
    key.isNumeric = width == 0;
    key.bytes = static_cast<std::size_t>(width);
    const std::size_t cut = index < request.cutWidths.size() ? request.cutWidths[index] : 0;
    if (cut != 0) key.bytes = std::min(key.bytes, cut);
    keys.push_back(key);
  }
  if (keys.empty()) return problem("Name at least one variable to sort by.");
  return keys;
}

SortedRow rowOf(const std::vector<SortKey>& keys, const OBS* oneCase, std::int64_t number) {
  SortedRow row{number, {}};
  for (const SortKey& key : keys) {
    if (key.isNumeric) {
      row.keys.emplace_back(oneCase[key.slot].number);
    } else {
      row.keys.emplace_back(std::string(keyText(key, oneCase)));
    }
  }
  return row;
}

// One pass over a dataset that looks for the first two cases out of order.
class OrderCheck {
 public:
  explicit OrderCheck(const std::vector<SortKey>& keys) : keys_(keys) {}

  void look(const CaseSpan& span) {
    for (std::size_t index = 0; index < span.count && !result_.firstOutOfOrder; ++index) {
      const OBS* const current = span.cases + index * span.caseSlots;
      const OBS* const previous = index == 0 ? last_.data() : current - span.caseSlots;
      const std::int64_t row = result_.cases + static_cast<std::int64_t>(index) + 1;
      if (row == 1 || compareCases(keys_, previous, current) <= 0) continue;
      result_.firstOutOfOrder = std::pair(rowOf(keys_, previous, row - 1), rowOf(keys_, current, row));
    }
    result_.cases += static_cast<std::int64_t>(span.count);
    const OBS* const last = span.cases + (span.count - 1) * span.caseSlots;
    last_.assign(last, last + span.caseSlots);
  }
  bool isInOrder() const { return !result_.firstOutOfOrder; }
  SortResult& result() { return result_; }

 private:
  const std::vector<SortKey>& keys_;
  std::vector<OBS> last_;  // case of the span before
  SortResult result_;
};

// Reads all cases and checks their order. They are kept as long as that serves: up to the limit, and without one when
// they have to be sorted. Null when they were not kept.
std::shared_ptr<const KeptCases> readAndCheck(const Dataset& dataset, const SortRequest& request, OrderCheck& check) {
  std::optional<CaseKeeper> keeper(std::in_place, dataset.layout().caseSlots);
  DatasetPass pass(dataset, CaseUse::onlyRead);
  while (const CaseSpan span = pass.next()) {
    check.look(span);
    if (!keeper) continue;
    keeper->add(span.cases, span.count, span.caseSlots);
    const bool mustKeep = request.policy == SortPolicy::always || !check.isInOrder();
    if (!mustKeep && keeper->bytes() > request.keepBytes) keeper.reset();
  }
  return keeper ? keeper->finish() : nullptr;
}

std::shared_ptr<const KeptCases> readAll(const Dataset& dataset) {
  CaseKeeper keeper(dataset.layout().caseSlots);
  DatasetPass pass(dataset, CaseUse::onlyRead);
  while (const CaseSpan span = pass.next()) keeper.add(span.cases, span.count, span.caseSlots);
  return keeper.finish();
}

std::shared_ptr<const KeptCases> sorted(const KeptCases& kept, const std::vector<SortKey>& keys) {
  std::vector<SortableCase> cases;
  cases.reserve(static_cast<std::size_t>(kept.cases()));
  for (const CaseBlock& block : kept.blocks()) {
    for (std::size_t index = 0; index < block.cases(); ++index) cases.push_back({0, cases.size(), block.at(index)});
  }
  sortByKeys(keys, cases);
  CaseKeeper inOrder(kept.caseSlots());
  for (const SortableCase& next : cases) inOrder.add(next.slots, 1, kept.caseSlots());
  return inOrder.finish();
}

SortResult sortByKeysOf(Dataset& dataset, const SortRequest& request, const std::vector<SortKey>& keys) {
  OrderCheck check(keys);
  std::shared_ptr<const KeptCases> kept = dataset.keptCases();
  if (kept) {
    SharedBlocks blocks(kept);
    while (const CaseSpan span = blocks.next()) check.look(span);
  } else {
    kept = readAndCheck(dataset, request, check);
  }
  if (!check.isInOrder()) {
    if (!kept) kept = readAll(dataset);
    kept = sorted(*kept, keys);
    check.result().reordered = true;
  }
  if (kept) dataset.replaceCases(std::move(kept));
  return std::move(check.result());
}

}  // namespace

Outcome<SortResult> sortCases(Dataset& dataset, const SortRequest& request) {
  const auto keys = keysOf(dataset, request);
  if (!keys) return keys.problem();
  const Journal::Pause pause(journal());  // comparisons of the host's own
  try {
    return sortByKeysOf(dataset, request, *keys);
  } catch (const ErrorText& error) {
    return Problem{error.GetText(), "", ""};
  } catch (const std::bad_alloc&) {
    return problem("There is not enough memory to sort the cases.");
  }
}

}  // namespace workbench::data
