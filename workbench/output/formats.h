// The formats in which results are written: one row per format, by its name and the endings of its files.
#pragma once

#include <iosfwd>
#include <span>
#include <string_view>

#include "workbench/output/document.h"
#include "workbench/output/terminal_writer.h"
#include "workbench/runtime/outcome.h"

namespace workbench::output {

struct OutputFormat {
  std::string_view name;                          // as the command line has it
  std::span<const std::string_view> fileEndings;  // with their point
  bool isBinary = false;                          // no text, so that a terminal cannot show it
  bool holdsOneTable = false;                     // which has to be named where there are several
  // A problem is what the format cannot do; a stream that fails tells by itself.
  Outcome<Done> (*write)(std::ostream& out, const Document& document, const TextOptions& options) = nullptr;
};

// All of them; the first is the default.
std::span<const OutputFormat> outputFormats();

// The format of that name, or the one that files of that name are in; null when there is none.
const OutputFormat* findOutputFormat(std::string_view name);
const OutputFormat* outputFormatOfFile(std::string_view path);

}  // namespace workbench::output
