// The grammars of the host's own commands. Their keywords stand right after the command's name, so each has one
// subcommand, without a name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/parser.h"

namespace workbench::language {

// All of them, in the order in which a user meets them. They live as long as the process.
const std::vector<CommandDescriptor>& hostCommands();

// The grammar of that name (without regard to case), or null.
const CommandDescriptor* hostCommand(std::string_view name);

std::vector<std::string> hostCommandNames();

}  // namespace workbench::language
