// DatabaseOutput: a database file that gets a table, on its way to its place.
//
// The library that writes it works on a private file beside its place: a copy of the database that stands there, or a
// new one. What stands there stays as it is until commit, and is not replaced when it has changed since.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "workbench/data/files/input_file.h"
#include "workbench/data/files/output_file.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class DatabaseOutput {
 public:
  // The endings are those of files that the library keeps beside a database. One that holds anything is a problem: it
  // would be taken for a part of the file that is to stand there.
  static Outcome<std::unique_ptr<DatabaseOutput>> create(const std::string& file,
                                                         std::span<const std::string_view> endingsBeside);

  const std::string& file() const { return file_->path(); }  // as written
  // Where the library makes the database; nothing stands there yet.
  const std::string& privatePath() const { return *privatePath_; }
  // Whether a database stands at its place, a copy of which is to be made.
  bool isAdditional() const { return replaced_.has_value(); }

  // Both throw ErrorText.
  void complete() { file_->complete(); }  // requires: the library has closed the file
  void commit();

 private:
  DatabaseOutput(std::unique_ptr<OutputFile> file, std::span<const std::string_view> endingsBeside);

  std::unique_ptr<OutputFile> file_;
  const std::string* privatePath_ = nullptr;
  std::span<const std::string_view> endingsBeside_;
  std::optional<FileIdentity> replaced_;  // as it was when the copy was begun
};

}  // namespace workbench::data
