// FileKind: what the ending of a data file's name says about its content.
#pragma once

#include <span>
#include <string_view>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

enum class Packing { none, gzip, zstd };

// As DuckDB calls it.
std::string_view nameOf(Packing packing);

enum class TextForm {
  delimited,  // records of fields, the first one naming the columns
  jsonLines,  // a JSON object per line, whose keys name the columns
};

struct FileKind {
  std::string_view ending;  // in lower case; names may bear it in any
  char delimiter;           // between the fields of a line; of no meaning in JSON lines
  Packing packing;
  TextForm form = TextForm::delimited;
};

// Of a protected file what is inside. Fails for an ending that is not known, naming those that are.
Outcome<FileKind> fileKind(std::string_view path);
// All endings that are known.
std::span<const std::string_view> fileEndings();

// Whether the name is that of a Parquet file, which is no text and is read elsewhere; of a protected file what is
// inside.
bool isParquetName(std::string_view path);

}  // namespace workbench::data
