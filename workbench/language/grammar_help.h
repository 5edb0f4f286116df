// The help text of a command, made from the grammar that its parser uses.
#pragma once

#include <string>

#include "host/parser.h"

namespace workbench::language {

// The command's name and title, and a line for every subcommand and keyword with the values it takes; what may be left
// out stands in brackets. A name that was added twice is listed once, as it is looked up.
std::string grammarHelp(const CommandDescriptor& grammar);

}  // namespace workbench::language
