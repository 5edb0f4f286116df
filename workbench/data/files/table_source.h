// TableSource: the files of a table, with what a descriptor says of them and what a scan over them found.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbench/data/descriptors/described_table.h"
#include "workbench/data/files/field_matching.h"
#include "workbench/data/files/file_evidence.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct TableSource {
  // Null when nothing of the column was declared.
  const DescribedField* fieldOf(std::size_t column) const {
    const std::optional<std::size_t> field = fields.fieldOfColumn[column];
    return field ? &description->fields[*field] : nullptr;
  }

  std::string path;                    // as written: a data file, or a package with or without "#resource"
  std::vector<std::string> dataPaths;  // the files that hold the cases
  FileKind kind;
  std::shared_ptr<const DescribedTable> description;  // null when there is none
  TableEvidence evidence;
  MatchedFields fields;
  std::vector<std::string> names;     // of the columns: their fields', else as the header has them, made different
  std::vector<std::string> warnings;  // of all this, sentences
};

// Finds the description of the data, reads all files and finds every cell sound.
Outcome<TableSource> examineTable(const std::string& path);

// What describes the data, if anything does; nothing is read but descriptors.
Outcome<std::optional<DescribedTable>> descriptionOf(const std::string& path);

}  // namespace workbench::data
