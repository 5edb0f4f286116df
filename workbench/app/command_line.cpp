#include "workbench/app/command_line.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <map>

#include "workbench/app/version.h"
#include "workbench/data/files/server_reference.h"
#include "workbench/output/formats.h"

namespace workbench::app {

namespace {

void addAppearance(CLI::App& command, const std::string& name, Appearance& appearance, const std::string& help) {
  static const std::map<std::string, Appearance> choices = {
      {"auto", Appearance::automatic}, {"always", Appearance::always}, {"never", Appearance::never}};
  command.add_option(name, appearance, help)->transform(CLI::CheckedTransformer(choices))->type_name("WHEN");
}

// "text (default), json, ..."
std::string knownFormats() {
  std::string names;
  for (const output::OutputFormat& format : output::outputFormats()) {
    names += fmt::format("{}{}", names.empty() ? "" : ", ", format.name);
    if (&format == output::outputFormats().data()) names += " (default)";
  }
  return names;
}

void addOutputOptions(CLI::App& command, OutputChoice& output) {
  command.add_option("--format", output.format, "How results are shown: " + knownFormats());
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
                     const std::string& whose) {
  command.add_option(name, file, "Password " + whose + ", in the first line of FILE (-: asked for on the terminal)")
      ->type_name("FILE");
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
  auto* flag = command.add_option("--flag", request.flagName, "Name of the flag variable (default: CasesCompare)");
  command.add_flag("--no-flag", request.noFlag, "Make no flag variable")->excludes(flag);
  command.add_option("--save-active", request.saveActive, "Write the active dataset with its flag variable")
      ->type_name("FILE");
  command.add_option("--matched", request.matched, "Save the matched cases")->type_name("FILE");
  command.add_option("--mismatched", request.mismatched, "Save the mismatched cases")->type_name("FILE");
  command.add_option("--limit", request.limit, "Cases in the case table: 1 to 10000, or none (default: 100)");
  command.add_flag("--no-case-table", compare.output.noCaseTable, "Do not show the case table");
  const std::map<std::string, SortChoice> sortChoices = {
      {"auto", SortChoice::whenNeeded}, {"never", SortChoice::never}, {"always", SortChoice::always}};
  command
      .add_option("--sort", request.sort, "Bring the datasets into case ID order first: auto (default), never, always")
      ->transform(CLI::CheckedTransformer(sortChoices));
  command.add_option("--tolerance", request.tolerance,
                     "Relative difference below which numbers count as equal (default: 1e-12; 0: none)");
  command.add_option("--collation", request.collation, "Order of text case IDs: binary (default) or a locale");
  command.add_flag("--profile", request.profile,
                   "Also show by how much, how often and in which direction values differ");
  addPasswordFile(command, "--password-file", compare.passwordFiles.input, "of the active dataset");
  addPasswordFile(command, "--comparison-password-file", compare.passwordFiles.comparison, "of the comparison dataset");
  addPasswordFile(command, "--output-password-file", compare.passwordFiles.output,
                  "for the data files that are written, whose names end in .pgp");
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
  addPasswordFile(command, "--password-file", describe.passwordFiles.input, "of the data");
  addOutputOptions(command, describe.output);
}

void addSort(CLI::App& program, SortCommand& sort) {
  CLI::App& command = *program.add_subcommand("sort", "Sort a dataset");
  command.add_option("IN", sort.input, "A data file")->required();
  command.add_option("OUT", sort.output, "Where the sorted dataset goes")->required();
  command.add_option("--by", sort.by, "The variables to sort by, ascending")->delimiter(',')->required();
  addPasswordFile(command, "--password-file", sort.passwordFiles.input, "of IN");
  addPasswordFile(command, "--output-password-file", sort.passwordFiles.output, "for OUT, whose name ends in .pgp");
  addOutputOptions(command, sort.results);
}

void addConvert(CLI::App& program, ConvertCommand& convert) {
  CLI::App& command = *program.add_subcommand("convert", "Copy a dataset, with its dictionary, into another data file");
  command.add_option("IN", convert.input, "The data")->required();
  command.add_option("OUT", convert.output, "Where the copy goes; its name's ending says of what kind it is")
      ->required();
  addPasswordFile(command, "--password-file", convert.passwordFiles.input, "of the data");
  addPasswordFile(command, "--output-password-file", convert.passwordFiles.output, "for the copy");
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
    return Problem{fmt::format("There is no dictionary property \"{}\".", property), "--properties",
                   fmt::format("Write all, none, or a list of {}.", fmt::join(known, ","))};
  }
  return Done{};
}

// "old=new", parted at the first sign.
Outcome<Done> settleRenamings(CompareCommand& compare) {
  for (const std::string& renaming : compare.renamings) {
    const std::size_t sign = renaming.find('=');
    if (sign == std::string::npos || sign == 0 || sign + 1 == renaming.size()) {
      return Problem{fmt::format("\"{}\" is no renaming.", renaming), "--rename", "Write OLD=NEW."};
    }
    compare.request.renamed.emplace_back(renaming.substr(0, sign), renaming.substr(sign + 1));
  }
  return Done{};
}

Outcome<Done> checkLimit(const CompareRequest& request) {
  if (!request.limit || *request.limit == "none") return Done{};
  const std::string& text = *request.limit;
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc() && end == text.data() + text.size() && number >= 1 && number <= 10000) return Done{};
  return Problem{fmt::format("\"{}\" is no limit.", text), "--limit", "Write a whole number from 1 to 10000, or none."};
}

Outcome<Done> checkTolerance(const CompareRequest& request) {
  if (!request.tolerance || (*request.tolerance >= 0 && *request.tolerance < 1)) return Done{};
  return Problem{"The tolerance has to be a number from 0 to below 1.", "--tolerance", ""};
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

}  // namespace

Outcome<ProgramOptions> readCommandLine(int argumentCount, const char* const* arguments) {
  CLI::App program("Tells exactly how two versions of a dataset differ.", "compare-datasets");
  program.set_version_flag("--version", fmt::format("compare-datasets {}", programVersion));
  program.require_subcommand(1);
  program.failure_message(CLI::FailureMessage::simple);
  program.footer("Exit status: 0 nothing differs, 1 something differs, 2 trouble.");

  ProgramOptions options;
  CompareCommand compare;
  RunCommand run;
  DescribeCommand describe;
  ConvertCommand convert;
  SortCommand sort;
  EncodePasswordCommand encode;
  program.add_option("--plugins", options.pluginFolders, "Another folder of plug-ins")->type_name("FOLDER");
  addCompare(program, compare);
  addRun(program, run);
  addDescribe(program, describe);
  addConvert(program, convert);
  addSort(program, sort);
  addEncodePassword(program, encode);

  try {
    program.parse(wordsOf(argumentCount, arguments));
  } catch (const CLI::CallForHelp&) {
    options.command = ShowText{program.help()};
    return options;
  } catch (const CLI::CallForVersion&) {
    options.command = ShowText{program.version() + "\n"};
    return options;
  } catch (const CLI::ParseError& error) {
    return Problem{error.what(), "compare-datasets", "Try compare-datasets --help."};
  }

  if (program.got_subcommand("compare")) {
    compare.propertiesAreAsked = program.get_subcommand("compare")->count("--properties") != 0;
    if (auto settled = settle(compare); !settled) return settled.problem();
    options.command = compare;
  } else if (program.got_subcommand("run")) {
    options.command = run;
  } else if (program.got_subcommand("describe")) {
    options.command = describe;
  } else if (program.got_subcommand("convert")) {
    options.command = convert;
  } else if (program.got_subcommand("encode-password")) {
    options.command = encode;
  } else {
    options.command = sort;
  }
  return options;
}

}  // namespace workbench::app
