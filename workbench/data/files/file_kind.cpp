#include "workbench/data/files/file_kind.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <string>

#include "workbench/data/files/name_ending.h"
#include "workbench/data/files/protected_name.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr auto fileKinds = std::to_array<FileKind>({
    {".csv", ',', Packing::none},
    {".tsv", '\t', Packing::none},
    {".csv.gz", ',', Packing::gzip},
    {".tsv.gz", '\t', Packing::gzip},
    {".csv.zst", ',', Packing::zstd},
    {".tsv.zst", '\t', Packing::zstd},
    {".jsonl", ',', Packing::none, TextForm::jsonLines},
    {".ndjson", ',', Packing::none, TextForm::jsonLines},
    {".jsonl.gz", ',', Packing::gzip, TextForm::jsonLines},
    {".ndjson.gz", ',', Packing::gzip, TextForm::jsonLines},
    {".jsonl.zst", ',', Packing::zstd, TextForm::jsonLines},
    {".ndjson.zst", ',', Packing::zstd, TextForm::jsonLines},
});

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
  for (const FileKind& kind : fileKinds) {
    if (hasEnding(plainName(path), kind.ending)) return kind;
  }
  return Problem{text::sentence("The ending of the name is none of a data file."), std::string(path),
                 text::sentence("Use one of these: ^1.", {fmt::format("{}", fmt::join(fileEndings(), ", "))})};
}

std::span<const std::string_view> fileEndings() {
  static constexpr auto endings = [] {
    std::array<std::string_view, fileKinds.size()> all;
    std::transform(fileKinds.begin(), fileKinds.end(), all.begin(), [](const FileKind& kind) { return kind.ending; });
    return all;
  }();
  return endings;
}

bool isParquetName(std::string_view path) { return hasEnding(plainName(path), ".parquet"); }

}  // namespace workbench::data
