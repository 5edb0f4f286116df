// What the footer of a Parquet file tells. Files are those that DuckDB opens by a name; problems are DuckDB's, and name
// no place.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

inline constexpr const char* resourceKey = "statistics:resource";  // of the dictionary in the file's own metadata

struct FooterColumn {
  std::string name;              // no other column of the file has it, ASCII letters without regard to case
  std::string type;              // as DuckDB writes it, with the types of all parts
  bool isNamedByDuckDb = false;  // because it has no name in the file, or that of another column

  bool operator==(const FooterColumn&) const = default;
};

// In their order in the file.
Outcome<std::vector<FooterColumn>> columnsInFooter(const std::string& file);

// The text of the resource that describes the table, where there is one.
Outcome<std::optional<std::string>> resourceInFooter(const std::string& file);

// What tells the file from others, and from what it was before: where its parts lie, their sizes and what is said of
// their values. Not the values themselves: some that take another's place without a change of all that go unnoticed.
Outcome<std::string> stateInFooter(const std::string& file);

}  // namespace workbench::data
