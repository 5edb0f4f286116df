// Dataset resolution: refuses names that collide, and opens the comparison dataset.
//
// Each function reports its own refusal and returns false; nothing has been compared then.
#pragma once

#include <memory>
#include <string>

#include "host/data.h"
#include "host/datasets.h"
#include "syntax/compare_options.h"

namespace compdatas {

// The two outputs, and the names that the checks hold against each other; each is empty until set. Dataset names are
// compared without regard to case, the paths of data files with regard to it.
struct RunNames {
  std::string comparison;  // set only when the comparison is an open dataset
  std::string active;      // the active dataset's handle, set only when the comparison is one too
  std::string matched;
  std::string mismatched;
};

// False when the comparison dataset is the active one, or an output cannot be written where it should be or is named
// like another dataset of the run. Initialises the output specs that were asked for.
bool checkNames(const CompareOptions& options, UserCaseFileSpec& matchedSpec, UserCaseFileSpec& mismatchedSpec,
                RunNames& names);

// The open dataset of that name when the comparison is one; an empty reference otherwise.
SvrDMItemPtr findManagedDataset(const UserCaseFileSpec& comparison, const std::string& comparisonName);

// The comparison's data, in one of two forms, or in none.
struct ComparisonData {
  std::unique_ptr<SvrDMInputDataSource> view;   // of an open dataset
  std::unique_ptr<VRIX_DataSource> fileSource;  // of a data file
  std::string displayText;                      // the handle, or the path

  VRIX_DataSource* source() const;
  // The file's source first, then the view.
  void close();
  // Gives both up without closing them.
  void leaveOpen();
};

// False when a data file cannot be opened.
bool openComparison(const CompareOptions& options, const SvrDMItemPtr& managed, ComparisonData& data);

}  // namespace compdatas
