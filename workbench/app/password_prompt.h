// Asks for a password on the terminal that the program was started from, whatever its standard input and output are.
// Nothing of what is typed is shown.
#pragma once

#include <string>

#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::app {

// A password that something will be protected with is asked for twice: nobody sees a slip.
enum class Asking { once, twice };

Outcome<Secret> askForPassword(const std::string& prompt, Asking asking);

}  // namespace workbench::app
