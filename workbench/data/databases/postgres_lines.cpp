#include "workbench/data/databases/postgres_lines.h"

#include <algorithm>

namespace workbench::data {
namespace {

constexpr std::string_view nullText = "\\N";

// What stands behind a backslash.
char meantBy(char letter) {
  switch (letter) {
    case 'b':
      return '\b';
    case 'f':
      return '\f';
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    case 'v':
      return '\v';
    default:
      return letter;
  }
}

std::string plainText(std::string_view cell) {
  std::string plain;
  plain.reserve(cell.size());
  for (std::size_t at = 0; at < cell.size(); ++at) {
    const bool isEscaped = cell[at] == '\\' && at + 1 < cell.size();
    plain += isEscaped ? meantBy(cell[++at]) : cell[at];
  }
  return plain;
}

}  // namespace

std::size_t addCopiedLine(std::string_view line, std::size_t columns, std::uint64_t number, CellBatch& batch) {
  if (line.ends_with('\n')) line.remove_suffix(1);
  std::size_t cells = 0;
  for (bool isLast = false; !isLast && cells < columns; ++cells) {
    const std::size_t end = std::min(line.find('\t'), line.size());
    const std::string_view cell = line.substr(0, end);
    isLast = end == line.size();
    line.remove_prefix(isLast ? end : end + 1);
    if (cell == nullText) {
      batch.add("", true, number);
    } else if (cell.find('\\') == std::string_view::npos) {
      batch.add(cell, false, number);
    } else {
      batch.add(plainText(cell), false, number);
    }
  }
  return cells;
}

}  // namespace workbench::data
