// StoredCaseWriter: writes a dataset into a table whose columns have types: numbers as doubles, dates and times as what
// they are, texts without the blanks at their end. A system-missing value and a blank text are no value.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "workbench/data/case_reader.h"
#include "workbench/data/files/duckdb_feed.h"

namespace workbench::data {

// Where the rows of a table go, and how they come into place.
class StoredOutput {
 public:
  virtual ~StoredOutput() = default;  // abandons what was not committed
  virtual DuckDbFeed& rows() = 0;
  // As those of a CaseWriter.
  virtual void complete() = 0;
  virtual void commit() = 0;
};

// One per variable, of its name and type.
std::vector<DuckDbColumn> storedColumnsOf(const Dictionary& dictionary);

// Writes cases of the dictionary into the output, whose columns are storedColumnsOf() it. The losses are what of the
// dictionary is not written. The path is for messages.
std::unique_ptr<CaseWriter> storedCaseWriter(std::unique_ptr<StoredOutput> output, const std::string& path,
                                             const Dictionary& dictionary, std::vector<std::string> losses);

}  // namespace workbench::data
