// What the command line says of itself, in the language in force: its help, and what is wrong with the arguments.
//
// Options are described in English, by keys of the wording, which are looked up here and no sooner: a start that says
// nothing loads no wording.
#pragma once

#include <optional>
#include <string>

#include "workbench/runtime/outcome.h"

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace workbench::app {

// Of the command that the arguments named, or of the program where they named none. Descriptions are wrapped to fit
// into that many columns, where a width is given. What the program says of its options is replaced.
std::string helpOf(CLI::App& program, std::optional<int> width);

// What stands wrong. Requires: the error is one of the program's parse, and not a call for help or for the version.
Problem problemOf(const CLI::App& program, const CLI::ParseError& error);

}  // namespace workbench::app
