// ExaminedTable: a table that is about to be opened, whatever holds it, before the types of its variables are settled.
//
// Its values have been looked at, unless all that they could tell is written down: then that is left until it is asked
// for.
// Types are settled over two tables together where they are to be compared, and these may be held in different ways.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "workbench/data/data_file.h"
#include "workbench/data/files/type_inference.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class ExaminedTable {
 public:
  virtual ~ExaminedTable() = default;

  // Whether nothing is to be inferred of it, its values not having been looked at.
  virtual bool isWhollyDescribed() const { return false; }
  // Looks at them after all. Requires: it has not been done yet.
  virtual Outcome<Done> lookAtValues() { return Done{}; }

  // Refers to this object.
  virtual ScannedTable scanned() const = 0;
  // Finds out how long the values of these columns are when they are read as texts, where that is not known yet.
  virtual Outcome<Done> measureTexts(const std::vector<std::size_t>& /*columns*/) { return Done{}; }
  // The table as a data file with these variables, one per column. To be asked once.
  virtual Outcome<std::shared_ptr<const DataFile>> open(InferredTypes types) = 0;
};

// The table, its values looked at unless what describes it leaves nothing open that they could tell.
inline Outcome<std::unique_ptr<ExaminedTable>> examinedTable(std::unique_ptr<ExaminedTable> table,
                                                             bool leavesNothingOpen) {
  if (leavesNothingOpen) return table;
  if (const Outcome<Done> looked = table->lookAtValues(); !looked) return looked.problem();
  return table;
}

}  // namespace workbench::data
