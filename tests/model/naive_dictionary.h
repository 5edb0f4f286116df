// Which variables are compared, and which of their properties agree: found out variable by variable, by hand.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/model/options.h"
#include "tests/model/world.h"

namespace workbench::tests::model {

struct CaseIdPlace {
  std::size_t active = 0;
  std::size_t compared = 0;
};

// A variable that is in both datasets with the same storage type.
struct ComparedVariable {
  std::size_t active = 0;
  std::size_t compared = 0;
  bool isCaseId = false;
  std::set<std::string> differing;  // keywords of the chosen properties that differ
  // Custom attributes of either side, by name: their texts in the active and in the comparison dataset.
  std::map<std::string, std::pair<std::string, std::string>> attributes;
  std::size_t mismatches = 0;  // counted by the walk
};

enum class DictionaryState { nothingPaired, nothingToShow, differs };

struct ComparedDictionaries {
  std::vector<ComparedVariable> variables;  // in the order of the active dataset
  std::set<std::string> properties;         // those that are shown: none when no variable was examined
  std::set<std::string> attributeNames;
  DictionaryState state = DictionaryState::differs;
  std::vector<std::string> messages;
};

ComparedDictionaries compareDictionaries(const World& world, const Options& options,
                                         const std::vector<CaseIdPlace>& caseIds);

}  // namespace workbench::tests::model
