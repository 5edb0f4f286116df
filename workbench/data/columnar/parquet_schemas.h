// What Parquet files that are to be one table say of their columns.
//
// DuckDB takes the columns of the first file for those of all and makes the values of the others theirs: it would round
// a real that stands under a whole number, and pass over a column that the first file lacks.
#pragma once

#include <string>
#include <vector>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct CommonColumns {
  bool areSame = true;                // in all files; otherwise they have to be joined by their names
  std::vector<std::string> warnings;  // of columns that some of the files lack
};

// Of the files that DuckDB opens by these names and messages know by those. Fails when a column is of different types,
// whole numbers of any size excepted, and when names do not tell which columns of two files are one.
Outcome<CommonColumns> commonColumns(const std::vector<std::string>& opened, const std::vector<std::string>& shown);

}  // namespace workbench::data
