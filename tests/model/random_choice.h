// Choices of random tests. What is named first is the simplest, which RapidCheck shrinks towards.
#pragma once

#include <rapidcheck.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace workbench::tests::model {

// Numbers of a range are all as likely, however large the sample is to be.
inline std::size_t upTo(std::size_t most) {
  return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange<std::size_t>(0, most + 1));
}
inline bool oneIn(std::size_t number) { return upTo(number - 1) == number - 1 && number > 0; }

template <class Item>
Item anyOf(const std::vector<Item>& items) {
  return items[upTo(items.size() - 1)];
}

// The items in any order.
template <class Item>
std::vector<Item> shuffled(std::vector<Item> items) {
  for (std::size_t left = items.size(); left > 1; --left) std::swap(items[left - 1], items[left - 1 - upTo(left - 1)]);
  return items;
}

// The word with some of its letters in the other case.
std::string inAnyCase(std::string word);

}  // namespace workbench::tests::model
