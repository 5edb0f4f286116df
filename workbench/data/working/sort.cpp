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
#include "workbench/data/working/key_check.h"
#include "workbench/data/working/refusal.h"
#include "workbench/data/working/sort_order.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"

namespace workbench::data {
namespace {

// The variables to sort by, what of a case they are, and which values of theirs are declared missing.
struct SortBy {
  std::vector<std::int32_t> variables;
  std::vector<SortKey> keys;
  std::vector<MissingValues> missing;
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
    by.missing.push_back(dataset.dictionary().at(*variable).missing);
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

// Whether that tells all of the keys: they increase, and none is missing by declaration.
bool areKnownSound(const Dataset& dataset, const SortBy& by) {
  return isKnownInOrder(dataset, by) &&
         std::all_of(by.missing.begin(), by.missing.end(), [](const MissingValues& one) { return one.code == 0; });
}

LookedAt lookedAt(const SortBy& by) { return {by.keys, isCollated(by.keys) ? currentRun().settings.collation : ""}; }

// An added variable may be written to later on; what was found of it is not kept.
void remember(Dataset& dataset, const SortBy& by, KeyFindings findings) {
  const bool areLasting = std::all_of(by.variables.begin(), by.variables.end(),
                                      [&](std::int32_t variable) { return variable < dataset.baseVariables(); });
  findings.of = lookedAt(by);
  if (areLasting) dataset.rememberKeys(std::move(findings));
}

// Reads the variables to sort by, up to the first two cases out of order.
void checkOrder(const Dataset& dataset, const SortBy& by, KeyCheck& check) {
  DatasetPass pass(dataset, CaseUse::onlyRead, VariableSubset(by.variables));
  while (check.isInOrder()) {
    const CaseSpan span = pass.next();
    if (!span) break;
    check.look(span);
  }
}

// What the sort has freed goes back to the system; the C library would keep it for this thread, which ends.
void giveBackFreedMemory() {
#ifdef __GLIBC__
  ::malloc_trim(0);
#endif
}

SortResult sortBy(Dataset& dataset, const SortRequest& request, const SortBy& by) {
  if (isKnownInOrder(dataset, by)) return {false, std::nullopt, *dataset.caseCount()};
  const MissingKeys missing(by.keys, by.missing);
  if (request.policy == SortPolicy::whenNeeded) {
    KeyCheck check(by.keys, missing);
    checkOrder(dataset, by, check);
    if (check.isInOrder()) {
      remember(dataset, by, check.findings());
      return {false, std::nullopt, check.cases()};
    }
  }
  KeyCheck check(by.keys, missing);
  CaseSorter sorter(dataset.layout().caseSlots, by.keys, by.missing);
  {
    DatasetPass pass(dataset, CaseUse::onlyRead);
    while (const CaseSpan span = pass.next()) {
      check.look(span);
      sorter.add(span.cases, span.count, span.caseSlots);
    }
  }
  dataset.replaceCases(sorter.finish());
  giveBackFreedMemory();
  if (const std::optional<RepeatedKeys>& repeated = sorter.repeatedKeys()) {
    KeyFindings findings = check.findings();
    findings.wasSorted = findings.firstOutOfOrder.has_value();
    findings.firstOutOfOrder.reset();
    findings.repeated = *repeated;
    remember(dataset, by, std::move(findings));
  }
  return {!check.isInOrder(), check.findings().firstOutOfOrder, check.cases()};
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

Outcome<KeyFindings> checkOne(const SortTask& task) {
  const auto by = sortByOf(task.dataset, task.request);
  if (!by) return by.problem();
  const KeyFindings* const remembered = task.dataset.keyFindings();
  if (remembered != nullptr && remembered->of == lookedAt(*by)) return *remembered;
  if (areKnownSound(task.dataset, *by)) return KeyFindings{};
  const MissingKeys missing(by->keys, by->missing);
  KeyCheck check(by->keys, missing);
  try {
    checkOrder(task.dataset, *by, check);
  } catch (const ErrorText& error) {
    return Problem{error.GetText(), "", ""};
  }
  remember(task.dataset, *by, check.findings());
  return check.findings();
}

// Does the same to both datasets at the same time. Comparisons on the way are the host's own.
template <class Found>
std::array<Outcome<Found>, 2> onTwoThreads(const SortTask& first, const SortTask& second,
                                           Outcome<Found> (*work)(const SortTask& task)) {
  const Journal::Pause pause(journal());
  if (&first.dataset == &second.dataset) return {work(first), work(second)};
  std::future<Outcome<Found>> other;
  try {
    other = std::async(std::launch::async, [&] { return work(second); });
  } catch (const std::system_error&) {
    return {work(first), work(second)};  // no thread is to be had; one after the other then
  }
  Outcome<Found> own = work(first);
  return {std::move(own), other.get()};
}

}  // namespace

Outcome<SortResult> sortCases(Dataset& dataset, const SortRequest& request) {
  const Journal::Pause pause(journal());  // comparisons of the host's own
  return sortOne({dataset, request});
}

std::array<Outcome<SortResult>, 2> sortBoth(const SortTask& first, const SortTask& second) {
  return onTwoThreads(first, second, sortOne);
}

std::array<Outcome<KeyFindings>, 2> checkBoth(const SortTask& first, const SortTask& second) {
  return onTwoThreads(first, second, checkOne);
}

}  // namespace workbench::data
