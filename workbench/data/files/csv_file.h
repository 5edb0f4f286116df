// CsvFile: a CSV file as a data file, and all that its readers share.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "workbench/data/data_file.h"
#include "workbench/data/files/file_evidence.h"
#include "workbench/data/files/file_kind.h"

namespace workbench::data {

// A CSV file that was found sound, and the types by which its cells are read. Does not change once it is shared.
// Requires: one variable per column, in the order of the columns.
struct CsvTable {
  CsvTable(std::string filePath, const FileKind& fileKind, std::shared_ptr<const FileEvidence> fileEvidence,
           Dictionary fileDictionary)
      : path(std::move(filePath)),
        kind(fileKind),
        evidence(std::move(fileEvidence)),
        dictionary(std::move(fileDictionary)),
        layout(dictionary) {}

  std::string path;  // as written
  FileKind kind;
  std::shared_ptr<const FileEvidence> evidence;
  Dictionary dictionary;
  CaseLayout layout;
};

// Opens a CSV file. Without a dictionary its types are inferred, together with those of the other file when one is
// named.
Outcome<std::shared_ptr<const DataFile>> openCsvFile(const std::string& path, const FileKind& kind,
                                                     const std::optional<std::string>& typesWith);

}  // namespace workbench::data
