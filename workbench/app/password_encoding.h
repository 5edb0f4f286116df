// Encoded passwords: a form that can stand in a job file, and that only the user who made it can use.
//
// The password is encrypted, and what comes back otherwise than it was made is noticed. It protects a job that somebody
// else gets to see, not one that lies beside the key.
#pragma once

#include <string>
#include <string_view>

#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::app {

Outcome<std::string> encodedPassword(const Secret& password);
// Tells apart what is no encoded password, one that was made with another key, and a damaged one.
Outcome<Secret> decodedPassword(std::string_view encoded);

}  // namespace workbench::app
