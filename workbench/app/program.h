// The program: from what the command line asked for to the results and the exit status.
#pragma once

#include "workbench/app/command_line.h"

namespace workbench::app {

// 0 nothing differs, 1 something differs, 2 trouble.
int runProgram(ProgramOptions options);

}  // namespace workbench::app
