#include "tests/model/naive_outputs.h"

#include <algorithm>
#include <cctype>

#include "tests/model/messages.h"

namespace workbench::tests::model {

bool isHandle(const std::string& name) {
  const auto isLetter = [](unsigned char character) { return character >= 0x80 || std::isalpha(character) != 0; };
  return !name.empty() && isLetter(static_cast<unsigned char>(name[0])) &&
         std::all_of(name.begin(), name.end(), [&](unsigned char character) {
           return isLetter(character) || std::isdigit(character) != 0 || character == '_';
         });
}

std::string OutputNames::refusal() const {
  // Known only when the comparison dataset is an open one.
  const bool comparesOpenDataset = !options_.comparison.isQuoted;
  const std::string comparison = comparesOpenDataset ? options_.comparison.text : "";
  const std::string active = comparesOpenDataset ? world_.activeHandle.value_or("") : "";
  if (comparesOpenDataset && world_.activeHandle && sameName(comparison, active)) {
    return messageLine(2, 3, say::sameDataset);
  }
  const auto isTaken = [&](const std::string& name) { return sameName(name, active) || sameName(name, comparison); };

  const SavedCases& matched = options_.matched;
  const SavedCases& mismatched = options_.mismatched;
  if (matched.isWanted) {
    if (!isUsable(matched)) return messageLine(2, 3, hostsWords);
    if (isHandle(matched.name) && isTaken(matched.name)) return messageLine(2, 3, say::matchedNameTaken);
  }
  if (!mismatched.isWanted) return "";
  if (!isUsable(mismatched)) return messageLine(2, 3, hostsWords);
  if (isHandle(mismatched.name)) {
    if (isTaken(mismatched.name)) return messageLine(2, 3, say::mismatchedNameTaken);
    if (matched.isWanted && sameName(shownName(matched), mismatched.name)) return messageLine(2, 3, say::sameOutputs);
    return "";
  }
  const bool isSameFile = matched.isWanted && !isHandle(matched.name) && shownName(matched) == shownName(mismatched);
  return isSameFile ? messageLine(2, 3, say::sameOutputs) : "";
}

bool OutputNames::cannotBeOpened(const SavedCases& saved) const {
  if (isHandle(saved.name)) return world_.activeHandle && sameName(saved.name, *world_.activeHandle);
  const std::string path = shownName(saved);
  return path == world_.active.path || path == world_.compared.path;
}

std::string OutputNames::shownName(const SavedCases& saved) const {
  std::string name = saved.name;
  for (std::size_t at = name.find("/./"); at != std::string::npos; at = name.find("/./")) name.erase(at, 2);
  return name;
}

// A dataset cannot have a password.
bool OutputNames::isUsable(const SavedCases& saved) const {
  if (isHandle(saved.name)) return saved.password.empty();
  return saved.name != "*" && !world_.unusablePaths.contains(shownName(saved));
}

Dataset savedDataset(const Dataset& active, const std::vector<ComparedVariable>& variables,
                     const std::vector<std::size_t>& cases) {
  Dataset saved;
  saved.attributes = active.attributes;
  for (const ComparedVariable& variable : variables) saved.variables.push_back(active.variables[variable.active]);
  for (const std::size_t place : cases) {
    Case one;
    for (const ComparedVariable& variable : variables) one.push_back(active.cases[place][variable.active]);
    saved.cases.push_back(one);
  }
  return saved;
}

}  // namespace workbench::tests::model
