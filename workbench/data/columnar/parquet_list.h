// ParquetList: Parquet files that are one table, one below the other, their columns by name.
//
// DuckDB left to itself takes the columns of the first file for those of all and makes the values of the others theirs:
// it would round a real that stands under a whole number, and pass over a column that the first file lacks.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

class ParquetList {
 public:
  // Of the files that DuckDB opens by these names and messages know by those. Fails when a column is of different
  // types, whole numbers of any size excepted, and when names do not tell which columns of two files are one.
  static Outcome<ParquetList> of(const std::vector<std::string>& opened, const std::vector<std::string>& shown);

  // The table in a FROM clause, with these options of read_parquet().
  std::string relation(std::string_view options) const;
  // Whether all files have the same columns in the same order.
  bool hasSameColumns() const { return hasSameColumns_; }
  // Sentences about columns that some of the files lack.
  const std::vector<std::string>& warnings() const { return warnings_; }

 private:
  ParquetList(std::string files, bool hasSameColumns, std::vector<std::string> warnings)
      : files_(std::move(files)), hasSameColumns_(hasSameColumns), warnings_(std::move(warnings)) {}

  std::string files_;  // in SQL
  bool hasSameColumns_;
  std::vector<std::string> warnings_;
};

}  // namespace workbench::data
