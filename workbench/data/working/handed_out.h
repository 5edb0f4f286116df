// HandedOut: an object that a procedure got to delete by itself.
//
// A procedure may leave without deleting what it was given. What such an object holds (files, blocks, threads) is let
// go by the host when the command ends; the small object itself is then all that is left. Everything here happens on
// the procedure's thread.
#pragma once

#include <cstddef>

namespace workbench::data {

class HandedOut {
 public:
  HandedOut(const HandedOut&) = delete;
  HandedOut& operator=(const HandedOut&) = delete;

  // Drops all that is heavy. Calls that need it throw ErrorText from then on.
  virtual void letGo() noexcept = 0;

 protected:
  HandedOut();
  virtual ~HandedOut();
};

// Lets go of all that was handed out and is still there, the youngest first, and says how many there were. Called by
// the host when a command has ended, however it ended.
std::size_t letGoOfAllHandedOut() noexcept;

}  // namespace workbench::data
