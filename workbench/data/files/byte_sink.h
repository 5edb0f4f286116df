// ByteSink: bytes on their way into a new file, packed as its name says.
//
// They stand in a private file beside the target until commit. Invariant: nothing of this object is left on disk after
// its destruction unless it was committed.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "workbench/data/files/file_kind.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class Packer;

class ByteSink {
 public:
  static Outcome<std::unique_ptr<ByteSink>> create(const std::string& path, Packing packing);
  ~ByteSink();
  ByteSink(const ByteSink&) = delete;
  ByteSink& operator=(const ByteSink&) = delete;

  // All three throw ErrorText.
  void write(std::string_view bytes);
  void complete();  // nothing can be written afterwards; the bytes are on the disk
  void commit();    // requires: complete() was called

 private:
  ByteSink(std::string path, std::string privatePath, int descriptor, Packing packing);
  void writeToFile(std::string_view bytes);
  [[noreturn]] void fail(int error) const;

  std::string path_;
  std::string privatePath_;  // empty when there is no private file any more
  int descriptor_;
  std::unique_ptr<Packer> packer_;
};

}  // namespace workbench::data
