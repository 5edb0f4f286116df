// Whether this process handles data that their owner keeps behind a password.
//
// Once it does, nothing of any data may come to lie on a disk in the clear beside the files that were asked for:
// temporary files are encrypted, and the system is told to write no image of the process when that is killed.
#pragma once

namespace workbench {

// From now on until the process ends. May be called on any thread, as often as one likes.
void noteProtectedData();
bool handlesProtectedData();

}  // namespace workbench
