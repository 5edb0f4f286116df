// Small numbers as Parquet files store them: runs of one number, and packed groups of eight.
#pragma once

#include <rapidcheck.h>

#include <cstdint>
#include <string>
#include <vector>

namespace workbench::data {

inline std::string runHeader(std::uint64_t header) {
  std::string bytes;
  for (; header >= 0x80; header >>= 7) bytes += static_cast<char>(header | 0x80);
  return bytes + static_cast<char>(header);
}

inline std::string repeatedRun(std::size_t count, std::uint32_t number, int width) {
  std::string bytes = runHeader(count << 1);
  for (int byte = 0; byte < (width + 7) / 8; ++byte) bytes += static_cast<char>(number >> (8 * byte));
  return bytes;
}

// Requires: eight numbers, or some times as many.
inline std::string packedRun(const std::vector<std::uint32_t>& numbers, int width) {
  std::string packed(numbers.size() * static_cast<std::size_t>(width) / 8, '\0');
  std::size_t place = 0;
  for (const std::uint32_t number : numbers) {
    for (int bit = 0; bit < width; ++bit, ++place) {
      if ((number >> bit & 1) != 0) packed[place / 8] = static_cast<char>(packed[place / 8] | 1 << (place % 8));
    }
  }
  return runHeader(numbers.size() / 8 << 1 | 1) + packed;
}

// Adds a run to the bytes, and what it holds to the numbers.
inline void addRandomRun(int width, std::string& bytes, std::vector<std::uint32_t>& numbers) {
  const auto number = [&] {
    const auto any = *rc::gen::arbitrary<std::uint32_t>();
    return width == 32 ? any : any & ((std::uint32_t{1} << width) - 1);
  };
  std::vector<std::uint32_t> run;
  if (*rc::gen::arbitrary<bool>()) {
    const std::size_t count = *rc::gen::inRange<std::size_t>(0, 200);
    run.assign(count, number());
    bytes += repeatedRun(count, run.empty() ? 0 : run.front(), width);
  } else {
    const std::size_t groups = *rc::gen::inRange<std::size_t>(0, 20);
    for (std::size_t index = 0; index < groups * 8; ++index) run.push_back(number());
    bytes += packedRun(run, width);
  }
  numbers.insert(numbers.end(), run.begin(), run.end());
}

}  // namespace workbench::data
