// Finds the description of a data file, or the table that a package describes.
//
// A data file that is opened by itself is described by the "datapackage.json" of its folder, where a resource names the
// file; else by a table schema beside it: people.csv and people.csv.gz by people.schema.json, the protected file
// people.csv.pgp by people.schema.json.pgp or, where there is none, like people.csv.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "workbench/data/descriptors/described_table.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// Nothing when no descriptor describes the file. One that is there and is not sound is a problem, not passed over.
Outcome<std::optional<DescribedTable>> descriptionBeside(const std::string& dataPath);

// A resource of a package; with an empty name the only one that is a table.
Outcome<DescribedTable> describedResource(const std::string& packagePath, const std::string& resourceName);

// What a resource says whose text is stored with the data, in the file of that path.
Outcome<DescribedTable> describedByResource(std::string_view resource, const std::string& dataPath);
// The same of one that may be there.
Outcome<std::optional<DescribedTable>> describedByStored(const Outcome<std::optional<std::string>>& resource,
                                                         const std::string& dataPath);

}  // namespace workbench::data
