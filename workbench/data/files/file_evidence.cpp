#include "workbench/data/files/file_evidence.h"

#include <fmt/format.h>

#include <chrono>
#include <utility>

#include "workbench/data/files/byte_source.h"
#include "workbench/data/files/csv_scanner.h"
#include "workbench/data/files/dialect_scanner.h"
#include "workbench/data/files/encoded_source.h"
#include "workbench/data/files/evidence_memory.h"

namespace workbench::data {
namespace {

using Step = TableScanner::Step;

// A field of the first row, kept until it is known what its column is read by.
struct KeptField {
  std::string text;
  bool isNull;
  std::uint64_t line;
};

// One scan over a text. The scanner's own type is known here, so that its steps are no virtual calls.
template <class Scanner>
class Scan {
 public:
  Scan(Scanner& scanner, const TableDialect& dialect, const std::string& path)
      : scanner_(scanner), path_(path), hasHeader_(!dialect.headerRows.empty()) {
    evidence_->dialect = dialect;
  }

  Outcome<std::shared_ptr<FileEvidence>> run(const DeclareColumns& declare) {
    if (const std::optional<Problem> problem = readNames()) return *problem;
    if (const std::optional<Problem> problem = startColumns(declare)) return *problem;
    for (const KeptField& field : firstRow_) {
      if (!take({field.text, false, field.isNull, field.line})) return refusedCell(field.text, field.line);
    }
    CsvField field;
    Step step = isDeclared_ ? takeDeclared(field) : takeUndeclared(field);
    if (step == Step::field) return refusedCell(field.text, field.line);
    if (step == Step::problem) return scanner_.problem();
    finish();
    return std::move(evidence_);
  }

 private:
  // Those that give a problem give none when all is well.
  std::optional<Problem> readNames() {
    const Step step = hasHeader_ ? scanner_.readHeader(evidence_->header) : keepFirstRow();
    if (step == Step::problem) return scanner_.problem();
    if (step == Step::field) return std::nullopt;
    const std::string_view purpose = hasHeader_ ? "name the columns" : "tell the number of columns";
    return Problem{fmt::format("The file is empty, and its first line has to {}.", purpose), path_,
                   "Name another file."};
  }

  // Without a header its length tells the number of columns.
  Step keepFirstRow() {
    CsvField field;
    Step step = scanner_.next(field);
    for (; step == Step::field; step = scanner_.next(field)) {
      firstRow_.push_back({std::string(field.text), field.isNull, field.line});
      evidence_->header.push_back(fmt::format("field{}", firstRow_.size()));
      if (field.endsRecord) break;
    }
    return step;
  }

  std::optional<Problem> startColumns(const DeclareColumns& declare) {
    const std::size_t columns = evidence_->header.size();
    evidence_->columns.resize(columns);
    evidence_->declared.resize(columns);
    if (declare) {
      Outcome<DeclaredColumns> declared = declare(evidence_->header);
      if (!declared) return declared.problem();
      evidence_->declared = std::move(*declared);
    }
    declared_.resize(columns);
    for (std::size_t column = 0; column < columns; ++column) {
      if (!evidence_->declared[column]) continue;
      isDeclared_ = true;
      declared_[column] = std::make_unique<DeclaredCells>(*evidence_->declared[column]);
    }
    return std::nullopt;
  }

  // Up to the end, or to a field that does not read as its column's type.
  Step takeDeclared(CsvField& field) {
    Step step = scanner_.next(field);
    while (step == Step::field && take(field)) step = scanner_.next(field);
    return step;
  }

  // The same where nothing is declared, which is most often so; every cell counts, and all that does is at hand.
  Step takeUndeclared(CsvField& field) {
    ColumnEvidence* const columns = evidence_->columns.data();
    std::size_t column = 0;
    std::uint64_t bytes = 0;
    std::uint64_t cases = 0;
    Step step = scanner_.next(field);
    for (; step == Step::field; step = scanner_.next(field)) {
      columns[column].add(field.isNull ? std::string_view() : field.text, field.line);
      bytes += field.text.size();
      ++column;
      if (!field.endsRecord) continue;
      column = 0;
      ++cases;
    }
    textBytes_ += bytes;
    cases_ += cases;
    return step;
  }

  // False when the cell does not read as its column's type.
  bool take(const CsvField& field) {
    ColumnEvidence& evidence = evidence_->columns[column_];
    if (field.isNull) {
      evidence.add("", field.line);
    } else if (declared_[column_] == nullptr) {
      evidence.add(field.text, field.line);
    } else if (!declared_[column_]->add(field.text, field.line, evidence)) {
      return false;
    }
    textBytes_ += field.text.size();
    if (++column_ == evidence_->columns.size()) {
      column_ = 0;
      ++cases_;
    }
    return true;
  }

  Problem refusedCell(std::string_view cell, std::uint64_t line) {
    DeclaredCells& declared = *declared_[column_];
    return cellProblem(fmt::format("{}, line {}", path_, line), evidence_->header[column_], declared.type(), cell,
                       declared.whyNot(cell));
  }

  void finish() {
    evidence_->cases = cases_;
    evidence_->textBytes = textBytes_;
    evidence_->lineEnd = scanner_.lineEnd();
    evidence_->longestRecord = scanner_.longestRecord();
    evidence_->skippedLines = scanner_.skippedLines();
    evidence_->firstSkippedLine = scanner_.firstSkippedLine();
    for (const std::unique_ptr<DeclaredCells>& declared : declared_) {
      evidence_->findings.push_back(declared != nullptr ? declared->findings() : DeclaredFindings());
    }
  }

  Scanner& scanner_;
  const std::string& path_;
  bool hasHeader_;
  std::shared_ptr<FileEvidence> evidence_ = std::make_shared<FileEvidence>();
  std::vector<std::unique_ptr<DeclaredCells>> declared_;  // null: nothing is declared
  bool isDeclared_ = false;                               // any is
  std::vector<KeptField> firstRow_;
  std::size_t column_ = 0;
  std::uint64_t cases_ = 0;
  std::uint64_t textBytes_ = 0;
};

Outcome<std::shared_ptr<FileEvidence>> scan(const InputFile& file, const std::string& path, Packing packing,
                                            const TableDialect& dialect, const DeclareColumns& declare) {
  Outcome<std::unique_ptr<ByteSource>> source = asUtf8(openByteSource(file, packing), dialect.encoding);
  if (!source) {
    Problem problem = source.problem();
    problem.where = path;
    return problem;
  }
  if (isPlain(dialect)) {
    CsvScanner scanner(**source, dialect, path);
    return Scan<CsvScanner>(scanner, dialect, path).run(declare);
  }
  DialectScanner scanner(**source, dialect, path);
  return Scan<DialectScanner>(scanner, dialect, path).run(declare);
}

// File systems keep times in ticks: a file that was modified this shortly before may change again and keep its time.
bool mayChangeUnseen(const FileIdentity& identity, std::chrono::system_clock::time_point seen) {
  constexpr std::chrono::nanoseconds tick = std::chrono::milliseconds(50);
  return std::chrono::nanoseconds(identity.modified) + tick >= seen.time_since_epoch();
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
}

// Why the part cannot stand below the first one; nothing when it can.
std::optional<Problem> partProblem(const FileEvidence& whole, const std::string& first, const FileEvidence& part,
                                   const std::string& path) {
  constexpr const char* remedy = "All files of one table have the same columns; correct the file or the list of files.";
  if (whole.header.size() != part.header.size()) {
    return Problem{fmt::format("The number of columns is {}, and it is {} in {}, which stands above it.",
                               part.header.size(), whole.header.size(), first),
                   path, remedy};
  }
  for (std::size_t column = 0; column < whole.header.size(); ++column) {
    const std::string& name = whole.header[column];
    if (name != part.header[column]) {
      return Problem{fmt::format("Column {} is \"{}\", and it is \"{}\" in {}, which stands above it.", column + 1,
                                 part.header[column], name, first),
                     path, remedy};
    }
    const std::optional<bool> zoned = whole.findings[column].zoned;
    if (zoned && part.findings[column].zoned.value_or(*zoned) != *zoned) {
      return Problem{fmt::format("The values of column \"{}\" {}, and those in {} {}.", name,
                                 *zoned ? "bear no time zone" : "bear a time zone", first, *zoned ? "do" : "bear none"),
                     path, "Let all values of the column bear a time zone, or none."};
    }
  }
  return std::nullopt;
}

}  // namespace

Outcome<SharedEvidence> evidenceOf(const std::string& path, const FileKind& kind, const TableDialect& dialect,
                                   const DeclareColumns& declare) {
  TableDialect complete = dialect;
  if (!complete.delimiter) complete.delimiter = std::string(1, kind.delimiter);
  if (const std::optional<std::string> wrong = contradictionIn(complete)) {
    return Problem{fmt::format("The dialect {}.", *wrong), path, "Correct the dialect."};
  }
  Outcome<InputFile> file = InputFile::open(path);
  if (!file) return file.problem();
  const FileIdentity identity = file->identity();
  if (auto known = evidenceMemory().find(identity, kind.packing, complete, declare)) return known;

  const auto started = std::chrono::system_clock::now();
  Outcome<std::shared_ptr<FileEvidence>> scanned = scan(*file, path, kind.packing, complete, declare);
  if (!scanned) return scanned.problem();
  if (file->identity() != identity) {
    return Problem{"The file changed while it was read.", path, "Try again when it is complete."};
  }
  (*scanned)->identity = identity;
  SharedEvidence evidence = std::move(*scanned);
  if (!mayChangeUnseen(identity, started)) evidenceMemory().remember(evidence, kind.packing);
  return evidence;
}

Outcome<TableEvidence> evidenceOfParts(const std::vector<std::string>& paths, const FileKind& kind,
                                       const TableDialect& dialect, const DeclareColumns& declare) {
  TableEvidence table;
  std::shared_ptr<FileEvidence> whole;
  for (const std::string& path : paths) {
    Outcome<SharedEvidence> part = evidenceOf(path, kind, dialect, declare);
    if (!part) return part.problem();
    if (whole == nullptr) {
      whole = std::make_shared<FileEvidence>(**part);
    } else {
      if (std::optional<Problem> problem = partProblem(*whole, paths.front(), **part, path)) return *std::move(problem);
      addPart(*whole, **part);
    }
    table.parts.push_back(std::move(*part));
  }
  table.whole = std::move(whole);
  return table;
}

}  // namespace workbench::data
