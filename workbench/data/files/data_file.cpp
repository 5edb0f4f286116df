#include "workbench/data/data_file.h"

#include <utility>

#include "workbench/data/descriptors/dictionary_place.h"
#include "workbench/data/files/csv_case_writer.h"
#include "workbench/data/files/csv_file.h"
#include "workbench/data/files/dictionary_output.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/table_source.h"
#include "workbench/data/files/unlocked_dataset.h"

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

}  // namespace

Outcome<std::shared_ptr<const DataFile>> openDataFile(const std::string& path, const OpenOptions& options) {
  Outcome<UnlockedFiles> unlocked = unlockedForOpening(path, options);
  if (!unlocked) return unlocked.problem();
  Outcome<std::shared_ptr<const DataFile>> file = openCsvFile(path, options.typesWith);
  if (!file) return file;
  return holding(std::move(*unlocked), std::move(*file));
}

bool bringsDictionary(const std::string& path) {
  if (bringsProtectedDictionary(path)) return true;
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
  if (const Outcome<Done> usable = checkOutputPassword(path, password); !usable) return usable.problem();
  auto cases = createCsvFile(path, *kind, dictionary, password);
  if (!cases) return cases.problem();
  auto written = DictionaryOutput::create(path, kind->delimiter, dictionary, password);
  if (!written) return written.problem();
  return std::unique_ptr<CaseWriter>(std::make_unique<DescribedCaseWriter>(std::move(*cases), std::move(*written)));
}

}  // namespace workbench::data
