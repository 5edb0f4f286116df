// The text of a progress line: what is done, the share, the speed and the time left.
#pragma once

#include <chrono>
#include <string>

#include "workbench/runtime/activity.h"
#include "workbench/text/wording.h"

namespace workbench::app {

// "Sorting: 45%, 1.20 M cases/s, 0:12 left". Share and time are left out where the whole is not known, speed and time
// in the first moment of a stage.
std::string progressText(const Activity::View& view, std::chrono::duration<double> elapsed,
                         const text::Wording& wording);

}  // namespace workbench::app
