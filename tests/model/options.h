// What a command asks for, read from its words as a reader of its description would.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/model/command.h"
#include "tests/model/world.h"

namespace workbench::tests::model {

struct SavedCases {
  bool isWanted = false;
  std::string name;
  std::string password;
};

struct Options {
  Word comparison;
  std::string password;
  std::vector<std::size_t> variables;  // of the active dataset
  std::vector<std::string> notInActive;
  std::vector<std::size_t> caseIds;
  bool flag = true;
  std::string flagName = "CasesCompare";
  SavedCases matched{false, "MatchedCases", ""};
  SavedCases mismatched{false, "MismatchedCases", ""};
  bool noProperties = true;
  std::set<std::string> properties;  // by their keywords
  bool caseTable = true;
  std::optional<std::size_t> limit = 100;  // nothing: no limit
};

struct ReadCommand {
  std::optional<Options> options;     // nothing: the command was refused
  std::vector<std::string> messages;  // as lines of a report
};

ReadCommand read(const Command& command, const World& world);

}  // namespace workbench::tests::model
