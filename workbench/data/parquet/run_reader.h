// RunReader: small numbers as Parquet files store them: runs of one number, and groups of eight in as many bits each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace workbench::data {

class RunReader {
 public:
  RunReader() = default;
  // Numbers of so many bits each, 32 at most. Eight bytes behind the last one can be read.
  RunReader(std::string_view bytes, int width) : at_(bytes.data()), end_(at_ + bytes.size()), width_(width) {}

  // False when there are not so many. Their bits beyond the width are zero.
  bool read(std::uint32_t* to, std::size_t count);
  // The same for numbers of one bit, which are stored as bits from `first` on; these have to be zero. Gives how many
  // are set, or nothing less than zero when there are not so many.
  std::int64_t readBits(std::uint64_t* to, std::size_t first, std::size_t count);

 private:
  bool nextRun();

  const char* at_ = nullptr;
  const char* end_ = nullptr;
  int width_ = 0;
  std::size_t left_ = 0;      // of the run
  bool isRepeated_ = false;   // the run is of one number, otherwise of packed ones
  std::uint32_t number_ = 0;  // of a repeated run
  std::size_t bit_ = 0;       // of a packed run: of its next number, from `at_` on
  const char* packedEnd_ = nullptr;
};

}  // namespace workbench::data
