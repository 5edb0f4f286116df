// FileEvidence: all that one scan over a data file finds out.
//
// A file is scanned once, however often it is opened with one partner or another: evidence is kept for the process as
// long as the file stays as it is, told apart by the dialect and by what was declared.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "workbench/data/files/column_evidence.h"
#include "workbench/data/files/declared_column.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/input_file.h"
#include "workbench/data/files/table_dialect.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct FileEvidence {
  FileIdentity identity;
  TableDialect dialect;                    // with its delimiter, whoever told it
  std::vector<std::string> header;         // the names as they stand in the file; without any field1, field2, ...
  DeclaredColumns declared;                // what the columns were read by, one per column
  std::vector<ColumnEvidence> columns;     // of declared ones over the plain texts of their cells
  std::vector<DeclaredFindings> findings;  // one per column
  std::uint64_t cases = 0;
  std::uint64_t textBytes = 0;      // of all cells, quotes taken away
  std::string lineEnd;              // how lines end; empty when none does
  std::uint64_t longestRecord = 0;  // in bytes; of plain dialects only
  std::uint64_t skippedLines = 0;   // blank ones between others
  std::uint64_t firstSkippedLine = 0;
  std::vector<std::string> unseenKeys;  // columns that were known beforehand and that no record has
  std::vector<std::string> remarks;     // what users should know of the text, sentences
};

using SharedEvidence = std::shared_ptr<const FileEvidence>;

// The evidence of a file, gathered now or before. The file's bytes have been read and found sound, and every cell of a
// declared column reads; the problem of one that does not names file, line, column, text and type. Where the dialect
// tells no delimiter it is the kind's. May be called on several threads at once.
Outcome<SharedEvidence> evidenceOf(const std::string& path, const FileKind& kind, const TableDialect& dialect = {},
                                   const DeclareColumns& declare = nullptr);

// A table that several files hold, one below the other.
struct TableEvidence {
  std::vector<SharedEvidence> parts;  // one per file
  // Of all cells, as if they stood in one file; identity, dialect, lines and names are those of the first part.
  SharedEvidence whole;
};

// The dialect in which the file is read once its columns are known.
TableDialect dialectForReading(const FileEvidence& evidence);

// Of all files in their order, each with the same header where there is one; of JSON lines every part has the columns
// of all. Requires: there is one at least.
Outcome<TableEvidence> evidenceOfParts(const std::vector<std::string>& paths, const FileKind& kind,
                                       const TableDialect& dialect, const DeclareColumns& declare);

}  // namespace workbench::data
