// The key by which this user's passwords are encoded: 32 random bytes in a file of the user's configuration folder
// (compare-datasets/password-key), which nobody else may read.
#pragma once

#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::app {

enum class MissingKey { make, leave };

// The key; empty when there is none and none is to be made. A key that others can read is refused.
Outcome<Secret> passwordKey(MissingKey missing);

}  // namespace workbench::app
