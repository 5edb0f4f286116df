#include "workbench/data/data_file.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "workbench/data/descriptors/dictionary_place.h"
#include "workbench/data/files/csv_case_writer.h"
#include "workbench/data/files/csv_file.h"
#include "workbench/data/files/dictionary_output.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/openpgp_message.h"
#include "workbench/data/files/protected_name.h"
#include "workbench/data/files/table_source.h"
#include "workbench/data/files/unlocked_files.h"

namespace workbench::data {
namespace {

// Cases in one file, their dictionary in another: put into place together.
class DescribedCaseWriter final : public CaseWriter {
 public:
  DescribedCaseWriter(std::unique_ptr<CaseWriter> cases, std::unique_ptr<DictionaryOutput> dictionary)
      : cases_(std::move(cases)), dictionary_(std::move(dictionary)) {}

  std::vector<std::string> warnings() const override { return dictionary_->losses(); }
  void append(const OBS* cases, std::size_t count, std::size_t caseSlots) override {
    cases_->append(cases, count, caseSlots);
  }
  void complete() override {
    cases_->complete();
    dictionary_->complete();
  }
  void commit() override {
    cases_->commit();
    dictionary_->commit();
  }

 private:
  std::unique_ptr<CaseWriter> cases_;
  std::unique_ptr<DictionaryOutput> dictionary_;
};

bool isThere(const std::string& path) {
  std::error_code failure;
  return std::filesystem::exists(path, failure);
}

// The files that hold the cases: the one that is named, or those of a package's resource.
Outcome<std::vector<std::string>> filesOfCases(const std::string& path) {
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
      return Problem{"The file is protected by a password, and none was given for it.", file,
                     "Give it: PASSWORD='...' in a job, a password file on the command line."};
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
    return Problem{"The file is not protected by a password.", path, "Leave the password out."};
  }
  return unlocked;
}

// What one file was opened with, unlocked for the next one: two files of a comparison are opened one after the other,
// each with the other one's types, and to decrypt one takes its time.
UnlockedFiles& partnerForNext() {
  static UnlockedFiles files;
  return files;
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

}  // namespace

Outcome<std::shared_ptr<const DataFile>> openDataFile(const std::string& path, const OpenOptions& options) {
  Outcome<UnlockedFiles> unlocked = unlockFilesOf(path, options.password);
  if (!unlocked) return unlocked.problem();
  UnlockedFiles partner;
  if (options.typesWith) {
    Outcome<UnlockedFiles> ofPartner = unlockFilesOf(*options.typesWith, options.typesPassword);
    if (!ofPartner) return ofPartner.problem();
    partner = std::move(*ofPartner);
  }
  partnerForNext() = partner;
  Outcome<std::shared_ptr<const DataFile>> file = openCsvFile(path, options.typesWith);
  if (!file) return file;
  return holding(std::move(*unlocked), std::move(*file));
}

bool bringsDictionary(const std::string& path) {
  if (isProtectedName(path) && isThere(schemaPathOf(path))) return true;
  const Outcome<std::optional<DescribedTable>> description = descriptionOf(path);
  return description && *description && !(*description)->fields.empty();
}

Outcome<std::optional<std::string>> fileWrittenBeside(const std::string& path) {
  const Outcome<DictionaryPlace> place = dictionaryPlaceOf(path);
  if (!place) return place.problem();
  return place->isPackage ? std::nullopt : std::optional(place->path);
}

Outcome<std::unique_ptr<CaseWriter>> createDataFile(const std::string& path, const Dictionary& dictionary,
                                                    const Secret& password) {
  const Outcome<FileKind> kind = fileKind(path);
  if (!kind) return kind.problem();
  if (const Outcome<Done> named = checkProtectedName(path, !password.empty()); !named) return named.problem();
  if (!password.empty()) {
    if (const Outcome<Done> usable = checkPassword(password); !usable) {
      return Problem{usable.problem().what, path, usable.problem().remedy};
    }
  }
  auto cases = createCsvFile(path, *kind, dictionary, password);
  if (!cases) return cases.problem();
  auto written = DictionaryOutput::create(path, kind->delimiter, dictionary, password);
  if (!written) return written.problem();
  return std::unique_ptr<CaseWriter>(std::make_unique<DescribedCaseWriter>(std::move(*cases), std::move(*written)));
}

}  // namespace workbench::data
