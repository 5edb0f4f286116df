// Reads the SAVE subcommand: the flag variable, the matched and the mismatched cases, and their passwords.
#pragma once

#include "host/parser.h"
#include "syntax/compare_options.h"

namespace compdatas {

// False when it has reported a password that is too short.
bool readSave(const SubComObj& subcommand, CompareOptions& options);

}  // namespace compdatas
