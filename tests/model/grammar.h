// Which commands the host's parser takes, and which lists of variables: said plainly, without its messages.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tests/model/command.h"
#include "tests/model/dataset.h"

namespace workbench::tests::model {

// Without regard to case.
const Subcommand* find(const Command& command, const std::string& name);
// The values of a keyword; null when it was not given.
const std::vector<Word>* find(const Subcommand& subcommand, const std::string& keyword);

bool isGrammatical(const Command& command);

// The positions of the variables that a list names, in its order: names, A TO B, ALL. Nothing when it is refused: an
// unknown name, a variable named twice, a range without a name on either side or from a later variable to an earlier.
std::optional<std::vector<std::size_t>> namedVariables(const std::vector<Word>& list, const Dataset& dataset);

}  // namespace workbench::tests::model
