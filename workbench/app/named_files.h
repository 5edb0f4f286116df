// The files that a command line names: none that is written may be one that is read, and none is written twice.
//
// What only a job names is looked at when its commands open and save it.
#pragma once

#include "workbench/app/command_line.h"
#include "workbench/runtime/outcome.h"

namespace workbench::app {

// Files are the same by whatever path, also through links. Streams (a pipe, /dev/null, /dev/stdout) keep nothing that
// could be replaced; each may be written by several.
Outcome<Done> checkNamedFiles(const ProgramCommand& command);

}  // namespace workbench::app
