// FileEvidence: all that one scan over a data file finds out.
//
// A file is scanned once, however often it is opened with one partner or another: evidence is kept for the process as
// long as the file stays as it is.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "workbench/data/files/column_evidence.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/input_file.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct FileEvidence {
  FileIdentity identity;
  std::vector<std::string> header;  // the names as they stand in the file
  std::vector<ColumnEvidence> columns;
  std::uint64_t cases = 0;
  std::uint64_t textBytes = 0;      // of all cells, quotes taken away
  std::string lineEnd;              // how lines end; empty when none does
  std::uint64_t longestRecord = 0;  // in bytes
  std::uint64_t skippedLines = 0;   // blank ones between others
  std::uint64_t firstSkippedLine = 0;
};

// The evidence of a file, gathered now or before. The file's bytes have been read and found sound. May be called on
// several threads at once.
Outcome<std::shared_ptr<const FileEvidence>> evidenceOf(const std::string& path, const FileKind& kind);

}  // namespace workbench::data
