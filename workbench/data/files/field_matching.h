// Which column of a file holds which field of its descriptor.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "workbench/data/descriptors/described_table.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct MatchedFields {
  std::vector<std::optional<std::size_t>> fieldOfColumn;  // nothing: no field says anything of this column
  std::vector<std::string> warnings;                      // fields that no column holds
};

// The header as it stands in the file, one name per column; invented names when the file has none, which are not looked
// at then: fields and columns belong together by their order. A problem when they do not match as the descriptor says.
Outcome<MatchedFields> matchFields(const DescribedTable& table, const std::vector<std::string>& header,
                                   const std::string& path);

}  // namespace workbench::data
