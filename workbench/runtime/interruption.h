// Interruption: Ctrl-C, a request to terminate, a terminal that was closed.
//
// A thread waits for the signal and ends the process, wherever the others are: computing, inside a library, or waiting
// for a pipe. Files under temporary names are removed; outputs are all in their places or none is.
#pragma once

#include <functional>

namespace workbench {

// From now on an interruption ends the process with 128 and the signal's number. A signal that the parent has the
// program ignore stays ignored. Requires: the process has no other thread yet.
void endOnInterruption();

// Is called once before the process ends so, on a thread of its own; an empty one is nothing. It must not wait for
// anyone.
void beforeInterruptedEnd(std::function<void()> act);

}  // namespace workbench
