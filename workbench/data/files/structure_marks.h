// StructureMarks: where in a text the few bytes stand that may begin or end a cell, found many bytes at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbench::data {

// The bytes that are marked beside line feed, carriage return and NUL.
struct StructureBytes {
  char delimiter = ',';
  char quote = '"';  // the delimiter once more where there are no quotes
};

// So many bytes behind a text are read, whatever they are.
inline constexpr std::size_t readBehindMarks = 64;

class StructureMarks {
 public:
  // Marks another text. Requires: it is smaller than 4 GiB; readBehindMarks.
  void find(const char* text, std::size_t size, StructureBytes bytes);
  // The same on any machine; find() uses vector instructions where the machine has them.
  void findPlainly(const char* text, std::size_t size, StructureBytes bytes);

  // Of all marked bytes, ascending.
  const std::uint32_t* positions() const { return positions_.data(); }
  std::size_t count() const { return count_; }
  // Bytes before it are ASCII; the text's size when all are.
  std::size_t asciiUpTo() const { return asciiUpTo_; }

 private:
  template <class Mark>
  void findBy(Mark mark, const char* text, std::size_t size, StructureBytes bytes);

  std::vector<std::uint32_t> positions_;  // longer than what counts
  std::size_t count_ = 0;
  std::size_t asciiUpTo_ = 0;
};

}  // namespace workbench::data
