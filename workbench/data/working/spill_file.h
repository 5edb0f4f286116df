// SpillFile: data that find no room in memory, in a temporary file that nobody else can open.
//
// The file lies in the folder that TMPDIR names, else in /tmp. It has no name (or loses it at once), so nothing of it
// stays behind however the process ends. Its bytes are read into memory, not mapped: a disk that fails is then an error
// to be told, not the end of the process. In a process that handles protected data what lies in it is encrypted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "workbench/data/working/spill_cipher.h"

namespace workbench::data {

class SpillFile {
 public:
  // Throws ErrorText when there is no folder in which a file can be made.
  SpillFile();
  SpillFile(SpillFile&& other) noexcept;
  SpillFile& operator=(SpillFile&& other) noexcept;
  ~SpillFile();

  // Writes at a place, counted in bytes from the beginning; what was there is replaced. Throws ErrorText.
  void write(std::uint64_t place, const void* bytes, std::size_t count);
  // Reads what was written there. Several threads may read at once. Throws ErrorText.
  void read(std::uint64_t place, void* bytes, std::size_t count) const;

 private:
  void writeAsItIs(std::uint64_t place, const void* bytes, std::size_t count);
  void readAsItIs(std::uint64_t place, void* bytes, std::size_t count) const;
  void readPage(std::uint64_t page, char* plain) const;
  [[noreturn]] void refuseReading(int error) const;

  std::string folder_;
  int descriptor_ = -1;
  std::unique_ptr<SpillCipher> cipher_;  // null: nothing has to be encrypted
  std::uint64_t end_ = 0;                // of what was written encrypted
};

}  // namespace workbench::data
