// PackedTextFile: a text that is written into a new file part by part, packed where that is wanted.
//
// It stands in a private place until commit, as every OutputFile does.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "workbench/data/files/output_file.h"
#include "workbench/data/files/packer.h"
#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

// Writes what the packer makes of the part. Throws ErrorText.
void writePacked(Packer& packer, std::string_view text, TextPart part, OutputFile& file);

class PackedTextFile {
 public:
  static Outcome<std::unique_ptr<PackedTextFile>> create(const std::string& path, Packing packing,
                                                         const Secret& password);

  const std::string& path() const { return file_->path(); }  // as written

  // All throw ErrorText.
  void append(std::string_view text) {
    text_ += text;
    if (text_.size() >= bufferBytes) writeOut(TextPart::further);
  }
  void complete();
  void commit() { file_->commit(); }  // requires: complete() was called

 private:
  static constexpr std::size_t bufferBytes = std::size_t{1} << 18;

  PackedTextFile(std::unique_ptr<OutputFile> file, Packing packing);
  void writeOut(TextPart part);

  std::unique_ptr<OutputFile> file_;
  std::unique_ptr<Packer> packer_;  // null: the text is written as it is
  std::string text_;                // what is not written yet
};

}  // namespace workbench::data
