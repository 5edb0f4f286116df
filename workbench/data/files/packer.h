// Packer: turns a text, part by part, into the bytes of a packed file.
//
// Invariant: the bytes depend on the text and on nothing else, neither on the time nor on a name.
#pragma once

#include <memory>
#include <string_view>

#include "workbench/data/files/file_kind.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

enum class TextPart { further, last };

class Packer {
 public:
  virtual ~Packer() = default;

  // Gives it a part of the text, which stays where it is until next() has no more bytes.
  // Requires: next() had none of the part before; no part follows the last one; a part has less than 4 GiB.
  virtual void take(std::string_view text, TextPart part) = 0;
  // Some packed bytes, valid until the next call. None: the part is used up. The problem names no file.
  virtual Outcome<std::string_view> next() = 0;
};

std::unique_ptr<Packer> makePacker(Packing packing);

}  // namespace workbench::data
