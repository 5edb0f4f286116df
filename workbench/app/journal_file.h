// JournalFile: where the journal of a run is written, line by line as calls are made, so that a run that ends badly can
// be looked into. While one lives the journal is on.
#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "workbench/data/files/output_file.h"
#include "workbench/runtime/outcome.h"

namespace workbench::app {

class JournalFile {
 public:
  // Begins it anew, or goes on where a stream has come to (standard output may hold results as well).
  static Outcome<std::unique_ptr<JournalFile>> begin(const std::string& path);
  JournalFile(const JournalFile&) = delete;
  JournalFile& operator=(const JournalFile&) = delete;
  ~JournalFile();

  // Turns the journal off. A problem when not all of it could be written.
  Outcome<Done> end();

 private:
  explicit JournalFile(std::string path) : path_(std::move(path)) {}

  std::string path_;
  std::unique_ptr<data::OutputFile> stream_;  // where it is no file
  std::unique_ptr<std::ostream> out_;
};

}  // namespace workbench::app
