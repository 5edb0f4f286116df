// A reference to a password: a word that stands for it wherever a command takes a password.
//
// Passwords that come from a file or a terminal never become part of a job: it has their references, which nobody can
// guess and which mean nothing to anybody but this process. So they pass through commands, journals and procedures
// without being there.
#pragma once

#include <string>
#include <string_view>

#include "workbench/runtime/secret.h"

namespace workbench::data {

// Keeps the password until forgetPasswords().
std::string referenceTo(const Secret& password);
// What was given as a password: it, or the one that the reference stands for.
Secret givenPassword(std::string_view given);
void forgetPasswords();

}  // namespace workbench::data
