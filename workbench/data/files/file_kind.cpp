#include "workbench/data/files/file_kind.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <string>

#include "workbench/data/files/protected_name.h"

namespace workbench::data {
namespace {

constexpr auto fileKinds = std::to_array<FileKind>({
    {".csv", ',', Packing::none},
    {".tsv", '\t', Packing::none},
    {".csv.gz", ',', Packing::gzip},
    {".tsv.gz", '\t', Packing::gzip},
    {".csv.zst", ',', Packing::zstd},
    {".tsv.zst", '\t', Packing::zstd},
});

char lowerAscii(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A')) : character;
}

}  // namespace

std::string_view nameOf(Packing packing) {
  switch (packing) {
    case Packing::gzip:
      return "gzip";
    case Packing::zstd:
      return "zstd";
    case Packing::none:
      break;
  }
  return "none";
}

Outcome<FileKind> fileKind(std::string_view path) {
  std::string lower(plainName(path));
  std::transform(lower.begin(), lower.end(), lower.begin(), lowerAscii);
  for (const FileKind& kind : fileKinds) {
    if (lower.ends_with(kind.ending)) return kind;
  }
  return Problem{"The ending of the name is none of a data file.", std::string(path),
                 fmt::format("Use one of these: {}.", fmt::join(fileEndings(), ", "))};
}

std::vector<std::string_view> fileEndings() {
  std::vector<std::string_view> endings;
  for (const FileKind& kind : fileKinds) endings.push_back(kind.ending);
  return endings;
}

}  // namespace workbench::data
