#include "workbench/app/results_output.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <string_view>

#include "host/messages.h"
#include "workbench/app/terminal_width.h"
#include "workbench/app/verdict.h"
#include "workbench/data/files/output_stream.h"
#include "workbench/data/files/path_target.h"
#include "workbench/data/working/file_in_use.h"
#include "workbench/output/terminal_writer.h"

namespace workbench::app {

namespace {

using output::Command;
using output::Document;
using output::OutputFormat;

// Of a file or a pipe that nobody told the width of.
constexpr int ordinaryWidth = 120;

int widthOf(int descriptor) { return terminalWidth(descriptor).value_or(ordinaryWidth); }

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

// What is drawn from all tables of a command has no place beside a single one.
void removeAnswers(Document& document) {
  for (const auto& command : document.commands) {
    command->answer.reset();
    command->charts.clear();
  }
}

// Never over what was read, nor over what else the run has written.
Outcome<Done> checkIsFree(const std::string& path) {
  if (data::isStream(path)) return Done{};
  const data::FilePlace place = data::FilePlace::of(path);
  const std::string remedy = text::sentence("Choose another name.");
  if (data::wasReadFrom(place)) {
    return Problem{text::sentence("The results would replace a file that data came from."), path, remedy};
  }
  if (data::wasWritten(place)) {
    return Problem{text::sentence("The results would replace data that this run has saved."), path, remedy};
  }
  return Done{};
}

Problem unwritable(const std::string& path) {
  return {text::sentence("The results cannot be written."), path,
          text::sentence("Name a file in a folder that you can write to, with room for it.")};
}

// Whole, or not at all; to a stream as they come.
Outcome<Done> writeFile(const std::string& path, const std::function<Outcome<Done>(std::ostream&)>& write) {
  if (auto checked = checkIsFree(path); !checked) return checked;
  const auto file = data::OutputFile::create(path);
  if (!file) return unwritable(path);
  data::OutputStream stream(**file);
  if (auto written = write(stream); !written) return written;
  stream.flush();
  if (!stream) return unwritable(path);
  try {
    (*file)->complete();
    (*file)->commit();
  } catch (const ErrorText&) {
    return unwritable(path);
  }
  return Done{};
}

// The keys of all tables, each once.
std::vector<std::string> tableKeys(const Document& document) {
  std::vector<std::string> keys;
  for (const auto& command : document.commands) {
    for (const output::Item& item : command->items) {
      const auto* table = std::get_if<std::unique_ptr<output::Table>>(&item);
      if (table == nullptr || (*table)->destroyed) continue;
      std::string key(tableKey(**table));
      if (std::find(keys.begin(), keys.end(), key) == keys.end()) keys.push_back(std::move(key));
    }
  }
  return keys;
}

}  // namespace

ResultsOutput::ResultsOutput(const OutputChoice& choice, const OutputFormat& format, const text::Wording& wording,
                             const output::MomentOfResults& moment)
    : choice_(choice), format_(format), wording_(wording), moment_(moment) {}

Outcome<std::unique_ptr<ResultsOutput>> ResultsOutput::open(const OutputChoice& choice, const text::Wording& wording) {
  const auto format = formatOf(choice);
  if (!format) return format.problem();
  const bool isForTerminal = !choice.file && !choice.quiet && isatty(STDOUT_FILENO) != 0;
  if ((*format)->isBinary && isForTerminal) {
    return Problem{text::sentence("A workbook cannot be shown on a terminal."), "--format",
                   text::sentence("Name a file by -o, or send the output to a file or another program.")};
  }
  const auto moment = output::momentOfResults();
  if (!moment) return moment.problem();
  if (choice.file && !data::checkOutputFile(*choice.file)) return unwritable(*choice.file);
  return std::unique_ptr<ResultsOutput>(new ResultsOutput(choice, **format, wording, *moment));
}

void ResultsOutput::writeDiagnostics(const Document& document) const {
  const output::TextOptions options{.wording = wording_,
                                    .width = widthOf(STDERR_FILENO),
                                    .color = showsColor(choice_, STDERR_FILENO),
                                    .full = choice_.full};
  if (choice_.onlyTable && !choice_.quiet) warnOfMissingTable(document);
  for (const auto& command : document.commands) {
    if (!choice_.quiet || command->outcome != Command::Outcome::completed) {
      output::writeDiagnostics(std::cerr, *command, options);
    }
  }
}

// Not an error: equal datasets have no table of differing cases.
void ResultsOutput::warnOfMissingTable(const Document& document) const {
  const std::vector<std::string> keys = tableKeys(document);
  if (keys.empty() || std::find(keys.begin(), keys.end(), *choice_.onlyTable) != keys.end()) return;
  const std::string missing = text::sentence("There is no table ^1 among the results.", {*choice_.onlyTable});
  const std::string there = text::sentence("There are: ^1.", {fmt::format("{}", fmt::join(keys, ", "))});
  output::writeMessage(std::cerr, output::hostMessage(BpErrorLevel::warning, missing + ' ' + there),
                       {.wording = wording_, .width = widthOf(STDERR_FILENO)});
}

Outcome<Done> ResultsOutput::write(Document& document) const {
  if (choice_.noCaseTable) removeTables(document, isCaseTable);
  if (choice_.onlyTable && !format_.holdsOneTable) {
    removeTables(document, [&](const output::Table& table) { return tableKey(table) != *choice_.onlyTable; });
    removeAnswers(document);
  }
  const bool toFile = choice_.file.has_value();
  if (!toFile && choice_.quiet) return Done{};
  output::TextOptions options{
      .wording = wording_,
      .width = toFile ? ordinaryWidth : widthOf(STDOUT_FILENO),
      .color = toFile ? choice_.color == Appearance::always : showsColor(choice_, STDOUT_FILENO),
      .full = choice_.full,
      .moment = moment_};
  if (format_.holdsOneTable) options.onlyTable = choice_.onlyTable;
  const auto write = [&](std::ostream& out) { return format_.write(out, document, options); };
  std::cout.flush();  // what was shown before, the file may be standard output by another name
  if (toFile) return writeFile(*choice_.file, write);
  if (const auto written = write(std::cout); !written) return written;
  std::cout.flush();
  if (std::cout) return Done{};
  return Problem{text::sentence("The results cannot be written."), "", ""};
}

}  // namespace workbench::app
