// Reads the OUTPUT subcommand: the dictionary properties, the case table and its limit.
#pragma once

#include "host/parser.h"
#include "syntax/compare_options.h"

namespace compdatas {

// False, without a message, when VARPROPERTIES holds a word that is no property; nothing after it is read then.
bool readOutput(const SubComObj& subcommand, CompareOptions& options);

}  // namespace compdatas
