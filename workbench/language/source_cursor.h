// SourceCursor: a place in the text of a job, moving forward character by character.
//
// A value: a copy looks ahead. Lines end with LF, CR LF or CR; lines and columns count from 1, columns count
// characters. A byte that is not UTF-8 counts as one character.
// Requires: the text outlives the cursor.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace workbench::language {

class SourceCursor {
 public:
  static constexpr std::int32_t endOfText = -2;
  static constexpr std::int32_t notUtf8 = -1;

  explicit SourceCursor(std::string_view text) : text_(text) { read(); }

  // The character here, notUtf8, or endOfText.
  std::int32_t character() const { return character_; }
  bool atEnd() const { return character_ == endOfText; }
  bool atLineEnd() const { return character_ == '\n' || character_ == '\r' || atEnd(); }
  bool at(std::string_view characters) const { return text_.substr(offset_).starts_with(characters); }
  // The character behind this one.
  std::int32_t following() const;
  void advance();

  std::size_t offset() const { return offset_; }
  std::int32_t line() const { return line_; }
  std::int32_t column() const { return column_; }
  // What lies between another place, before this one, and this one.
  std::string_view textSince(const SourceCursor& start) const {
    return text_.substr(start.offset_, offset_ - start.offset_);
  }

 private:
  void read();

  std::string_view text_;
  std::size_t offset_ = 0;
  std::size_t bytes_ = 0;  // of the character here
  std::int32_t character_ = endOfText;
  std::int32_t line_ = 1;
  std::int32_t column_ = 1;
};

}  // namespace workbench::language
