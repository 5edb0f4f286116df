// The whole comparison by hand: what a run is to issue and to leave behind, from the datasets, the host's settings and
// the words of the command alone.
//
// Not foretold: the wording of the host's own messages, and messages of the host that are no part of the procedure's.
#pragma once

#include <optional>
#include <string>

#include "tests/model/command.h"
#include "tests/model/naive_walk.h"
#include "tests/model/report.h"
#include "tests/model/world.h"

namespace workbench::tests::model {

// Where cases were saved, and which.
struct ForetoldOutput {
  std::string name;
  bool isFile = false;
  Dataset content;
};

struct Foretold {
  Report report;  // without the saved cases, which stand below
  std::optional<ForetoldOutput> matched;
  std::optional<ForetoldOutput> mismatched;
  // What the walk found, when there was one.
  std::optional<WalkedCases> walked;
  std::vector<ComparedVariable> variables;
};

Foretold foretell(const World& world, const Command& command);

}  // namespace workbench::tests::model
