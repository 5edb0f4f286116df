// OutputFile: a new file on its way to its place.
//
// It stands beside its place under a name of its own until commit, and gets the permissions of the file that it
// replaces; a symbolic link stays one, and what it points to is replaced. What is no file but a stream (a pipe, a
// terminal, /dev/stdout, /dev/fd/3) gets the bytes as they come, and commit has nothing left to do. Its content is
// written through write(), or by whoever opens descriptorPath(). With a password it becomes a protected file: the
// content gathers in memory and is encrypted on its way to the disk when it is complete. Invariant: nothing of this
// object is left on disk after its destruction unless it was committed.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/files/memory_file.h"
#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

class OutputFile {
 public:
  // A pipe with a name is waited for until somebody reads from it.
  static Outcome<std::unique_ptr<OutputFile>> create(const std::string& path, const Secret& password = {});
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  const std::string& path() const { return path_; }  // as written
  // Whether others may open it by its descriptorPath(): a stream would wait for a reader once more, or begin anew.
  bool canBeOpened() const { return plain_ || !isStream(); }
  // A name under which the file can be opened for writing. Valid until complete().
  std::string descriptorPath() const;
  // For libraries that make their files themselves: the name of the private file, which is gone until they do. Files
  // that they keep beside it, whose names have these endings behind its own, go with it. What stands there when this
  // is completed is the content. Requires: there is no password; nothing was written.
  const std::string& handOver(std::span<const std::string_view> endingsBeside);

  // All of these throw ErrorText.
  void write(std::string_view bytes);
  // Does so when nothing more can be written, and finds out by writing: for files that are to be abandoned.
  void checkRoom();
  void complete();  // the content is on the disk; nothing can be written afterwards
  void commit();    // requires: complete() was called

 private:
  static Outcome<std::unique_ptr<OutputFile>> createFile(const std::string& path);
  static Outcome<std::unique_ptr<OutputFile>> openStream(const std::string& path);
  OutputFile(std::string path, std::string target, std::string privatePath, int descriptor);
  bool isStream() const { return target_.empty(); }
  void writeTo(int descriptor, std::string_view bytes);
  void encrypt();
  void takeBack();
  [[noreturn]] void fail(int error) const;

  std::string path_;
  std::string target_;       // of a stream empty
  std::string privatePath_;  // empty when there is no private file any more; of a stream always
  int descriptor_;
  std::vector<std::string> beside_;  // files of a library
  Secret password_;
  std::optional<MemoryFile> plain_;  // of a protected file, until it is complete
};

}  // namespace workbench::data
