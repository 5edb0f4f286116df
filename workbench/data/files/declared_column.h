// DeclaredColumn: what a dictionary says of the cells of a column, and what a scan found of them under it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "workbench/data/cells/cell_reader.h"
#include "workbench/data/files/column_evidence.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct DeclaredColumn {
  CellReading reading;
  // The only values that its cells may be, numbers or texts as its type is; both empty: any. User-missing values belong
  // among them, unless they are values that nobody expects.
  std::vector<double> numbers;
  std::vector<std::string> texts;

  bool operator==(const DeclaredColumn&) const = default;
};

// One per column; none: nothing is declared of it, and its type is inferred.
using DeclaredColumns = std::vector<std::optional<DeclaredColumn>>;

// Tells what is declared once the columns' names are known, one for each. Called with the same names it tells the same.
// May be called on several threads at once, and asks for no evidence itself. The problem, if any, ends the scan.
using DeclareColumns = std::function<Outcome<DeclaredColumns>(const std::vector<std::string>& names)>;

// What deserves a word although every cell reads.
struct DeclaredFindings {
  std::uint64_t outside = 0;  // cells whose values are none of those that they may be
  CellSighting firstOutside;
  std::uint64_t oddGroups = 0;  // numbers with groups other than of three digits
  CellSighting firstOddGroups;
  std::optional<bool> zoned;  // whether its dates with times bear a zone; nothing when there is none
};

// A cell under a declaration, to be read or to be refused.
class DeclaredCells {
 public:
  explicit DeclaredCells(DeclaredColumn column);

  // Adds the cells of the column to its evidence, of at most so many records. Gives the first record whose cell does
  // not read, and ends there; else their number.
  std::size_t add(const CellBatch& cells, std::size_t column, std::size_t records, ColumnEvidence& evidence);
  CellReader& reader() { return reader_; }
  DeclaredFindings findings() const;

 private:
  bool isOutside(std::string_view cell);

  DeclaredColumn column_;  // its values ascending
  CellReader reader_;
  DeclaredFindings findings_;
  std::string plain_;
};

// A cell that does not read as its column's type. `where` is its file and line or case; `reader` read the column.
Problem cellProblem(const std::string& where, std::string_view column, std::string_view cell, CellReader& reader);

}  // namespace workbench::data
