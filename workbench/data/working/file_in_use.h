// FileInUse: the files that a dataset came from, for as long as that dataset is there. No output may take their place.
#pragma once

#include <string>
#include <vector>

#include "workbench/data/working/file_place.h"

namespace workbench::data {

class FileInUse {
 public:
  explicit FileInUse(const std::vector<std::string>& paths);
  FileInUse(const FileInUse&) = delete;
  FileInUse& operator=(const FileInUse&) = delete;
  ~FileInUse();

  bool isAt(const FilePlace& place) const;

  // Whether any dataset came from the file at this place. One of them may be left out of account.
  static bool anyIsAt(const FilePlace& place, const FileInUse* except = nullptr);

 private:
  std::vector<FilePlace> places_;
};

// What became of files since the program was started, whether they are in use any more or not.
void noteWritten(const FilePlace& place);
bool wasReadFrom(const FilePlace& place);
bool wasWritten(const FilePlace& place);

}  // namespace workbench::data
