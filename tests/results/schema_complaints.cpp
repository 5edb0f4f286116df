#include "tests/results/schema_complaints.h"

#include <algorithm>
#include <set>

namespace workbench::tests {

namespace {

using Complaint = valijson::ValidationResults::Error;
using Complaints = std::vector<Complaint>;
using Place = std::vector<std::string>;

bool isWithin(const Place& inner, const Place& outer) {
  return inner.size() >= outer.size() && std::equal(outer.begin(), outer.end(), inner.begin());
}

// The members by which things say of what kind they are.
const std::set<std::string> kindMembers = {"[item]", "[source]", "[kind]", "[group]"};

// Of one alternative of a choice: true when what is there is no object, or says itself that it is of another kind.
bool isOfAnotherKind(const Complaints& alternative, const Complaint& choice) {
  const std::size_t depth = choice.context.size();
  return std::any_of(alternative.begin(), alternative.end(), [&](const Complaint& complaint) {
    if (complaint.context.size() == depth) return complaint.description.ends_with("'type' constraint.");
    return complaint.context.size() == depth + 1 && kindMembers.contains(complaint.context.back());
  });
}

// The validator complains of every alternative of a choice, one after the other, each closed by a complaint of its own
// at the place of the choice, and at last of the choice. What is left here is about the alternatives that were meant.
Complaints ofMeantAlternatives(const valijson::ValidationResults& results) {
  struct Entry {
    Place place;
    Complaints complaints;
    bool isAlternative = false;
  };
  std::vector<Entry> entries;
  const auto takeLast = [&](const Place& place, bool alternatives) {
    std::vector<Entry> taken;
    while (!entries.empty() && entries.back().isAlternative == alternatives && isWithin(entries.back().place, place)) {
      taken.insert(taken.begin(), std::move(entries.back()));
      entries.pop_back();
    }
    return taken;
  };
  for (const Complaint& complaint : results) {
    const Place& place = complaint.context;
    if (complaint.description.starts_with("Failed to validate against child schema #")) {
      Complaints alternative;
      for (const Entry& entry : takeLast(place, false)) {
        alternative.insert(alternative.end(), entry.complaints.begin(), entry.complaints.end());
      }
      entries.push_back({place, std::move(alternative), true});
    } else if (complaint.description.starts_with("Failed to validate against any child schemas")) {
      const std::vector<Entry> all = takeLast(place, true);
      const auto isAnother = [&](const Entry& entry) { return isOfAnotherKind(entry.complaints, complaint); };
      const bool allAre = std::all_of(all.begin(), all.end(), isAnother);
      for (const Entry& entry : all) {
        if (!allAre && isAnother(entry)) continue;
        for (const Complaint& kept : entry.complaints) entries.push_back({kept.context, {kept}, false});
      }
    } else {
      entries.push_back({place, {complaint}, false});
    }
  }
  Complaints left;
  for (const Entry& entry : entries) left.insert(left.end(), entry.complaints.begin(), entry.complaints.end());
  return left;
}

// What lies deepest says where the fault is; what contains it is complained of only for its sake.
std::vector<std::string> deepest(const Complaints& complaints) {
  std::size_t depth = 0;
  for (const Complaint& complaint : complaints) depth = std::max(depth, complaint.context.size());
  std::vector<std::string> faults;
  for (const Complaint& complaint : complaints) {
    if (complaint.context.size() != depth) continue;
    std::string fault;
    for (std::size_t step = 1; step < depth; ++step) {
      const std::string& name = complaint.context[step];  // "[name]" or "[3]"
      fault += "/" + name.substr(1, name.size() - 2);
    }
    fault += ": " + complaint.description;
    if (std::find(faults.begin(), faults.end(), fault) == faults.end()) faults.push_back(fault);
  }
  return faults;
}

}  // namespace

std::vector<std::string> faultsOfMeantAlternatives(const valijson::ValidationResults& results) {
  return deepest(ofMeantAlternatives(results));
}

}  // namespace workbench::tests
