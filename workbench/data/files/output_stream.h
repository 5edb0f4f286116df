// OutputStream: an output file as a stream of the standard library. What cannot be written makes it bad.
#pragma once

#include <array>
#include <ostream>
#include <streambuf>

#include "workbench/data/files/output_file.h"

namespace workbench::data {

class OutputFileBuffer final : public std::streambuf {
 public:
  explicit OutputFileBuffer(OutputFile& file) : file_(file) { setp(bytes_.data(), bytes_.data() + bytes_.size()); }

 private:
  int_type overflow(int_type character) override {
    sync();
    if (!traits_type::eq_int_type(character, traits_type::eof())) sputc(traits_type::to_char_type(character));
    return traits_type::not_eof(character);
  }
  // Throws ErrorText, which a stream takes as its being bad.
  int sync() override {
    file_.write({pbase(), static_cast<std::size_t>(pptr() - pbase())});
    setp(bytes_.data(), bytes_.data() + bytes_.size());
    return 0;
  }

  OutputFile& file_;
  std::array<char, std::size_t{1} << 16> bytes_;
};

// To be flushed before the file is complete, which it outlives no more than its writes.
class OutputStream final : public std::ostream {
 public:
  explicit OutputStream(OutputFile& file) : std::ostream(nullptr), buffer_(file) { rdbuf(&buffer_); }

 private:
  OutputFileBuffer buffer_;
};

}  // namespace workbench::data
