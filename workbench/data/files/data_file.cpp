#include "workbench/data/data_file.h"

#include <utility>

#include "workbench/data/descriptors/dictionary_place.h"
#include "workbench/data/files/csv_case_writer.h"
#include "workbench/data/files/csv_file.h"
#include "workbench/data/files/dictionary_output.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/table_source.h"

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
  if (!options.password.empty()) {
    return Problem{"The file is not protected by a password.", path, "Leave the password out."};
  }
  return openCsvFile(path, options.typesWith);
}

bool bringsDictionary(const std::string& path) {
  const Outcome<std::optional<DescribedTable>> description = descriptionOf(path);
  return description && *description && !(*description)->fields.empty();
}

Outcome<std::optional<std::string>> fileWrittenBeside(const std::string& path) {
  const Outcome<DictionaryPlace> place = dictionaryPlaceOf(path);
  if (!place) return place.problem();
  return place->isPackage ? std::nullopt : std::optional(place->path);
}

Outcome<std::unique_ptr<CaseWriter>> createDataFile(const std::string& path, const Dictionary& dictionary,
                                                    const std::string& password) {
  const Outcome<FileKind> kind = fileKind(path);
  if (!kind) return kind.problem();
  if (!password.empty()) {
    return Problem{"A file of this kind cannot be protected by a password.", path, "Leave the password out."};
  }
  auto cases = createCsvFile(path, *kind, dictionary);
  if (!cases) return cases.problem();
  auto written = DictionaryOutput::create(path, kind->delimiter, dictionary);
  if (!written) return written.problem();
  return std::unique_ptr<CaseWriter>(std::make_unique<DescribedCaseWriter>(std::move(*cases), std::move(*written)));
}

}  // namespace workbench::data
