// Runs jobs: every command of a text, one after the other, into the session's document.
#pragma once

#include "workbench/app/session.h"
#include "workbench/runtime/secret.h"

namespace workbench::app {

// What follows a command that was refused or failed.
enum class OnError {
  goOn,
  stop,
  // `compare` stops, but for a sort or a check that is refused: it goes on with the comparison, which then says itself
  // what its case IDs lack.
  goOnToComparison,
};

// Adds a command to the document for each of the job's, and brings its verdict up to date. Passwords in references to
// servers go no further than here.
void runJob(Session& session, const Secret& job, OnError onError);

}  // namespace workbench::app
