#include "workbench/data/working/sort.h"

#include <malloc.h>

#include <algorithm>
#include <future>
#include <new>
#include <system_error>
#include <utility>

#include "host/messages.h"
#include "workbench/data/working/case_sorter.h"
#include "workbench/data/working/dataset_roles.h"
#include "workbench/data/working/refusal.h"
#include "workbench/data/working/sort_order.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"

namespace workbench::data {
namespace {

// The variables to sort by, and what of a case they are.
struct SortBy {
  std::vector<std::int32_t> variables;
  std::vector<SortKey> keys;
};

Outcome<SortBy> sortByOf(const Dataset& dataset, const SortRequest& request) {
  SortBy by;
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
    key.isCollated = !key.isNumeric && !currentRun().settings.collation.empty();
    by.variables.push_back(*variable);
    by.keys.push_back(key);
  }
  if (by.keys.empty()) return problem("Name at least one variable to sort by.");
  return by;
}

// Whether the first variable alone is known to put the cases in order. What is known of a text holds for all of it and
// for the order of bytes.
bool isKnownInOrder(const Dataset& dataset, const SortBy& by) {
  const SortKey& key = by.keys.front();
  const std::int32_t variable = by.variables.front();
  const bool isAsKnown =
      key.isNumeric ||
      (!key.isCollated && key.bytes == static_cast<std::size_t>(dataset.dictionary().at(variable).width));
  return isAsKnown && dataset.caseCount().has_value() && dataset.isKnownIncreasing(variable);
}

// Reads the variables to sort by, up to the first two cases out of order.
OrderCheck checkOrder(const Dataset& dataset, const SortBy& by) {
  OrderCheck check(by.keys);
  DatasetPass pass(dataset, CaseUse::onlyRead, VariableSubset(by.variables));
  while (check.isInOrder()) {
    const CaseSpan span = pass.next();
    if (!span) break;
    check.look(span);
  }
  return check;
}

// What the sort has freed goes back to the system; the C library would keep it for this thread, which ends.
void giveBackFreedMemory() {
#ifdef __GLIBC__
  ::malloc_trim(0);
#endif
}

SortResult sortBy(Dataset& dataset, const SortRequest& request, const SortBy& by) {
  if (isKnownInOrder(dataset, by)) return {false, std::nullopt, *dataset.caseCount()};
  if (request.policy == SortPolicy::whenNeeded) {
    const OrderCheck check = checkOrder(dataset, by);
    if (check.isInOrder()) return {false, std::nullopt, check.cases()};
  }
  OrderCheck check(by.keys);
  CaseSorter sorter(dataset.layout().caseSlots, by.keys);
  {
    DatasetPass pass(dataset, CaseUse::onlyRead);
    while (const CaseSpan span = pass.next()) {
      check.look(span);
      sorter.add(span.cases, span.count, span.caseSlots);
    }
  }
  dataset.replaceCases(sorter.finish());
  giveBackFreedMemory();
  return {!check.isInOrder(), check.firstOutOfOrder(), check.cases()};
}

Outcome<SortResult> sortOne(const SortTask& task) {
  const auto by = sortByOf(task.dataset, task.request);
  if (!by) return by.problem();
  try {
    return sortBy(task.dataset, task.request, *by);
  } catch (const ErrorText& error) {
    return Problem{error.GetText(), "", ""};
  } catch (const std::bad_alloc&) {
    return problem("There is not enough memory to sort the cases.");
  }
}

}  // namespace

Outcome<SortResult> sortCases(Dataset& dataset, const SortRequest& request) {
  const Journal::Pause pause(journal());  // comparisons of the host's own
  return sortOne({dataset, request});
}

std::array<Outcome<SortResult>, 2> sortBoth(const SortTask& first, const SortTask& second) {
  const Journal::Pause pause(journal());
  if (&first.dataset == &second.dataset) return {sortOne(first), sortOne(second)};
  std::future<Outcome<SortResult>> other;
  try {
    other = std::async(std::launch::async, [&second] { return sortOne(second); });
  } catch (const std::system_error&) {
    return {sortOne(first), sortOne(second)};  // no thread is to be had; one after the other then
  }
  Outcome<SortResult> own = sortOne(first);
  return {std::move(own), other.get()};
}

}  // namespace workbench::data
