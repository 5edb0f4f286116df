// UnlockedFile: a protected file whose plain content lies in memory, sealed, for as long as anybody holds this object.
//
// It is decrypted as a whole, and its integrity checked, before anything of it is read. InputFile opens the plain
// content in the place of a protected file that is unlocked, so readers need to know nothing of protection.
#pragma once

#include <sys/stat.h>

#include <memory>
#include <string>
#include <vector>

#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

class UnlockedFile;
using UnlockedFiles = std::vector<std::shared_ptr<const UnlockedFile>>;

// Unlocks the file, unless it is unlocked already. May be called on any thread.
Outcome<std::shared_ptr<const UnlockedFile>> unlockFile(const std::string& path, const Secret& password);

// Opens the plain content of a protected file for reading: a descriptor. A problem when the file is locked. The status
// is that of the file, as of now.
Outcome<int> openPlainContent(const std::string& path, const struct stat& status);

}  // namespace workbench::data
