// Tokens: the text of a job, cut into commands and these into words, strings, numbers and punctuation marks.
//
// A command ends with a period behind which its line holds nothing but blanks and comments, and at the end of the job.
// A "*" at the start of a command makes it a comment up to its period; "/* ... */" stands anywhere between tokens.
// A fault is noted (the first one of a command) and reading goes on, so that the commands behind it are found.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/parser.h"
#include "workbench/language/source_cursor.h"

namespace workbench::language {

struct SyntaxError {
  std::string sentence;
  std::int32_t line = 1;
  std::int32_t column = 1;
};

// A token, and where its text begins and ends in the job, in bytes.
struct PlacedToken {
  TokenInfoObj token;
  std::size_t begin = 0;
  std::size_t end = 0;
};

struct CommandText {
  std::vector<PlacedToken> tokens;
  std::size_t begin = 0;  // of the first token
  std::size_t end = 0;    // behind the period, or behind the last token where there is none
  std::int32_t line = 1;
  std::int32_t column = 1;
  std::optional<SyntaxError> error;
};

// The next command, or nothing at the end of the job. Comments and lone periods are passed over.
std::optional<CommandText> nextCommand(SourceCursor& job);

// The tokens of a text that is no command by itself.
std::vector<TokenInfoObj> tokensOf(std::string_view text);

bool isPunctuation(const TokenInfoObj& token, std::string_view mark);

}  // namespace workbench::language
