#include "workbench/data/files/file_evidence.h"

#include <fmt/format.h>

#include <chrono>
#include <list>
#include <mutex>
#include <utility>

#include "workbench/data/files/byte_source.h"
#include "workbench/data/files/csv_scanner.h"

namespace workbench::data {
namespace {

constexpr std::size_t mostRemembered = 16;

// The scans of this process. Least recently used ones go first.
class EvidenceMemory {
 public:
  std::shared_ptr<const FileEvidence> find(const FileIdentity& identity, char delimiter, Packing packing) {
    const std::lock_guard lock(mutex_);
    for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
      if (entry->evidence->identity != identity || entry->delimiter != delimiter || entry->packing != packing) continue;
      entries_.splice(entries_.begin(), entries_, entry);
      return entry->evidence;
    }
    return nullptr;
  }

  void remember(std::shared_ptr<const FileEvidence> evidence, char delimiter, Packing packing) {
    const std::lock_guard lock(mutex_);
    entries_.push_front({std::move(evidence), delimiter, packing});
    if (entries_.size() > mostRemembered) entries_.pop_back();
  }

 private:
  struct Entry {
    std::shared_ptr<const FileEvidence> evidence;
    char delimiter;
    Packing packing;
  };
  std::mutex mutex_;
  std::list<Entry> entries_;
};

EvidenceMemory& evidenceMemory() {
  static EvidenceMemory memory;
  return memory;
}

Outcome<std::shared_ptr<FileEvidence>> scan(const InputFile& file, const std::string& path, const FileKind& kind) {
  const std::unique_ptr<ByteSource> source = openByteSource(file, kind.packing);
  TableDialect dialect;
  dialect.delimiter = std::string(1, kind.delimiter);
  CsvScanner scanner(*source, dialect, path);
  auto evidence = std::make_shared<FileEvidence>();

  CsvField field;
  CsvScanner::Step step = scanner.next(field);
  for (; step == CsvScanner::Step::field; step = scanner.next(field)) {
    evidence->header.emplace_back(field.text);
    if (field.endsRecord) break;
  }
  if (step == CsvScanner::Step::end) {
    return Problem{"The file is empty, and its first line has to name the columns.", path, "Name another file."};
  }

  evidence->columns.resize(evidence->header.size());
  std::size_t column = 0;
  if (step == CsvScanner::Step::field) step = scanner.next(field);
  for (; step == CsvScanner::Step::field; step = scanner.next(field)) {
    evidence->columns[column].add(field.text, field.line);
    evidence->textBytes += field.text.size();
    ++column;
    if (!field.endsRecord) continue;
    column = 0;
    ++evidence->cases;
  }
  if (step == CsvScanner::Step::problem) return scanner.problem();

  evidence->lineEnd = scanner.lineEnd();
  evidence->longestRecord = scanner.longestRecord();
  evidence->skippedLines = scanner.skippedLines();
  evidence->firstSkippedLine = scanner.firstSkippedLine();
  return evidence;
}

// File systems keep times in ticks: a file that was modified this shortly before may change again and keep its time.
bool mayChangeUnseen(const FileIdentity& identity, std::chrono::system_clock::time_point seen) {
  constexpr std::chrono::nanoseconds tick = std::chrono::milliseconds(50);
  return std::chrono::nanoseconds(identity.modified) + tick >= seen.time_since_epoch();
}

}  // namespace

Outcome<std::shared_ptr<const FileEvidence>> evidenceOf(const std::string& path, const FileKind& kind) {
  Outcome<InputFile> file = InputFile::open(path);
  if (!file) return file.problem();
  const FileIdentity identity = file->identity();
  if (auto known = evidenceMemory().find(identity, kind.delimiter, kind.packing)) return known;

  const auto started = std::chrono::system_clock::now();
  Outcome<std::shared_ptr<FileEvidence>> scanned = scan(*file, path, kind);
  if (!scanned) return scanned.problem();
  if (file->identity() != identity) {
    return Problem{"The file changed while it was read.", path, "Try again when it is complete."};
  }
  (*scanned)->identity = identity;
  std::shared_ptr<const FileEvidence> evidence = *std::move(scanned);
  if (!mayChangeUnseen(identity, started)) evidenceMemory().remember(evidence, kind.delimiter, kind.packing);
  return evidence;
}

}  // namespace workbench::data
