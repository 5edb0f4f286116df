#include "workbench/app/results_output.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string_view>

#include "workbench/app/verdict.h"
#include "workbench/output/terminal_writer.h"
#include "workbench/runtime/temporary_files.h"

namespace workbench::app {

namespace {

using output::Command;
using output::Document;
using output::OutputFormat;

// Of a file or a pipe that nobody told the width of.
constexpr int ordinaryWidth = 120;

int terminalWidth() {
  if (const char* columns = std::getenv("COLUMNS")) {
    const std::string_view text(columns);
    int width = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), width);
    if (error == std::errc() && end == text.data() + text.size() && width > 0) return width;
  }
  winsize window{};
  if (isatty(STDOUT_FILENO) != 0 && ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_col > 0) {
    return window.ws_col;
  }
  return ordinaryWidth;
}

// At a terminal that can show it, unless the environment asks for none.
bool showsColor(const OutputChoice& choice, int descriptor) {
  if (choice.color != Appearance::automatic) return choice.color == Appearance::always;
  const char* noColor = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  const bool isUnwanted = noColor != nullptr && *noColor != '\0';
  const bool isDumb = terminal != nullptr && std::string_view(terminal) == "dumb";
  return isatty(descriptor) != 0 && !isUnwanted && !isDumb;
}

std::string knownFormats() {
  std::string names;
  for (const OutputFormat& format : output::outputFormats()) {
    names += fmt::format("{}{}", names.empty() ? "" : ", ", format.name);
  }
  return names;
}

Outcome<const OutputFormat*> formatOf(const OutputChoice& choice) {
  if (!choice.format.empty()) {
    if (const OutputFormat* named = output::findOutputFormat(choice.format)) return named;
    return Problem{text::sentence("There is no output format ^1.", {choice.format}), "--format",
                   text::sentence("Known formats: ^1.", {knownFormats()})};
  }
  if (choice.file) {
    if (const OutputFormat* ofFile = output::outputFormatOfFile(*choice.file)) return ofFile;
  }
  return &output::outputFormats().front();
}

void removeTables(Document& document, const std::function<bool(const output::Table&)>& unwanted) {
  for (const auto& command : document.commands) {
    auto& items = command->items;
    items.erase(std::remove_if(items.begin(), items.end(),
                               [&](const output::Item& item) {
                                 const auto* table = std::get_if<std::unique_ptr<output::Table>>(&item);
                                 return table != nullptr && unwanted(**table);
                               }),
                items.end());
  }
}

// Beside its place until all of it is written.
Outcome<Done> writeFile(const std::string& path, const std::function<void(std::ostream&)>& write) {
  const std::string temporary = fmt::format("{}.{}.tmp", path, getpid());
  std::ofstream file;
  {
    const auto hold = temporaryFiles().hold();
    file.open(temporary, std::ios::binary | std::ios::trunc);
    temporaryFiles().add(temporary);
  }
  write(file);
  file.close();
  std::error_code error;
  if (file) std::filesystem::rename(temporary, path, error);
  std::error_code ignored;
  if (!file || error) std::filesystem::remove(temporary, ignored);
  temporaryFiles().forget(temporary);
  if (file && !error) return Done{};
  return Problem{text::sentence("The results cannot be written."), path,
                 text::sentence("Name a file in a folder that you can write to, with room for it.")};
}

}  // namespace

ResultsOutput::ResultsOutput(const OutputChoice& choice, const OutputFormat& format, const text::Wording& wording)
    : choice_(choice), format_(format), wording_(wording) {}

Outcome<std::unique_ptr<ResultsOutput>> ResultsOutput::open(const OutputChoice& choice, const text::Wording& wording) {
  const auto format = formatOf(choice);
  if (!format) return format.problem();
  return std::unique_ptr<ResultsOutput>(new ResultsOutput(choice, **format, wording));
}

void ResultsOutput::writeDiagnostics(const Document& document) const {
  output::TextOptions options{.wording = wording_, .width = ordinaryWidth};
  options.color = showsColor(choice_, STDERR_FILENO);
  options.full = choice_.full;
  for (const auto& command : document.commands) {
    if (!choice_.quiet || command->outcome != Command::Outcome::completed) {
      output::writeDiagnostics(std::cerr, *command, options);
    }
  }
}

Outcome<Done> ResultsOutput::write(Document& document) const {
  if (choice_.noCaseTable) removeTables(document, isCaseTable);
  if (choice_.onlyTable) {
    removeTables(document, [&](const output::Table& table) { return tableKey(table) != *choice_.onlyTable; });
  }
  const bool toFile = choice_.file.has_value();
  if (!toFile && choice_.quiet) return Done{};
  output::TextOptions options{.wording = wording_, .width = toFile ? ordinaryWidth : terminalWidth()};
  options.color = toFile ? choice_.color == Appearance::always : showsColor(choice_, STDOUT_FILENO);
  options.full = choice_.full;
  const auto write = [&](std::ostream& out) { format_.write(out, document, options); };
  if (toFile) return writeFile(*choice_.file, write);
  write(std::cout);
  std::cout.flush();
  if (std::cout) return Done{};
  return Problem{text::sentence("The results cannot be written."), "", ""};
}

}  // namespace workbench::app
