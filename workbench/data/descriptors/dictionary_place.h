// Where the dictionary of a data file is written down, be the file there already or not.
#pragma once

#include <string>
#include <string_view>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct DictionaryPlace {
  std::string path;
  bool isPackage = false;  // else a table schema, which from then on is of this data file alone
};

// Where it goes when the file is written: the package of its folder, where a resource is that file; else a schema
// beside it. A package that is there and is not sound is a problem, and so is one that would have to hold the
// dictionary of a protected file.
Outcome<DictionaryPlace> dictionaryPlaceOf(const std::string& dataPath);

// The schema that is of a data file: people.csv.schema.json where that is there, else people.schema.json, be it there
// or not. The longer name is for files that share the shorter one, as people.csv and people.tsv do. Of a protected file
// people.csv.pgp both end in .pgp as well.
std::string schemaPathOf(const std::string& dataPath);
// Whether a file of this name is such a schema, of whatever data file.
bool isSchemaName(std::string_view path);
// The name of a package beside a data file.
std::string packagePathOf(const std::string& dataPath);

}  // namespace workbench::data
