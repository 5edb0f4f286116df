// The command line: what the program was asked to do.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "workbench/app/compare_job.h"
#include "workbench/runtime/outcome.h"
#include "workbench/text/wording.h"

namespace workbench::app {

// Whether something is done for the looks: where a terminal is there to show it, or in any case.
enum class Appearance { automatic, always, never };

// How the results are shown, and where. Shared by all commands that have results.
struct OutputChoice {
  std::string format;               // a name of the registry of formats; empty: by the ending of the file, else text
  std::optional<std::string> file;  // none: standard output
  std::string language;             // empty: from the environment
  std::optional<std::string> journal;
  std::optional<std::string> onlyTable;  // a table's key
  bool noCaseTable = false;
  bool quiet = false;  // no results on standard output, no notes and warnings
  bool verbose = false;
  bool full = false;  // long lists and texts are not shortened
  Appearance color = Appearance::automatic;
  Appearance progress = Appearance::automatic;
};

struct CompareCommand {
  CompareRequest request;
  std::vector<std::string> renamings;  // as written; the request has them parted
  bool propertiesAreAsked = false;     // else all are compared when both datasets bring a dictionary
  OutputChoice output;
  bool showSyntax = false;
  PasswordFiles passwordFiles;
};

struct RunCommand {
  std::string job;  // a file, or "-"
  OutputChoice output;
  bool stopOnError = false;
};

struct DescribeCommand {
  std::string data;
  PasswordFiles passwordFiles;
  OutputChoice output;
};

struct ConvertCommand {
  std::string input;
  std::string output;
  PasswordFiles passwordFiles;
  OutputChoice results;
};

struct SortCommand {
  std::string input;
  std::string output;
  std::vector<std::string> by;
  PasswordFiles passwordFiles;
  OutputChoice results;
};

struct EncodePasswordCommand {
  std::string language;  // empty: from the environment
};

// Help, or the version: written to standard output, and nothing else is done.
struct ShowText {
  std::string text;
};

using ProgramCommand = std::variant<CompareCommand, RunCommand, DescribeCommand, ConvertCommand, SortCommand,
                                    EncodePasswordCommand, ShowText>;

struct ProgramOptions {
  std::vector<std::string> pluginFolders;  // beside the program's own
  ProgramCommand command;
  std::unique_ptr<text::Wording> wording;  // the language in which all of it is told; none to show a text
};

// What stands wrong on the command line is a problem that says what to write, in the language that was asked for or is
// the environment's; help is in that language, too.
Outcome<ProgramOptions> readCommandLine(int argumentCount, const char* const* arguments);

}  // namespace workbench::app
