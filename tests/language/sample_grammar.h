// A grammar to test the parser with, and a way to say in one string what the parser made of a job.
#pragma once

#include <string>
#include <string_view>

#include "host/parser.h"

namespace workbench::language {

// A procedure's grammar as a procedure builds it: one subcommand is added twice, the second time with a keyword more.
CommandDescriptor compareGrammar();

// A made-up command that uses what the other does not: required and repeated parts, a keyword without a value, bounds.
CommandDescriptor drawGrammar();

// Reads a job, parses every command against its grammar (compareGrammar, drawGrammar and the host's own), and lists
// per command what it says or what is wrong with it:
//
//   OPEN DATA FILE='a.csv' NAME=first
//   3:7 COMPARE DATASETS: found ...
std::string answerTo(std::string_view job);

// What is wrong with a job of one command: "line:column sentence", or nothing.
std::string errorOf(std::string_view job);

}  // namespace workbench::language
