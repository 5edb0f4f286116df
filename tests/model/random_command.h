// Random commands over a pair of datasets: what is asked for, and how it is written.
#pragma once

#include <string>
#include <vector>

#include "tests/model/command.h"
#include "tests/model/world.h"

namespace workbench::tests::model {

// Any command, now and then one that is refused. Data files are named only when it may.
Command anyCommand(const World& world, bool usesFiles);
// The same command with subcommands and keywords in another order and in other cases.
Command rewritten(const Command& command);

// The case ID variables that a command names, if it names them plainly.
std::vector<std::string> caseIdsOf(const Command& command);

// A variable's name as a command has to write it.
Word nameWord(const std::string& name);

}  // namespace workbench::tests::model
