// A resource of a package that is a text table: from its object to a DescribedTable.
#pragma once

#include "workbench/data/descriptors/data_package.h"
#include "workbench/data/descriptors/described_table.h"

namespace workbench::data {

// Whether a resource says that it is a table, or has a schema or a file as only tables have.
bool looksLikeTable(const Resource& resource);

// All that the resource says, its dialect and schema read from files of their own where they are named. Its data paths
// are not looked at.
DescribedTable describedTable(const Resource& resource);

// The files of the resource as they can be opened; rejected when they are none that this program may read.
std::vector<std::string> dataPaths(const Resource& resource);

}  // namespace workbench::data
