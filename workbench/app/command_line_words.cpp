#include "workbench/app/command_line_words.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>
#include <vector>

#include "workbench/output/display_text.h"
#include "workbench/output/formats.h"
#include "workbench/text/nearest_word.h"
#include "workbench/text/wording.h"

namespace workbench::app {

namespace {

using text::sentence;

// The command that the arguments named; the program itself where they named none.
const CLI::App& namedCommand(const CLI::App& program) {
  const auto named = program.get_subcommands();
  return named.empty() ? program : *named.back();
}

struct FormatNames {
  std::string byDefault;
  std::string others;  // "json, html, ..."
};

FormatNames formatNames() {
  const auto formats = output::outputFormats();
  FormatNames names{std::string(formats.front().name), {}};
  for (const output::OutputFormat& format : formats.subspan(1)) {
    names.others += fmt::format("{}{}", names.others.empty() ? "" : ", ", format.name);
  }
  return names;
}

constexpr int narrowestDescription = 20;

// In lines that fit beside what stands before them.
std::string wrapped(const std::string& text, std::optional<int> width, std::size_t before) {
  if (!width) return text;
  const int room = std::max(*width - static_cast<int>(before), narrowestDescription);
  return fmt::format("{}", fmt::join(output::wrapped(text, room), "\n"));
}

// A command says of itself what its parent's list of commands says of it. One description has places for the names of
// the formats.
void translate(CLI::App& command, const CLI::App& shown, std::optional<int> width, const FormatNames& formats) {
  CLI::FormatterBase& formatter = *command.get_formatter();
  const std::size_t column = formatter.get_column_width();
  command.description(wrapped(sentence(command.get_description()), width, &command == &shown ? 0 : column));
  command.footer(wrapped(sentence(command.get_footer()), width, 0));
  command.group(sentence(command.get_group()));
  for (CLI::Option* option : command.get_options()) {
    const std::string description = sentence(option->get_description(), {formats.byDefault, formats.others});
    option->description(wrapped(description, width, column));
    option->group(sentence(option->get_group()));
    formatter.label(option->get_type_name(), sentence(option->get_type_name()));
  }
  for (CLI::App* below : command.get_subcommands([](const CLI::App*) { return true; })) {
    translate(*below, shown, width, formats);
  }
}

// The library's words for what it found, and where in them the names are that it found it of.
constexpr std::string_view behindRequired = " is required";
constexpr std::string_view betweenExcluding = " excludes ";
constexpr std::string_view behindName = ": ";
constexpr std::string_view beforeUnconverted = "Could not convert: ";
constexpr std::string_view behindUnconverted = " = ";
constexpr std::string_view saidOfSeveral = ": At Most ";

std::string before(std::string_view part, const std::string& text) { return text.substr(0, text.find(part)); }

std::string behind(std::string_view part, const std::string& text) {
  const std::size_t found = text.find(part);
  return found == std::string::npos ? std::string() : text.substr(found + part.size());
}

// An option of the named command, or of the program before it.
const CLI::Option& optionNamed(const CLI::App& program, const std::string& name) {
  const CLI::Option* ofCommand = namedCommand(program).get_option_no_throw(name);
  return ofCommand != nullptr ? *ofCommand : *program.get_option(name);
}

std::string unexpected(const std::vector<std::string>& arguments) {
  const std::string list = fmt::format("{}", fmt::join(arguments, " "));
  if (arguments.size() == 1) return sentence("The following argument was not expected: ^1.", {list});
  return sentence("The following arguments were not expected: ^1.", {list});
}

// No command was named, or what stands in its place is none.
std::string lackOfCommand(const CLI::App& program) {
  std::vector<std::string> known;
  for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
    known.push_back(command->get_name());
  }
  const std::vector<std::string> found = program.remaining();
  const std::string all = fmt::format("{}", fmt::join(known, ", "));
  if (found.empty()) return sentence("A command is required; there are ^1.", {all});
  if (found.front().starts_with('-')) return unexpected({found.front()});
  const auto nearest = text::nearestWord(found.front(), known);
  return nearest ? sentence("There is no command ^1. Did you mean ^2?", {found.front(), *nearest})
                 : sentence("There is no command ^1. The commands are: ^2.", {found.front(), all});
}

}  // namespace

std::string helpOf(CLI::App& program, std::optional<int> width) {
  translate(program, namedCommand(program), width, formatNames());
  CLI::FormatterBase& formatter = *program.get_formatter();
  formatter.label("Usage", sentence("Usage"));
  formatter.label("OPTIONS", sentence("OPTIONS"));
  formatter.label("SUBCOMMAND", sentence("SUBCOMMAND"));
  formatter.label("Positionals", sentence("Positionals"));
  formatter.label("REQUIRED", sentence("REQUIRED"));
  formatter.label("Excludes", sentence("Excludes"));
  return program.help();
}

Problem problemOf(const CLI::App& program, const CLI::ParseError& error) {
  const std::string said = error.what();
  const std::string programName = program.get_name();
  const CLI::App& command = namedCommand(program);
  const bool isOfProgram = &command == &program;
  const std::string help = fmt::format("{}{} --help", programName, isOfProgram ? "" : " " + command.get_name());
  const std::string remedy = sentence("Try ^1.", {help});

  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
    return {unexpected(program.remaining(true)), programName, remedy};
  }
  if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
    if (isOfProgram) return {lackOfCommand(program), programName, remedy};
    return {sentence("^1 is required.", {before(behindRequired, said)}), programName, remedy};
  }
  if (dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr) {
    const std::string excluded = behind(betweenExcluding, said);
    return {sentence("^1 excludes ^2.", {before(betweenExcluding, said), excluded}), programName, remedy};
  }
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
    const std::string name = before(behindName, said);
    if (said.find(saidOfSeveral) != std::string::npos) {
      return {sentence("This option is given more than once."), name, remedy};
    }
    const std::string placeholder = sentence(optionNamed(program, name).get_type_name());
    return {sentence("This option takes a value: ^1.", {placeholder}), name, remedy};
  }
  if (dynamic_cast<const CLI::ValidationError*>(&error) != nullptr) {
    const std::string name = before(behindName, said);
    const std::string given = optionNamed(program, name).results().back();
    return {sentence("\"^1\" is none of these: ^2.", {given, behind(behindName, said)}), name, remedy};
  }
  if (dynamic_cast<const CLI::ConversionError*>(&error) != nullptr) {
    const std::string name = before(behindUnconverted, behind(beforeUnconverted, said));
    const CLI::Option& option = optionNamed(program, name);
    if (option.get_expected_max() == 0) return {sentence("This option takes no value."), name, remedy};
    return {sentence("\"^1\" is no number.", {option.results().back()}), name, remedy};
  }
  return {said, programName, remedy};  // a mistake in the description of the command line, in the library's words
}

}  // namespace workbench::app
