// Plan: what two files the generator writes.
#pragma once

#include <cstdint>
#include <filesystem>

namespace bench {

enum class Key { number, string, none };  // none: cases are paired by position
enum class Order { sorted, shuffled };    // of the cases by their IDs, each file shuffled in its own way

struct Plan {
  std::int64_t rows = 1'000'000;  // in the first file, and with a key in the second
  int variables = 10;             // the ID is one of them
  int strings = -1;               // of the variables beside the ID; negative: a third of them
  Key key = Key::number;
  Order order = Order::sorted;
  int differingPercent = 5;     // of the pairs: those in which one or two variables differ
  int unpairedPercent = 1;      // of the rows of a file: those without a partner
  int missingPercent = 1;       // of the cells, on both sides
  bool variedNotation = false;  // numbers are written in many ways, on each side in its own
  std::uint64_t seed = 1;
  std::filesystem::path folder = ".";

  int values() const { return key == Key::none ? variables : variables - 1; }  // variables beside the ID
  int stringValues() const { return strings < 0 ? values() / 3 : strings; }
  int numericValues() const { return values() - stringValues(); }
  std::int64_t unpaired() const { return rows * unpairedPercent / 100; }
  std::int64_t pairs() const { return rows - unpaired(); }
  std::int64_t differing() const { return pairs() * differingPercent / 100; }
};

}  // namespace bench
