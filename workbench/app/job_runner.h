// Runs jobs: every command of a text, one after the other, into the session's document.
#pragma once

#include <string_view>

#include "workbench/app/session.h"

namespace workbench::app {

// What follows a command that was refused or failed.
enum class OnError {
  goOn,
  stop,
  // `compare` stops, but for a sort or a check that is refused: it goes on with the comparison, which then says itself
  // what its case IDs lack.
  goOnToComparison,
};

// Adds a command to the document for each of the job's, and brings its verdict up to date.
void runJob(Session& session, std::string_view job, OnError onError);

}  // namespace workbench::app
