// Runs one command of a plug-in: loads it, gives it its surroundings, and settles what it left.
#pragma once

#include <optional>

#include "workbench/app/command_run.h"
#include "workbench/app/verdict.h"

namespace workbench::app {

// Sets the command's outcome; outputs are in place afterwards, or none is. The verdict, when it was a comparison.
// Requires: the command is no command of the host, and one of a plug-in.
std::optional<output::Verdict> runProcedure(Session& session, CommandRun& run);

}  // namespace workbench::app
