#include "workbench/data/files/protected_name.h"

#include <array>
#include <string>

#include "workbench/data/files/name_ending.h"
#include "workbench/data/files/server_reference.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr auto endings = std::to_array<std::string_view>({".pgp", ".gpg", ".asc"});
constexpr std::string_view armoredEnding = ".asc";

}  // namespace

std::string_view protectedEnding(std::string_view path) {
  if (isServerReference(path)) return {};
  for (const std::string_view ending : endings) {
    if (hasEnding(path, ending)) return path.substr(path.size() - ending.size());
  }
  return {};
}

Outcome<Done> checkProtectedName(std::string_view path, bool hasPassword) {
  if (hasEnding(path, armoredEnding)) {
    return Problem{text::sentence("Files that end in .asc are read, and not written."), std::string(path),
                   text::sentence("Let the name end in .pgp instead.")};
  }
  if (hasPassword && !isProtectedName(path)) {
    return Problem{text::sentence("The file is to be protected by a password, and its name does not say so."),
                   std::string(path),
                   text::sentence("Let the name end in .pgp, as in people.csv.pgp, or leave the password out.")};
  }
  if (!hasPassword && isProtectedName(path)) {
    return Problem{text::sentence("The name says that the file is protected, and no password was given for it."),
                   std::string(path), text::sentence("Give a password, or leave the last ending of the name out.")};
  }
  return Done{};
}

}  // namespace workbench::data
