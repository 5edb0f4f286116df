// The command: its grammar, and what a user asked for.
//
//   PROFILE DIFFERENCES
//     /COMPDATASET=handle or 'file'
//     /VARIABLES=ALL or names, first TO last [EXCEPT=names]
//     [/CASEID=names]
//     [/OUTPUT CHANGES=0..1000].
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/data.h"
#include "host/parser.h"

namespace profile {

inline constexpr const char* commandName = "PROFILE DIFFERENCES";
inline constexpr const char* procedureTitle = "Profile Differences";

struct ProfileOptions {
  UserCaseFileSpec comparison;            // initialised
  std::vector<std::int32_t> variables;    // of the active dataset, in the order written
  bool allVariables = false;              // ALL, so that a variable of one dataset alone is none that was asked for
  std::vector<std::string> unknownNames;  // asked for, and not in the active dataset
  std::vector<std::int32_t> caseIds;      // of the active dataset
  std::int32_t changesShown = 10;         // per variable
};

// False when the user has been told what is wrong with the command.
bool readCommand(const VRIX_TokenSequence& tokens, const VRIX_DataSource& active, ProfileOptions& options);

}  // namespace profile
