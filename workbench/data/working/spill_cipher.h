// SpillCipher: encrypts a temporary file page by page, under a key that is nowhere but in this object.
//
// A page that is written once more is encrypted anew, so that even who sees the disk at both times learns nothing; one
// that comes back otherwise than it was written is noticed.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbench::data {

class SpillCipher {
 public:
  static constexpr std::size_t pageBytes = std::size_t{1} << 16;
  static constexpr std::size_t sealedBytes = pageBytes + 16;  // on the disk

  // Throws ErrorText when the system gives no random numbers.
  SpillCipher();
  ~SpillCipher();
  SpillCipher(const SpillCipher&) = delete;
  SpillCipher& operator=(const SpillCipher&) = delete;

  bool wasWritten(std::uint64_t page) const { return page < versions_.size() && versions_[page] != 0; }
  void seal(std::uint64_t page, const char* plain, char* sealed);
  // False when these are not the bytes that seal() gave last. Requires: wasWritten(page).
  bool open(std::uint64_t page, const char* sealed, char* plain) const;

 private:
  std::array<unsigned char, 32> key_{};
  std::vector<std::uint32_t> versions_;  // of the pages: how often each was written
};

}  // namespace workbench::data
