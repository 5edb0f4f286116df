// The names of a workbook's sheets: made of headings, as spreadsheets allow them.
//
// Invariant: a name has 1 to 31 UTF-16 units and none of the characters [ ] : * ? / \ and '; no two names are the same
// without regard to case, and none is one that spreadsheets keep for themselves.
#pragma once

#include <set>
#include <string>
#include <string_view>

namespace workbench::output {

class XlsxSheetNames {
 public:
  // `unnamed` stands for a heading of which nothing is left.
  explicit XlsxSheetNames(std::string unnamed) : unnamed_(std::move(unnamed)) {}

  // A new name; a heading that comes again is numbered: "Matched Summary (2)".
  std::string nameFor(std::string_view heading);

 private:
  bool take(const std::string& name);

  std::string unnamed_;
  std::set<std::string> taken_ = {"history"};
};

}  // namespace workbench::output
