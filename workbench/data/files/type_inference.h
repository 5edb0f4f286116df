// Type inference: from what the cells of a column are to the variable that holds them all, exactly.
//
// A column is a number, a date, a time or a date with a time when all its filled cells are, in both files when it is
// looked at together with a partner; a number that is nowhere filled has only missing values; everything else is text,
// as wide as the longest value. Print formats are wide enough for every value as it was written.
#pragma once

#include <string>
#include <vector>

#include "workbench/data/dictionary.h"
#include "workbench/data/files/file_evidence.h"

namespace workbench::data {

// A scanned file under the name by which users know it.
struct ScannedFile {
  std::string path;
  std::vector<std::string> names;  // one per column
  const FileEvidence& evidence;
};

struct InferredTypes {
  std::vector<Variable> variables;    // one per column of the file
  std::vector<std::string> warnings;  // columns that are text because of a few cells, or of the partner's cells
};

// The partner may be null. Its columns are found by name, without regard to case.
InferredTypes inferTypes(const ScannedFile& file, const ScannedFile* partner);

}  // namespace workbench::data
