// MemoryFile: a file that is nowhere but in memory and has no name, for content that must not lie on a disk.
//
// It goes when this object and all who opened it have gone. The system may move its pages to swap space like any other
// memory.
#pragma once

#include <string>
#include <string_view>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

class MemoryFile {
 public:
  // The problems of these name no file.
  static Outcome<MemoryFile> create();
  MemoryFile(MemoryFile&& other) noexcept;
  MemoryFile& operator=(MemoryFile&&) = delete;
  ~MemoryFile();

  int descriptor() const { return descriptor_; }
  // A name under which this process can open it once more. Valid as long as this object.
  std::string descriptorPath() const;

  Outcome<Done> write(std::string_view bytes);
  // Nobody can change the content any more.
  Outcome<Done> seal();

 private:
  explicit MemoryFile(int descriptor) : descriptor_(descriptor) {}
  int descriptor_;
};

}  // namespace workbench::data
