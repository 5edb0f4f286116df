// The grammar of COMPARE DATASETS, as the host's command parser wants it.
#pragma once

#include "host/parser.h"

namespace compdatas {

inline constexpr const char* commandName = "COMPARE DATASETS";
inline constexpr const char* procedureTitle = "Compare Datasets";

// Adds the five subcommands to a descriptor that has its name and title. SAVE is added twice, before and after it
// learns ENCRYPTEDPW: the descriptor lists it twice, and only the second entry knows that keyword.
void addSubcommands(CommandDescriptor& grammar);

}  // namespace compdatas
