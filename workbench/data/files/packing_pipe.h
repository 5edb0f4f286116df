// PackingPipe: what is written into it as text stands packed in an output file.
//
// The pipe has a name in the system, so that another library can open it like a file and needs to know nothing of
// packing. A thread reads what comes, packs it and writes the file. When that fails it stops reading: who still writes
// is told that the pipe is broken, and finish() says why.
//
// Invariant: whatever happens the thread reads until the pipe's end or closes its own, so nobody waits for it in vain;
// no child process inherits the pipe.
#pragma once

#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/output_file.h"
#include "workbench/data/files/packer.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class PackingPipe {
 public:
  // Without a packing it passes on what it is given. Requires: the file outlives the pipe, and nobody else uses it
  // before finish().
  static Outcome<std::unique_ptr<PackingPipe>> open(OutputFile& file, Packing packing);
  // Requires: the pipe was closed by all who opened it by its name.
  ~PackingPipe();
  PackingPipe(const PackingPipe&) = delete;
  PackingPipe& operator=(const PackingPipe&) = delete;

  // A name under which the pipe can be opened for writing. Valid until endText().
  std::string descriptorPath() const;
  // For the thread that writes, before it does: a broken pipe will be an error of its write, not the end of the
  // process.
  static void keepSignalFromThisThread();
  // No text follows. May be called more than once, and on the thread that writes.
  void endText();

  // Waits until all text is packed and written; throws ErrorText when it could not be, as often as it is called.
  // Requires: endText() was called; the pipe was closed by all who opened it by its name.
  void finish();

 private:
  PackingPipe(OutputFile& file, Packing packing);
  void packAll();
  std::string_view nextText();

  OutputFile& file_;
  std::unique_ptr<Packer> packer_;
  std::vector<char> buffer_;
  int readEnd_ = -1;   // the thread's as long as it runs
  int writeEnd_ = -1;  // kept open until endText(), or the thread would find the end before anything was written
  std::exception_ptr failure_;
  std::thread thread_;
};

}  // namespace workbench::data
