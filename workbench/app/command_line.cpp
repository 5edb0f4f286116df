#include "workbench/app/command_line.h"

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <string_view>
#include <tuple>
#include <utility>

#include "workbench/app/command_line_words.h"
#include "workbench/app/spoken_language.h"
#include "workbench/app/terminal_width.h"
#include "workbench/app/version.h"
#include "workbench/data/files/server_reference.h"

namespace workbench::app {

namespace {

// One of some words, each of which stands for a value of an enumeration. What else is given is refused by their list.
template <class Choice>
CLI::Validator oneOf(std::vector<std::pair<std::string, Choice>> choices) {
  const auto choose = [choices = std::move(choices)](std::string& word) {
    std::string all;
    for (const auto& [name, choice] : choices) {
      if (name == word) {
        word = std::to_string(static_cast<int>(choice));
        return std::string();
      }
      all += (all.empty() ? "" : ", ") + name;
    }
    return all;
  };
  return {choose, ""};
}

void addAppearance(CLI::App& command, const std::string& name, Appearance& appearance, const std::string& help) {
  const auto words = oneOf<Appearance>(
      {{"auto", Appearance::automatic}, {"always", Appearance::always}, {"never", Appearance::never}});
  command.add_option(name, appearance, help)->transform(words)->type_name("WHEN");
}

void addOutputOptions(CLI::App& command, OutputChoice& output) {
  command.add_option("--format", output.format, "How results are shown: ^1 (default), ^2");
  command.add_option("-o,--output", output.file, "Where results go (default: standard output)")->type_name("FILE");
  command.add_option("--lang", output.language, "Language of the output texts (default: from the environment)")
      ->type_name("TAG");
  command.add_option("--journal", output.journal, "Write every call that a procedure makes of the host to FILE")
      ->type_name("FILE");
  command.add_option("--table", output.onlyTable, "Show only the table of this key; csv holds one table")
      ->type_name("KEY");
  command.add_flag("-q,--quiet", output.quiet, "No results on standard output, no notes and warnings");
  command.add_flag("-v,--verbose", output.verbose, "Show the diagnostic lines of procedures");
  command.add_flag("--full", output.full, "Show long lists and texts whole in the text output");
  addAppearance(command, "--color", output.color, "Colour in the text output: auto (default), always, never");
  addAppearance(command, "--progress", output.progress,
                "A line on standard error that says how far the run has come: auto (default), always, never");
}

void addPasswordFile(CLI::App& command, const std::string& name, std::optional<std::string>& file,
                     const std::string& help) {
  command.add_option(name, file, help)->type_name("FILE");
}

void addCompare(CLI::App& program, CompareCommand& compare) {
  CLI::App& command = *program.add_subcommand("compare", "Compare two datasets");
  CompareRequest& request = compare.request;
  command.add_option("ACTIVE", request.active, "The dataset that is compared")->required();
  command.add_option("COMPARISON", request.comparison, "The dataset that it is held against")->required();
  command.add_option("--id", request.ids, "Case ID variables; without them cases are paired by position")
      ->delimiter(',')
      ->type_name("A,B");
  command.add_option("--variables", request.variables, "Variables to compare, also first TO last (default: ALL)")
      ->delimiter(',')
      ->type_name("A,B");
  command
      .add_option("--rename", compare.renamings, "Other names for variables of COMPARISON, before anything is paired")
      ->delimiter(',')
      ->type_name("OLD=NEW");
  command.add_option("--drop", request.dropped, "Variables of COMPARISON that are left out")
      ->delimiter(',')
      ->type_name("A,B");
  command
      .add_option(
          "--properties", request.properties,
          "Dictionary properties to compare: all, none, or some of width, label, valuelabels, missing, columns, "
          "align, measure, role, attributes (default: all when both datasets bring a dictionary, else none)")
      ->delimiter(',')
      ->type_name("P,Q");
  auto* flag = command.add_option("--flag", request.flagName, "Name of the flag variable (default: CasesCompare)")
                   ->type_name("NAME");
  command.add_flag("--no-flag", request.noFlag, "Make no flag variable")->excludes(flag);
  command.add_option("--save-active", request.saveActive, "Write the active dataset with its flag variable")
      ->type_name("FILE");
  command.add_option("--matched", request.matched, "Save the matched cases")->type_name("FILE");
  command.add_option("--mismatched", request.mismatched, "Save the mismatched cases")->type_name("FILE");
  command.add_option("--limit", request.limit, "Cases in the case table: 1 to 10000, or none (default: 100)")
      ->type_name("N");
  command.add_flag("--no-case-table", compare.output.noCaseTable, "Do not show the case table");
  const auto sortChoices = oneOf<SortChoice>(
      {{"auto", SortChoice::whenNeeded}, {"never", SortChoice::never}, {"always", SortChoice::always}});
  command
      .add_option("--sort", request.sort, "Bring the datasets into case ID order first: auto (default), never, always")
      ->transform(sortChoices)
      ->type_name("WHEN");
  command
      .add_option("--tolerance", request.tolerance,
                  "Relative difference below which numbers count as equal (default: 1e-12; 0: none)")
      ->type_name("R");
  command.add_option("--collation", request.collation, "Order of text case IDs: binary (default) or a locale");
  command.add_flag("--profile", request.profile,
                   "Also show by how much, how often and in which direction values differ");
  addPasswordFile(command, "--password-file", compare.passwordFiles.input,
                  "Password of the active dataset, in the first line of FILE (-: asked for on the terminal)");
  addPasswordFile(command, "--comparison-password-file", compare.passwordFiles.comparison,
                  "Password of the comparison dataset, in the first line of FILE (-: asked for on the terminal)");
  addPasswordFile(command, "--output-password-file", compare.passwordFiles.output,
                  "Password for the data files that are written, whose names end in .pgp, in the first line of FILE "
                  "(-: asked for on the terminal)");
  command.add_flag("--show-syntax", compare.showSyntax, "Print the job that is run first");
  addOutputOptions(command, compare.output);
}

void addRun(CLI::App& program, RunCommand& run) {
  CLI::App& command = *program.add_subcommand("run", "Run a job");
  command.add_option("JOB", run.job, "A job file, or - for standard input")->required();
  command.add_flag("--stop-on-error", run.stopOnError, "End the job at the first command that is refused or fails");
  addOutputOptions(command, run.output);
}

void addDescribe(CLI::App& program, DescribeCommand& describe) {
  CLI::App& command = *program.add_subcommand("describe", "Show a dataset's dictionary and number of cases");
  command.add_option("DATA", describe.data, "A data file")->required();
  addPasswordFile(command, "--password-file", describe.passwordFiles.input,
                  "Password of the data, in the first line of FILE (-: asked for on the terminal)");
  addOutputOptions(command, describe.output);
}

void addSort(CLI::App& program, SortCommand& sort) {
  CLI::App& command = *program.add_subcommand("sort", "Sort a dataset");
  command.add_option("IN", sort.input, "A data file")->required();
  command.add_option("OUT", sort.output, "Where the sorted dataset goes")->required();
  command.add_option("--by", sort.by, "The variables to sort by, ascending")->delimiter(',')->required();
  addPasswordFile(command, "--password-file", sort.passwordFiles.input,
                  "Password of IN, in the first line of FILE (-: asked for on the terminal)");
  addPasswordFile(
      command, "--output-password-file", sort.passwordFiles.output,
      "Password for OUT, whose name ends in .pgp, in the first line of FILE (-: asked for on the terminal)");
  addOutputOptions(command, sort.results);
}

void addConvert(CLI::App& program, ConvertCommand& convert) {
  CLI::App& command = *program.add_subcommand("convert", "Copy a dataset, with its dictionary, into another data file");
  command.add_option("IN", convert.input, "The data")->required();
  command.add_option("OUT", convert.output, "Where the copy goes; its name's ending says of what kind it is")
      ->required();
  addPasswordFile(command, "--password-file", convert.passwordFiles.input,
                  "Password of the data, in the first line of FILE (-: asked for on the terminal)");
  addPasswordFile(command, "--output-password-file", convert.passwordFiles.output,
                  "Password for the copy, in the first line of FILE (-: asked for on the terminal)");
  addOutputOptions(command, convert.results);
}

void addEncodePassword(CLI::App& program, EncodePasswordCommand& encode) {
  CLI::App& command = *program.add_subcommand(
      "encode-password", "Read a password (from the terminal or standard input) and print what ENCRYPTEDPW=YES takes");
  command.add_option("--lang", encode.language, "Language of the prompt (default: from the environment)")
      ->type_name("TAG");
}

// "none" is no property to compare; names are checked here, so that the job is never refused for one without a word.
Outcome<Done> settleProperties(std::vector<std::string>& properties) {
  static const std::vector<std::string> known = {"width", "label",   "valuelabels", "missing",   "columns",
                                                 "align", "measure", "role",        "attributes"};
  if (properties.size() == 1 && (properties.front() == "all" || properties.front() == "none")) {
    if (properties.front() == "none") properties.clear();
    return Done{};
  }
  for (const std::string& property : properties) {
    if (std::find(known.begin(), known.end(), property) != known.end()) continue;
    return Problem{text::sentence("There is no dictionary property \"^1\".", {property}), "--properties",
                   text::sentence("Write all, none, or a list of ^1.", {fmt::format("{}", fmt::join(known, ","))})};
  }
  return Done{};
}

// "old=new", parted at the first sign.
Outcome<Done> settleRenamings(CompareCommand& compare) {
  for (const std::string& renaming : compare.renamings) {
    const std::size_t sign = renaming.find('=');
    if (sign == std::string::npos || sign == 0 || sign + 1 == renaming.size()) {
      return Problem{text::sentence("\"^1\" is no renaming.", {renaming}), "--rename",
                     text::sentence("Write OLD=NEW.")};
    }
    compare.request.renamed.emplace_back(renaming.substr(0, sign), renaming.substr(sign + 1));
  }
  return Done{};
}

Outcome<Done> checkLimit(const CompareRequest& request) {
  if (!request.limit || *request.limit == "none") return Done{};
  const std::string& limit = *request.limit;
  int number = 0;
  const auto [end, error] = std::from_chars(limit.data(), limit.data() + limit.size(), number);
  if (error == std::errc() && end == limit.data() + limit.size() && number >= 1 && number <= 10000) return Done{};
  return Problem{text::sentence("\"^1\" is no limit.", {limit}), "--limit",
                 text::sentence("Write a whole number from 1 to 10000, or none.")};
}

Outcome<Done> checkTolerance(const CompareRequest& request) {
  if (!request.tolerance || (*request.tolerance >= 0 && *request.tolerance < 1)) return Done{};
  return Problem{text::sentence("The tolerance has to be a number from 0 to below 1."), "--tolerance", ""};
}

Outcome<Done> settle(CompareCommand& compare) {
  if (auto settled = settleRenamings(compare); !settled) return settled;
  CompareRequest& request = compare.request;
  if (auto settled = settleProperties(request.properties); !settled) return settled;
  if (auto checked = checkLimit(request); !checked) return checked;
  return checkTolerance(request);
}

// The words behind the program's name, the last one first, as CLI11 takes them. No password in one goes further.
std::vector<std::string> wordsOf(int argumentCount, const char* const* arguments) {
  std::vector<std::string> words;
  for (int index = argumentCount - 1; index > 0; --index) words.push_back(data::withHiddenPasswords(arguments[index]));
  return words;
}

// The last --lang among the arguments, for what is said before they are all understood, or because they are not.
std::string languageIn(int argumentCount, const char* const* arguments) {
  constexpr std::string_view option = "--lang";
  std::string language;
  for (int index = 1; index < argumentCount; ++index) {
    const std::string_view argument = arguments[index];
    if (argument == option && index + 1 < argumentCount) language = arguments[index + 1];
    if (argument.starts_with(option) && argument.substr(option.size()).starts_with('=')) {
      language = argument.substr(option.size() + 1);
    }
  }
  return data::withHiddenPasswords(language);
}

struct Commands {
  CompareCommand compare;
  RunCommand run;
  DescribeCommand describe;
  ConvertCommand convert;
  SortCommand sort;
  EncodePasswordCommand encode;
};

// The one that was named, and the language that was asked for with it.
std::pair<ProgramCommand, std::string> namedOf(const CLI::App& program, Commands& commands) {
  if (program.got_subcommand("compare")) {
    commands.compare.propertiesAreAsked = program.get_subcommand("compare")->count("--properties") != 0;
    return {commands.compare, commands.compare.output.language};
  }
  if (program.got_subcommand("run")) return {commands.run, commands.run.output.language};
  if (program.got_subcommand("describe")) return {commands.describe, commands.describe.output.language};
  if (program.got_subcommand("convert")) return {commands.convert, commands.convert.results.language};
  if (program.got_subcommand("sort")) return {commands.sort, commands.sort.results.language};
  return {commands.encode, commands.encode.language};
}

}  // namespace

Outcome<ProgramOptions> readCommandLine(int argumentCount, const char* const* arguments) {
  CLI::App program("Tells exactly how two versions of a dataset differ.", "compare-datasets");
  program.set_help_flag("-h,--help", "Print this help message and exit");
  program.set_version_flag("--version", fmt::format("compare-datasets {}", programVersion),
                           "Display program version information and exit");
  program.require_subcommand(1);
  program.footer("Exit status: 0 nothing differs, 1 something differs, 2 trouble.");

  ProgramOptions options;
  Commands commands;
  program.add_option("--plugins", options.pluginFolders, "Another folder of plug-ins")->type_name("FOLDER");
  addCompare(program, commands.compare);
  addRun(program, commands.run);
  addDescribe(program, commands.describe);
  addConvert(program, commands.convert);
  addSort(program, commands.sort);
  addEncodePassword(program, commands.encode);

  try {
    program.parse(wordsOf(argumentCount, arguments));
  } catch (const CLI::CallForVersion&) {
    options.command = ShowText{program.version() + "\n"};
    return options;
  } catch (const CLI::ParseError& error) {
    const auto wording = wordingAskedFor(languageIn(argumentCount, arguments));
    if (!wording) return wording.problem();
    const WordingInForce inForce(**wording);
    if (dynamic_cast<const CLI::CallForHelp*>(&error) == nullptr) return problemOf(program, error);
    options.command = ShowText{helpOf(program, terminalWidth(STDOUT_FILENO))};
    return options;
  }

  std::string language;
  std::tie(options.command, language) = namedOf(program, commands);
  auto wording = wordingAskedFor(language);
  if (!wording) return wording.problem();
  options.wording = std::move(*wording);
  const WordingInForce inForce(*options.wording);
  if (auto* compare = std::get_if<CompareCommand>(&options.command)) {
    if (auto settled = settle(*compare); !settled) return settled.problem();
  }
  return options;
}

}  // namespace workbench::app
