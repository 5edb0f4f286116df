// How the command parser says what is wrong: in one shape, with the place in the job, among the command's messages.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/parser.h"

namespace workbench::language {

// The names under which errors are reported: those of the ParserMessage that lives, else the given command's own.
std::string reportedCommand(std::string_view commandName);

// A token as an error shows it: in quotes when it was quoted, not too long, on one line.
std::string shownToken(const TokenInfoObj& token);

// "A, B or C".
std::string eitherOf(const std::vector<std::string>& words);

struct UnexpectedToken {
  const TokenInfoObj* token = nullptr;      // null: the command ended
  const TokenInfoObj* lastToken = nullptr;  // where a command that ended is said to have ended; null: at its name
  std::string expected;                     // a phrase
  std::optional<std::string> nearest;       // the word that was probably meant
  bool isPassword = false;                  // then the token is not shown
};

// "COMMAND: found X, expected Y. Did you mean Z?"
// Requires: a command is running.
void reportUnexpected(std::string_view context, const UnexpectedToken& problem);

// Any other sentence about a token.
void reportSyntaxError(std::string_view context, std::string_view what, const TokenInfoObj* token);

}  // namespace workbench::language
