// ByteSource: the bytes of a data file from the first to the last, unpacked.
#pragma once

#include <cstddef>
#include <memory>

#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/input_file.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class ByteSource {
 public:
  virtual ~ByteSource() = default;

  // Stores the next bytes, at most `room`; 0 of them at the end only. The problem of a file that cannot be read or
  // unpacked names no file. Requires: room > 0.
  virtual Outcome<std::size_t> read(char* into, std::size_t room) = 0;
};

// The file outlives the source, which reads it from its start.
std::unique_ptr<ByteSource> openByteSource(const InputFile& file, Packing packing);

}  // namespace workbench::data
