#include "workbench/data/files/csv_file.h"

#include <fmt/format.h>

#include <future>
#include <utility>

#include "workbench/data/files/case_readers.h"
#include "workbench/data/files/column_names.h"
#include "workbench/data/files/duckdb_library.h"
#include "workbench/data/files/type_inference.h"

namespace workbench::data {
namespace {

class CsvFile final : public DataFile {
 public:
  CsvFile(std::shared_ptr<const CsvTable> table, std::vector<std::string> warnings)
      : table_(std::move(table)), warnings_(std::move(warnings)) {}

  const Dictionary& dictionary() const override { return table_->dictionary; }
  const std::string& path() const override { return table_->path; }
  std::optional<std::int64_t> caseCount() const override { return table_->cases(); }
  std::unique_ptr<CaseReader> openReader() const override { return openCaseReader(table_); }
  const std::vector<std::string>& warnings() const override { return warnings_; }

 private:
  std::shared_ptr<const CsvTable> table_;
  std::vector<std::string> warnings_;
};

// The other file's evidence on its way: it is gathered on a thread of its own while this file's is.
using EvidenceInFlight = std::optional<std::future<Outcome<SharedEvidence>>>;

EvidenceInFlight startScan(const std::optional<std::string>& path, const FileKind& kind) {
  if (!path) return std::nullopt;
  return std::async(std::launch::async, [path = *path, kind] { return evidenceOf(path, kind); });
}

std::optional<std::string> skippedLinesWarning(const FileEvidence& evidence) {
  if (evidence.skippedLines == 0) return std::nullopt;
  return fmt::format("{} blank line{} between others, the first in line {}; {} skipped.", evidence.skippedLines,
                     evidence.skippedLines == 1 ? " stands" : "s stand", evidence.firstSkippedLine,
                     evidence.skippedLines == 1 ? "it was" : "they were");
}

}  // namespace

Outcome<std::shared_ptr<const DataFile>> openCsvFile(const std::string& path, const FileKind& kind,
                                                     const std::optional<std::string>& typesWith) {
  // 1. Scan the file, and the other one at the same time.
  FileKind partnerKind = kind;
  if (typesWith) {
    const Outcome<FileKind> known = fileKind(*typesWith);
    if (!known) return known.problem();
    partnerKind = *known;
  }
  EvidenceInFlight inFlight = startScan(typesWith, partnerKind);
  const Outcome<SharedEvidence> evidence = evidenceOf(path, kind);
  std::optional<Outcome<SharedEvidence>> partnerEvidence;
  if (inFlight) partnerEvidence = inFlight->get();
  if (!evidence) return evidence.problem();
  if (partnerEvidence && !*partnerEvidence) return partnerEvidence->problem();

  // Readers will need it; better to know now that it is missing.
  if (const Outcome<const DuckDbLibrary*> library = duckDbLibrary(); !library) return library.problem();

  // 2. Infer the types over both.
  ColumnNames names = columnNames((*evidence)->header);
  const ScannedFile file{path, names.names, **evidence};
  std::optional<ScannedFile> partner;
  if (partnerEvidence) {
    const SharedEvidence& other = **partnerEvidence;
    partner.emplace(ScannedFile{*typesWith, columnNames(other->header).names, *other});
  }
  InferredTypes types = inferTypes(file, partner ? &*partner : nullptr);

  // 3. Put it together.
  Dictionary dictionary;
  for (Variable& variable : types.variables) dictionary.add(std::move(variable));
  std::vector<std::string> warnings = std::move(names.warnings);
  if (auto skipped = skippedLinesWarning(**evidence)) warnings.push_back(*std::move(skipped));
  for (std::string& warning : types.warnings) warnings.push_back(std::move(warning));
  auto table = std::make_shared<const CsvTable>(path, kind, *evidence, std::move(dictionary));
  return std::shared_ptr<const DataFile>(std::make_shared<CsvFile>(std::move(table), std::move(warnings)));
}

}  // namespace workbench::data
