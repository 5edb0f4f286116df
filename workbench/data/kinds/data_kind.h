// DataKind: the kinds of data that datasets are read from and written to, one row per kind.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/case_reader.h"
#include "workbench/data/files/examined_table.h"
#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

struct DataKind {
  std::string_view name;                      // "Parquet file"
  std::span<const std::string_view> endings;  // of a name
  // Paths are as written, with "#table" perhaps.
  Outcome<std::unique_ptr<ExaminedTable>> (*examine)(const std::string& path);
  // Null: such data are only read. The password is empty for a file that is not to be protected.
  Outcome<std::unique_ptr<CaseWriter>> (*create)(const std::string& path, const Dictionary& dictionary,
                                                 const Secret& password);
  // Whether a dictionary is written down for the data, or said to be; nothing is read but that.
  bool (*bringsDictionary)(const std::string& path);
  // Whether its dictionary is written into a file beside it.
  bool hasDictionaryBeside;
  std::span<const std::string_view> beginnings = {};  // of references to a server
};

// The kind that the name's ending says, in any case, or the beginning of a reference to a server; a folder is of the
// kind of the files in it. Fails for an ending that is not known, naming those that are.
Outcome<const DataKind*> dataKind(const std::string& path);

// All endings of the kinds that are written, or of all.
std::vector<std::string_view> dataEndings(bool onlyWritten);

}  // namespace workbench::data
