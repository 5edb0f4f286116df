#include "workbench/data/data_file.h"

#include <future>
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

// The other table on its way: it is examined on a thread of its own while this one is.
using TableInFlight = std::optional<std::future<Outcome<std::unique_ptr<ExaminedTable>>>>;

TableInFlight startExamining(const std::optional<std::string>& path) {
  if (!path) return std::nullopt;
  return std::async(std::launch::async, [path = *path] { return examineCsvFile(path); });
}

// Columns that become texts because of the other table have to be measured before both know how wide they are.
Outcome<InferredTypes> typesOf(ExaminedTable& table, ExaminedTable* partner) {
  const ScannedTable own = table.scanned();
  std::optional<ScannedTable> others;
  if (partner != nullptr) others.emplace(partner->scanned());
  if (Outcome<Done> measured = table.measureTexts(columnsBecomingText(own, others ? &*others : nullptr)); !measured) {
    return measured.problem();
  }
  if (others) {
    if (Outcome<Done> measured = partner->measureTexts(columnsBecomingText(*others, &own)); !measured) {
      return measured.problem();
    }
  }
  return inferTypes(own, others ? &*others : nullptr);
}

}  // namespace

Outcome<std::shared_ptr<const DataFile>> openDataFile(const std::string& path, const OpenOptions& options) {
  if (!options.password.empty()) {
    return Problem{"The file is not protected by a password.", path, "Leave the password out."};
  }

  // 1. Read the table once, and the other one at the same time.
  TableInFlight inFlight = startExamining(options.typesWith);
  Outcome<std::unique_ptr<ExaminedTable>> table = examineCsvFile(path);
  std::optional<Outcome<std::unique_ptr<ExaminedTable>>> partner;
  if (inFlight) partner = inFlight->get();
  if (!table) return table.problem();
  if (partner && !*partner) return partner->problem();

  // 2. What nobody declared is inferred over both.
  Outcome<InferredTypes> types = typesOf(**table, partner ? (**partner).get() : nullptr);
  if (!types) return types.problem();
  return (*table)->open(std::move(*types));
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
