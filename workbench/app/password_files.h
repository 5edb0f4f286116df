// Where the passwords of a command come from: files, or the terminal. Never the command line itself, which every user
// of the machine can read.
#pragma once

#include <optional>
#include <string>

#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::app {

// A file's name, or "-": asked for on the terminal.
struct PasswordFiles {
  std::optional<std::string> input;       // of the data, or of the active dataset
  std::optional<std::string> comparison;  // of the comparison dataset
  std::optional<std::string> output;      // for all data files that are written
};

// Passwords as they stand in a job: references to them (data/working/password_reference.h), empty where there is none.
struct JobPasswords {
  std::string input;
  std::string comparison;
  std::string output;
};

// Reads the passwords, asking for those that are to be asked for. What is to be told to the user beside, warnings of
// files that others can read, goes to standard error unless the run is quiet.
Outcome<JobPasswords> readPasswords(const PasswordFiles& files, bool isQuiet);

// The first line of what can be read from the descriptor, its end left out.
Outcome<Secret> firstLineOf(int descriptor, const std::string& name);

}  // namespace workbench::app
