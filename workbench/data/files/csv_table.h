// CsvTable: a text file, or several that stand one below the other, as a table that readers share.
//
// Every file was found sound and holds the same columns. A column feeds one variable or none; a variable that no column
// feeds has no values. Does not change once it is shared.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "workbench/data/cells/cell_reading.h"
#include "workbench/data/dictionary.h"
#include "workbench/data/files/file_evidence.h"
#include "workbench/data/files/file_kind.h"

namespace workbench::data {

struct CsvPart {
  std::string path;
  SharedEvidence evidence;
};

// What becomes of a column's cells.
struct CsvColumn {
  std::optional<std::int32_t> variable;  // its index; none: the column is not taken
  std::optional<CellReading> reading;    // as in the evidence; none: the types were inferred, and formats tell them
};

struct CsvTable {
  // Requires: a part at least; one entry per column; no two columns feed one variable; the readings are those of the
  // evidence, and their types are those of the variables.
  CsvTable(std::string tablePath, std::vector<CsvPart> tableParts, const FileKind& fileKind,
           std::vector<CsvColumn> tableColumns, Dictionary tableDictionary)
      : path(std::move(tablePath)),
        kind(fileKind),
        parts(std::move(tableParts)),
        columns(std::move(tableColumns)),
        dictionary(std::move(tableDictionary)),
        layout(dictionary) {}

  // One file, every column of which feeds the variable of the same index, nothing being declared.
  CsvTable(std::string filePath, const FileKind& fileKind, SharedEvidence evidence, Dictionary fileDictionary)
      : path(std::move(filePath)),
        kind(fileKind),
        parts{{path, std::move(evidence)}},
        dictionary(std::move(fileDictionary)),
        layout(dictionary) {
    for (std::int32_t variable = 0; variable < dictionary.size(); ++variable) columns.push_back({variable, {}});
  }

  const TableDialect& dialect() const { return parts.front().evidence->dialect; }
  std::int64_t cases() const {
    std::uint64_t all = 0;
    for (const CsvPart& part : parts) all += part.evidence->cases;
    return static_cast<std::int64_t>(all);
  }

  std::string path;  // as written
  FileKind kind;     // its packing counts; the delimiter is the dialect's
  std::vector<CsvPart> parts;
  std::vector<CsvColumn> columns;  // one per column of the files
  Dictionary dictionary;
  CaseLayout layout;
};

}  // namespace workbench::data
