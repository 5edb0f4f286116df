#include "workbench/data/files/file_evidence.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <unordered_set>
#include <utility>

#include "workbench/data/files/byte_source.h"
#include "workbench/data/files/encoded_source.h"
#include "workbench/data/files/evidence_memory.h"
#include "workbench/data/files/table_scanner.h"
#include "workbench/runtime/activity.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

using Step = TableScanner::Step;

// One scan over a text.
class Scan {
 public:
  Scan(TableScanner& scanner, const TableDialect& dialect, const std::string& path)
      : scanner_(scanner), path_(path), hasHeader_(!dialect.headerRows.empty()) {
    evidence_->dialect = dialect;
  }

  Outcome<std::shared_ptr<FileEvidence>> run(const DeclareColumns& declare) {
    if (const std::optional<Problem> problem = readNames()) return *problem;
    if (const std::optional<Problem> problem = addColumns(declare)) return *problem;
    Step step = hasHeader_ ? scanner_.nextRecords(records_) : Step::taken;
    for (; step == Step::taken; step = scanner_.nextRecords(records_)) {
      if (const std::optional<Problem> problem = takeNewKeys(declare)) return *problem;
      if (const std::optional<Problem> problem = takeRecords()) return *problem;
    }
    if (step == Step::problem) return scanner_.problem();
    if (evidence_->header.empty()) {
      return Problem{text::sentence("No line of the file has a key, and these have to name the columns."), path_,
                     text::sentence("Name another file.")};
    }
    finish();
    return std::move(evidence_);
  }

 private:
  // Those that give a problem give none when all is well.
  std::optional<Problem> readNames() {
    const Step step = hasHeader_ ? scanner_.readHeader(evidence_->header) : scanner_.nextRecords(records_);
    if (step == Step::problem) return scanner_.problem();
    if (step == Step::end) {
      return Problem{
          text::sentence(hasHeader_ ? "The file is empty, and its first line has to name the columns."
                                    : "The file is empty, and its first line has to tell the number of columns."),
          path_, text::sentence("Name another file.")};
    }
    // Without a header the first records tell the number of columns.
    for (std::size_t column = 1; !hasHeader_ && column <= records_.columns(); ++column) {
      evidence_->header.push_back(fmt::format("field{}", column));
    }
    return std::nullopt;
  }

  // Those of which nothing is known so far. They have no values in the records that came before.
  std::optional<Problem> addColumns(const DeclareColumns& declare) {
    const std::size_t before = evidence_->columns.size();
    const std::size_t columns = evidence_->header.size();
    evidence_->columns.resize(columns);
    evidence_->declared.resize(columns);
    if (declare) {
      Outcome<DeclaredColumns> declared = declare(evidence_->header);
      if (!declared) return declared.problem();
      evidence_->declared = std::move(*declared);
    }
    declared_.resize(columns);
    ColumnEvidence::Summary missing;
    missing.count = evidence_->cases;
    for (std::size_t column = before; column < columns; ++column) {
      evidence_->columns[column].add(CellKind::empty, missing);
      if (!evidence_->declared[column]) continue;
      declared_[column] = std::make_unique<DeclaredCells>(*evidence_->declared[column]);
    }
    return std::nullopt;
  }

  std::optional<Problem> takeNewKeys(const DeclareColumns& declare) {
    if (records_.columns() == evidence_->header.size()) return std::nullopt;
    evidence_->header = scanner_.keys();
    return addColumns(declare);
  }

  // The problem of the first cell that does not read as its column's type.
  std::optional<Problem> takeRecords() {
    std::size_t refusedRecord = records_.records();
    std::size_t refusedColumn = 0;
    for (std::size_t column = 0; column < records_.columns(); ++column) {
      ColumnEvidence& evidence = evidence_->columns[column];
      if (declared_[column] == nullptr) {
        evidence.add(records_, column);
        continue;
      }
      const std::size_t refused = declared_[column]->add(records_, column, refusedRecord, evidence);
      if (refused == refusedRecord) continue;
      refusedRecord = refused;
      refusedColumn = column;
    }
    evidence_->textBytes += records_.bytes();
    evidence_->cases += records_.records();
    if (refusedRecord == records_.records()) return std::nullopt;
    return refusedCell(refusedRecord, refusedColumn);
  }

  Problem refusedCell(std::size_t record, std::size_t column) {
    DeclaredCells& declared = *declared_[column];
    const std::string_view cell = records_.text(record, column);
    return cellProblem(text::sentence("^1, line ^2", {path_, fmt::to_string(records_.lineOf(record, column))}),
                       evidence_->header[column], cell, declared.reader());
  }

  void finish() {
    evidence_->lineEnd = scanner_.lineEnd();
    evidence_->longestRecord = scanner_.longestRecord();
    evidence_->skippedLines = scanner_.skippedLines();
    evidence_->firstSkippedLine = scanner_.firstSkippedLine();
    evidence_->unseenKeys = scanner_.unseenKeys();
    evidence_->remarks = scanner_.remarks();
    for (const std::unique_ptr<DeclaredCells>& declared : declared_) {
      evidence_->findings.push_back(declared != nullptr ? declared->findings() : DeclaredFindings());
    }
  }

  TableScanner& scanner_;
  const std::string& path_;
  bool hasHeader_;
  std::shared_ptr<FileEvidence> evidence_ = std::make_shared<FileEvidence>();
  std::vector<std::unique_ptr<DeclaredCells>> declared_;  // null: nothing is declared
  CellBatch records_;
};

Outcome<std::shared_ptr<FileEvidence>> scan(const InputFile& file, const std::string& path, Packing packing,
                                            const TableDialect& dialect, const DeclareColumns& declare) {
  Outcome<std::unique_ptr<ByteSource>> source = asUtf8(openByteSource(file, packing), dialect.encoding);
  if (!source) {
    Problem problem = source.problem();
    problem.where = path;
    return problem;
  }
  const std::unique_ptr<TableScanner> scanner = openScanner(**source, dialect, path);
  return Scan(*scanner, dialect, path).run(declare);
}

// File systems keep times in ticks: a file that was modified this shortly before may change again and keep its time.
bool mayChangeUnseen(const FileIdentity& identity, std::chrono::system_clock::time_point seen) {
  constexpr std::chrono::nanoseconds tick = std::chrono::milliseconds(50);
  return std::chrono::nanoseconds(identity.modified) + tick >= seen.time_since_epoch();
}

// The same with these columns. Requires: its own are among them.
SharedEvidence withColumns(const SharedEvidence& part, const std::vector<std::string>& header) {
  if (part->header == header) return part;
  auto wider = std::make_shared<FileEvidence>(*part);
  wider->header = header;
  wider->columns.clear();
  wider->declared.clear();
  wider->findings.clear();
  ColumnEvidence::Summary missing;
  missing.count = part->cases;
  for (const std::string& name : header) {
    const auto found = std::find(part->header.begin(), part->header.end(), name);
    if (found == part->header.end()) {
      wider->columns.emplace_back().add(CellKind::empty, missing);
      wider->declared.emplace_back();
      wider->findings.emplace_back();
      continue;
    }
    const auto column = static_cast<std::size_t>(found - part->header.begin());
    wider->columns.push_back(part->columns[column]);
    wider->declared.push_back(part->declared[column]);
    wider->findings.push_back(part->findings[column]);
  }
  return wider;
}

std::vector<std::string> columnsOfAll(const std::vector<SharedEvidence>& parts) {
  std::vector<std::string> header;
  std::unordered_set<std::string> known;
  for (const SharedEvidence& part : parts) {
    for (const std::string& name : part->header) {
      if (known.insert(name).second) header.push_back(name);
    }
  }
  return header;
}

// Requires: both have as many columns.
void addPart(FileEvidence& whole, const FileEvidence& part) {
  for (std::size_t column = 0; column < whole.columns.size(); ++column) {
    whole.columns[column].merge(part.columns[column]);
    DeclaredFindings& findings = whole.findings[column];
    const DeclaredFindings& further = part.findings[column];
    if (findings.outside == 0) findings.firstOutside = further.firstOutside;
    if (findings.oddGroups == 0) findings.firstOddGroups = further.firstOddGroups;
    findings.outside += further.outside;
    findings.oddGroups += further.oddGroups;
    if (!findings.zoned) findings.zoned = further.zoned;
  }
  whole.cases += part.cases;
  whole.textBytes += part.textBytes;
  whole.skippedLines += part.skippedLines;
  std::erase_if(whole.unseenKeys, [&](const std::string& key) {
    return std::find(part.unseenKeys.begin(), part.unseenKeys.end(), key) == part.unseenKeys.end();
  });
  whole.remarks.insert(whole.remarks.end(), part.remarks.begin(), part.remarks.end());
}

// Why the part cannot stand below the first one; nothing when it can.
std::optional<Problem> partProblem(const FileEvidence& whole, const std::string& first, const FileEvidence& part,
                                   const std::string& path) {
  const auto remedy = [] {
    return text::sentence("All files of one table have the same columns; correct the file or the list of files.");
  };
  if (whole.header.size() != part.header.size()) {
    return Problem{text::sentence("The number of columns is ^1, and it is ^2 in ^3, which stands above it.",
                                  {fmt::to_string(part.header.size()), fmt::to_string(whole.header.size()), first}),
                   path, remedy()};
  }
  for (std::size_t column = 0; column < whole.header.size(); ++column) {
    const std::string& name = whole.header[column];
    if (name != part.header[column]) {
      return Problem{text::sentence("Column ^1 is \"^2\", and it is \"^3\" in ^4, which stands above it.",
                                    {fmt::to_string(column + 1), part.header[column], name, first}),
                     path, remedy()};
    }
    const std::optional<bool> zoned = whole.findings[column].zoned;
    if (zoned && part.findings[column].zoned.value_or(*zoned) != *zoned) {
      return Problem{text::sentence(*zoned ? "The values of column \"^1\" bear no time zone, and those in ^2 do."
                                           : "The values of column \"^1\" bear a time zone, and those in ^2 bear none.",
                                    {name, first}),
                     path, text::sentence("Let all values of the column bear a time zone, or none.")};
    }
  }
  return std::nullopt;
}

}  // namespace

Outcome<SharedEvidence> evidenceOf(const std::string& path, const FileKind& kind, const TableDialect& dialect,
                                   const DeclareColumns& declare) {
  TableDialect complete = kind.form == TextForm::jsonLines ? jsonLinesDialect(dialect.encoding, dialect.keys) : dialect;
  if (!complete.delimiter) complete.delimiter = std::string(1, kind.delimiter);
  if (const std::optional<std::string> wrong = contradictionIn(complete)) {
    return Problem{*wrong, path, text::sentence("Correct the dialect.")};
  }
  Outcome<InputFile> file = InputFile::open(path);
  if (!file) return file.problem();
  const FileIdentity identity = file->identity();
  if (auto known = evidenceMemory().find(identity, kind.packing, complete, declare)) return known;

  activity().expect(Activity::Unit::bytes, identity.size);
  const auto started = std::chrono::system_clock::now();
  Outcome<std::shared_ptr<FileEvidence>> scanned = scan(*file, path, kind.packing, complete, declare);
  if (!scanned) return scanned.problem();
  if (file->identity() != identity) {
    return Problem{text::sentence("The file changed while it was read."), path,
                   text::sentence("Try again when it is complete.")};
  }
  (*scanned)->identity = identity;
  SharedEvidence evidence = std::move(*scanned);
  if (!mayChangeUnseen(identity, started)) evidenceMemory().remember(evidence, kind.packing);
  return evidence;
}

Outcome<TableEvidence> evidenceOfParts(const std::vector<std::string>& paths, const FileKind& kind,
                                       const TableDialect& dialect, const DeclareColumns& declare) {
  // 1. Each by itself.
  TableEvidence table;
  for (const std::string& path : paths) {
    Outcome<SharedEvidence> part = evidenceOf(path, kind, dialect, declare);
    if (!part) return part.problem();
    table.parts.push_back(std::move(*part));
  }

  // 2. All of them together.
  if (kind.form == TextForm::jsonLines) {
    const std::vector<std::string> header = columnsOfAll(table.parts);
    for (SharedEvidence& part : table.parts) part = withColumns(part, header);
  }
  const auto whole = std::make_shared<FileEvidence>(*table.parts.front());
  for (std::size_t part = 1; part < paths.size(); ++part) {
    if (auto problem = partProblem(*whole, paths.front(), *table.parts[part], paths[part])) return *std::move(problem);
    addPart(*whole, *table.parts[part]);
  }
  table.whole = whole;
  return table;
}

TableDialect dialectForReading(const FileEvidence& evidence) {
  TableDialect dialect = evidence.dialect;
  if (dialect.form == TextForm::jsonLines) dialect.keys = evidence.header;
  return dialect;
}

}  // namespace workbench::data
