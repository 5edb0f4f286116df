#include "workbench/language/source_cursor.h"

#include "workbench/text/utf8.h"

namespace workbench::language {

std::int32_t SourceCursor::following() const {
  SourceCursor next = *this;
  next.advance();
  return next.character();
}

void SourceCursor::advance() {
  if (atEnd()) return;
  const bool endsLine = character_ == '\n' || (character_ == '\r' && !at("\r\n"));
  if (endsLine) {
    ++line_;
    column_ = 1;
  } else {
    ++column_;
  }
  offset_ += bytes_;
  read();
}

void SourceCursor::read() {
  if (offset_ >= text_.size()) {
    character_ = endOfText;
    bytes_ = 0;
    return;
  }
  const text::Character here = text::characterAt(text_, offset_);
  character_ = here.codePoint < 0 ? notUtf8 : here.codePoint;
  bytes_ = here.bytes;
}

}  // namespace workbench::language
