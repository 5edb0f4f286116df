#include "workbench/data/files/protected_name.h"

#include <algorithm>
#include <array>
#include <string>

namespace workbench::data {
namespace {

constexpr auto endings = std::to_array<std::string_view>({".pgp", ".gpg", ".asc"});
constexpr std::string_view armoredEnding = ".asc";

bool endsIn(std::string_view path, std::string_view ending) {
  const auto isSame = [](char left, char right) {
    return (left >= 'A' && left <= 'Z' ? static_cast<char>(left + ('a' - 'A')) : left) == right;
  };
  return path.size() >= ending.size() &&
         std::equal(ending.begin(), ending.end(), path.substr(path.size() - ending.size()).begin(),
                    [&](char expected, char found) { return isSame(found, expected); });
}

}  // namespace

std::string_view protectedEnding(std::string_view path) {
  for (const std::string_view ending : endings) {
    if (endsIn(path, ending)) return path.substr(path.size() - ending.size());
  }
  return {};
}

Outcome<Done> checkProtectedName(std::string_view path, bool hasPassword) {
  if (endsIn(path, armoredEnding)) {
    return Problem{"Files that end in .asc are read, and not written.", std::string(path),
                   "Let the name end in .pgp instead."};
  }
  if (hasPassword && !isProtectedName(path)) {
    return Problem{"The file is to be protected by a password, and its name does not say so.", std::string(path),
                   "Let the name end in .pgp, as in people.csv.pgp, or leave the password out."};
  }
  if (!hasPassword && isProtectedName(path)) {
    return Problem{"The name says that the file is protected, and no password was given for it.", std::string(path),
                   "Give a password, or leave the last ending of the name out."};
  }
  return Done{};
}

}  // namespace workbench::data
