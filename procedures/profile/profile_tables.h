// The tables of a profile.
#pragma once

#include "host/output.h"
#include "procedures/profile/profile_walk.h"

namespace profile {

// Paired cases, agreement, differences of numbers, and the most frequent changes, at most so many per variable.
void writeTables(BpProcedure& procedure, const Profile& profile, const PairedCases& cases, std::size_t changesShown);

}  // namespace profile
