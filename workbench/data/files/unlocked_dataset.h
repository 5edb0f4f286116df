// What opening and writing a dataset has to do with passwords, whatever kind of data file it is.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/data_file.h"
#include "workbench/data/files/unlocked_files.h"
#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

// Unlocks what is protected of a dataset and of the other one that its types are inferred with: the files of the cases,
// and the schemas beside them. Those of the dataset itself are given, none when none is protected. A password that is
// missing, wrong or not wanted is a problem.
Outcome<UnlockedFiles> unlockedForOpening(const std::string& path, const OpenOptions& options);

// The file, which keeps them unlocked as long as it lives.
std::shared_ptr<const DataFile> holding(UnlockedFiles unlocked, std::shared_ptr<const DataFile> file);

// Whether a protected dictionary stands beside a protected data file: what it says is not known before it is unlocked.
bool bringsProtectedDictionary(const std::string& path);

// Whether a data file can be written under that name with that password, or with none.
Outcome<Done> checkOutputPassword(const std::string& path, const Secret& password);

}  // namespace workbench::data
