// What the workbench itself says about data while a command runs: a renamed column, a dataset that was replaced.
#pragma once

#include <string>

#include "host/messages.h"

namespace workbench::data {

// Adds the sentence, already in the user's language, to the messages of the command that is running, if there is one.
void addHostNote(BpErrorLevel level, std::string sentence);

}  // namespace workbench::data
