// Type inference: from what the cells of a column are to the variable that holds them all, exactly.
//
// A column is a number, a date, a time or a date with a time when all its filled cells are, in both files when it is
// looked at together with a partner; a number that is nowhere filled has only missing values; everything else is text,
// as wide as the longest value. Print formats are wide enough for every value as it was written.
//
// Of a column that a descriptor declares only what it leaves open is inferred: print format, width of a string, display
// width and alignment. A column that is declared as a string in the partner is text here too.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/descriptors/described_table.h"
#include "workbench/data/dictionary.h"
#include "workbench/data/files/column_evidence.h"

namespace workbench::data {

// A scanned table under the name by which users know it. What it refers to outlives it.
struct ScannedTable {
  std::string path;
  std::string_view place;          // what its sightings count: "line"
  std::vector<std::string> names;  // one per column
  const std::vector<ColumnEvidence>& columns;
  std::vector<const DescribedField*> fields;  // one per column; null: nothing is declared of it
};

struct InferredTypes {
  std::vector<Variable> variables;    // one per column of the table
  std::vector<std::string> warnings;  // columns that are text because of a few cells, or of the partner's cells
};

// The partner may be null. Its columns are found by name, without regard to case.
InferredTypes inferTypes(const ScannedTable& table, const ScannedTable* partner);

// The columns that become texts, all or some of whose values are none of those of a text column.
std::vector<std::size_t> columnsBecomingText(const ScannedTable& table, const ScannedTable* partner);

}  // namespace workbench::data
