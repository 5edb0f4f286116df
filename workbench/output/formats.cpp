#include "workbench/output/formats.h"

#include <algorithm>
#include <array>

#include "workbench/output/html_writer.h"
#include "workbench/output/json_writer.h"

namespace workbench::output {
namespace {

constexpr std::array<std::string_view, 1> textEndings{".txt"};
constexpr std::array<std::string_view, 1> jsonEndings{".json"};
constexpr std::array<std::string_view, 2> htmlEndings{".html", ".htm"};

void writeJsonAs(std::ostream& out, const Document& document, const TextOptions& options) {
  writeJson(out, document, options.wording);
}

constexpr auto formatRows = std::to_array<OutputFormat>({
    {"text", textEndings, true, &writeText},
    {"json", jsonEndings, false, &writeJsonAs},
    {"html", htmlEndings, true, &writeHtmlReport},
});

const OutputFormat* found(auto isWanted) {
  const auto row = std::find_if(formatRows.begin(), formatRows.end(), isWanted);
  return row != formatRows.end() ? &*row : nullptr;
}

}  // namespace

std::span<const OutputFormat> outputFormats() { return formatRows; }

const OutputFormat* findOutputFormat(std::string_view name) {
  return found([&](const OutputFormat& row) { return row.name == name; });
}

const OutputFormat* outputFormatOfFile(std::string_view path) {
  return found([&](const OutputFormat& row) {
    return std::any_of(row.fileEndings.begin(), row.fileEndings.end(),
                       [&](std::string_view ending) { return path.ends_with(ending); });
  });
}

}  // namespace workbench::output
