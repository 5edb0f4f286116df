#include "workbench/data/files/packed_text_file.h"

#include <utility>

#include "host/messages.h"

namespace workbench::data {

void writePacked(Packer& packer, std::string_view text, TextPart part, OutputFile& file) {
  packer.take(text, part);
  for (;;) {
    Outcome<std::string_view> packed = packer.next();
    if (!packed) throw ErrorText(Problem{packed.problem().what, file.path(), ""}.text());
    if (packed->empty()) return;
    file.write(*packed);
  }
}

Outcome<std::unique_ptr<PackedTextFile>> PackedTextFile::create(const std::string& path, Packing packing,
                                                                const Secret& password) {
  Outcome<std::unique_ptr<OutputFile>> file = OutputFile::create(path, password);
  if (!file) return file.problem();
  return std::unique_ptr<PackedTextFile>(new PackedTextFile(std::move(*file), packing));
}

PackedTextFile::PackedTextFile(std::unique_ptr<OutputFile> file, Packing packing)
    : file_(std::move(file)), packer_(packing == Packing::none ? nullptr : makePacker(packing)) {}

void PackedTextFile::complete() {
  writeOut(TextPart::last);
  file_->complete();
}

void PackedTextFile::writeOut(TextPart part) {
  if (packer_ == nullptr) {
    file_->write(text_);
  } else {
    writePacked(*packer_, text_, part, *file_);
  }
  text_.clear();
}

}  // namespace workbench::data
