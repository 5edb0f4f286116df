// A job: the commands of a text, in order, each with its name, its tokens and the text that may be shown of it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/parser.h"
#include "workbench/language/tokens.h"

namespace workbench::language {

struct JobCommand {
  // The known name, as it is known; of a command that is not known the words it starts with; empty when there is none.
  std::string name;
  std::vector<TokenInfoObj> tokens;  // without the name
  std::string syntax;                // as written, its period included, with passwords hidden
  std::int32_t line = 1;             // where it starts, from 1
  std::int32_t column = 1;           // counts characters
  std::optional<SyntaxError> error;  // why it cannot be run
};

// The commands of a job. A name is one or more words; of the known ones that a command can start with, the longest
// counts. A command that has an error does not keep the others from being read.
std::vector<JobCommand> readJob(std::string_view text, const std::vector<std::string>& knownNames);

}  // namespace workbench::language
