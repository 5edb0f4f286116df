// A data package: its resources, found and checked.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workbench/data/descriptors/descriptor_value.h"

namespace workbench::data {

// What every resource of a package has to be; whether it is a table that can be read is asked of the one that is used.
struct Resource {
  DescriptorObject object;
  std::string name;
  std::vector<std::string> paths;  // as written; empty: its data stand in the descriptor
  bool isElsewhere = false;        // a path is an address
  bool isTable = false;            // says so, or has the schema or the ending of one
};

// Rejects a package without resources, names that repeat, and paths that lead out of its folder.
std::vector<Resource> resourcesOf(const DescriptorValue& package);

// The index of the resource that is this very file and no other; nothing when none is. Two of them are a problem.
Outcome<std::optional<std::size_t>> resourceOfFile(const std::vector<Resource>& resources, const std::string& dataPath);

}  // namespace workbench::data
