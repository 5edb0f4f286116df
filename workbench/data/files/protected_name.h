// The names of protected data files: the name of the plain file, and behind it that it is an OpenPGP message
// ("people.csv.pgp", "people.csv.gz.pgp").
#pragma once

#include <string_view>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

// ".pgp", ".gpg" or ".asc" as it stands in the name, in any case; empty where the file is not a protected one.
std::string_view protectedEnding(std::string_view path);
inline bool isProtectedName(std::string_view path) { return !protectedEnding(path).empty(); }
// The name of the plain file: what kind of data it holds is told by its ending.
inline std::string_view plainName(std::string_view path) {
  return path.substr(0, path.size() - protectedEnding(path).size());
}

// Whether the name of a file that is to be written says the same as the password that is given or not.
Outcome<Done> checkProtectedName(std::string_view path, bool hasPassword);

}  // namespace workbench::data
