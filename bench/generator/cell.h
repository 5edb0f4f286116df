// Cell: the text of a cell, short enough to be held in place. And what the cells of the generated files hold.
#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>

#include "bench/generator/chance.h"

namespace bench {

class Cell {
 public:
  Cell() = default;
  explicit Cell(std::string_view text) { append(text); }

  // Requires: there is room, which no cell that is made here exceeds.
  void append(char character) { characters_[size_++] = character; }
  void append(std::string_view text) {
    std::copy(text.begin(), text.end(), characters_.begin() + size_);
    size_ = static_cast<std::uint8_t>(size_ + text.size());
  }
  void append(std::int64_t number) {
    char* const begin = characters_.data() + size_;
    size_ = static_cast<std::uint8_t>(std::to_chars(begin, characters_.data() + room, number).ptr - characters_.data());
  }

  std::string_view text() const { return {characters_.data(), size_}; }
  bool isEmpty() const { return size_ == 0; }
  bool operator==(const Cell& other) const { return text() == other.text(); }

 private:
  static constexpr std::size_t room = 39;
  std::array<char, room> characters_;
  std::uint8_t size_ = 0;
};

// In turn small whole numbers, whole numbers up to a million and numbers with two decimals, the last of them not 0.
Cell randomNumber(int variable, Chance& chance);
// A word of 4 to 19 letters.
Cell randomWord(Chance& chance);
// The ID of a case as a string of 12 letters. IDs from 1 to `identities` come in the order of their bytes, and are
// spread evenly over all that 12 letters allow.
Cell stringKey(std::int64_t id, std::int64_t identities, Chance& chance);
// The same number in one of many notations: 1.50, 1.500, +1.50, 150e-2, 1.50E+0. Requires: a number as randomNumber()
// writes it.
Cell inAnyNotation(const Cell& number, Chance& chance);

}  // namespace bench
