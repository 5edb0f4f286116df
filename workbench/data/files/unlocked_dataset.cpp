#include "workbench/data/files/unlocked_dataset.h"

#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "workbench/data/descriptors/dictionary_place.h"
#include "workbench/data/files/openpgp_message.h"
#include "workbench/data/files/protected_name.h"
#include "workbench/data/files/server_reference.h"
#include "workbench/data/files/table_source.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

bool isThere(const std::string& path) {
  std::error_code failure;
  return std::filesystem::exists(path, failure);
}

// The files that hold the cases: the one that is named, or those of a package's resource; none that a server has.
Outcome<std::vector<std::string>> filesOfCases(const std::string& path) {
  if (isServerReference(path)) return std::vector<std::string>();
  if (isProtectedName(path)) return std::vector<std::string>{path};  // what describes it may be locked as well
  const Outcome<std::optional<DescribedTable>> description = descriptionOf(path);
  if (!description) return description.problem();
  return *description ? (*description)->dataPaths : std::vector<std::string>{path};
}

// Unlocks what is protected of a dataset: the files of its cases, and the schema beside them.
Outcome<UnlockedFiles> unlockFilesOf(const std::string& path, const Secret& password) {
  const Outcome<std::vector<std::string>> files = filesOfCases(path);
  if (!files) return files.problem();
  UnlockedFiles unlocked;
  const auto unlock = [&](const std::string& file) -> Outcome<Done> {
    if (password.empty() && isThere(file)) {
      return Problem{text::sentence("The file is protected by a password, and none was given for it."), file,
                     text::sentence("Give it: PASSWORD='...' in a job, a password file on the command line.")};
    }
    auto opened = unlockFile(file, password);
    if (!opened) return opened.problem();
    unlocked.push_back(std::move(*opened));
    return Done{};
  };
  for (const std::string& file : *files) {
    if (!isProtectedName(file)) continue;
    if (const auto done = unlock(file); !done) return done.problem();
    const std::string schema = schemaPathOf(file);
    if (!isThere(schema)) continue;
    if (const auto done = unlock(schema); !done) return done.problem();
  }
  if (unlocked.empty() && !password.empty()) {
    return Problem{text::sentence("The file is not protected by a password."), path,
                   text::sentence("Leave the password out.")};
  }
  return unlocked;
}

// What one file was opened with, unlocked for the next one: two files of a comparison are opened one after the other,
// each with the other one's types, and to decrypt one takes its time.
UnlockedFiles& partnerForNext() {
  static UnlockedFiles files;
  return files;
}

}  // namespace

Outcome<UnlockedFiles> unlockedForOpening(const std::string& path, const OpenOptions& options) {
  Outcome<UnlockedFiles> unlocked = unlockFilesOf(path, options.password);
  if (!unlocked) return unlocked;
  UnlockedFiles partner;
  if (options.typesWith) {
    Outcome<UnlockedFiles> ofPartner = unlockFilesOf(*options.typesWith, options.typesPassword);
    if (!ofPartner) return ofPartner;
    partner = std::move(*ofPartner);
  }
  partnerForNext() = std::move(partner);
  return unlocked;
}

std::shared_ptr<const DataFile> holding(UnlockedFiles unlocked, std::shared_ptr<const DataFile> file) {
  if (unlocked.empty()) return file;
  struct Both {
    UnlockedFiles unlocked;
    std::shared_ptr<const DataFile> file;
  };
  auto both = std::make_shared<const Both>(Both{std::move(unlocked), std::move(file)});
  return {both, both->file.get()};
}

bool bringsProtectedDictionary(const std::string& path) { return isProtectedName(path) && isThere(schemaPathOf(path)); }

Outcome<Done> checkOutputPassword(const std::string& path, const Secret& password) {
  if (const Outcome<Done> named = checkProtectedName(path, !password.empty()); !named) return named;
  if (password.empty()) return Done{};
  const Outcome<Done> usable = checkPassword(password);
  return usable ? usable : Problem{usable.problem().what, path, usable.problem().remedy};
}

}  // namespace workbench::data
