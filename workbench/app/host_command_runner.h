// Runs the host's own commands: opening, activating, saving, sorting and describing data, and the settings.
#pragma once

#include "workbench/app/command_run.h"

namespace workbench::app {

// False when the command was refused; it has said why. Requires: the command is one of the host's.
bool runHostCommand(Session& session, CommandRun& run);

}  // namespace workbench::app
