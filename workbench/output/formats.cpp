#include "workbench/output/formats.h"

#include <algorithm>
#include <array>

#include "workbench/output/csv_writer.h"
#include "workbench/output/html_writer.h"
#include "workbench/output/json_writer.h"
#include "workbench/output/markdown_writer.h"
#include "workbench/output/xlsx_writer.h"

namespace workbench::output {
namespace {

constexpr std::array<std::string_view, 1> textEndings{".txt"};
constexpr std::array<std::string_view, 1> jsonEndings{".json"};
constexpr std::array<std::string_view, 2> htmlEndings{".html", ".htm"};
constexpr std::array<std::string_view, 2> markdownEndings{".md", ".markdown"};
constexpr std::array<std::string_view, 1> csvEndings{".csv"};
constexpr std::array<std::string_view, 1> xlsxEndings{".xlsx"};

void writeJsonAs(std::ostream& out, const Document& document, const TextOptions& options) {
  writeJson(out, document, options.wording);
}

// A writer that can always do what is asked of it.
template <auto write>
Outcome<Done> alwaysDone(std::ostream& out, const Document& document, const TextOptions& options) {
  write(out, document, options);
  return Done{};
}

constexpr auto formatRows = std::to_array<OutputFormat>({
    {.name = "text", .fileEndings = textEndings, .write = &alwaysDone<&writeText>},
    {.name = "json", .fileEndings = jsonEndings, .write = &alwaysDone<&writeJsonAs>},
    {.name = "html", .fileEndings = htmlEndings, .write = &alwaysDone<&writeHtmlReport>},
    {.name = "markdown", .fileEndings = markdownEndings, .write = &alwaysDone<&writeMarkdown>},
    {.name = "csv", .fileEndings = csvEndings, .holdsOneTable = true, .write = &writeCsv},
    {.name = "xlsx", .fileEndings = xlsxEndings, .isBinary = true, .write = &writeXlsx},
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
