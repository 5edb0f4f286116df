#include "workbench/data/working/sort_order.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <numeric>

#include "host/runtime.h"
#include "workbench/runtime/current_run.h"
#include "workbench/text/string_comparison.h"

namespace workbench::data {
namespace {

bool isCollated() { return !currentRun().settings.collation.empty(); }

// The first eight bytes as a number of the same order. Bytes that are not there count as zero, so of two texts with one
// prefix nothing is known yet.
std::uint64_t prefixOf(std::string_view text) {
  unsigned char bytes[8] = {};
  std::memcpy(bytes, text.data(), std::min(text.size(), sizeof bytes));
  return std::accumulate(std::begin(bytes), std::end(bytes), std::uint64_t{0},
                         [](std::uint64_t sum, unsigned char byte) { return sum << 8 | byte; });
}

// The collation keys of one string variable, one after another, by row.
class CollatedKeys {
 public:
  CollatedKeys(const SortKey& key, const std::vector<SortableCase>& cases) {
    ends_.reserve(cases.size());
    for (const SortableCase& sorted : cases) {
      bytes_ += text::collationKey(keyText(key, sorted.slots));
      ends_.push_back(bytes_.size());
    }
  }
  std::string_view operator[](std::uint64_t row) const {
    const std::size_t begin = row == 0 ? 0 : ends_[row - 1];
    return std::string_view(bytes_).substr(begin, ends_[row] - begin);
  }

 private:
  std::string bytes_;
  std::vector<std::size_t> ends_;
};

int compareNumbers(double first, double second) {
  const std::uint64_t left = orderedBits(first);
  const std::uint64_t right = orderedBits(second);
  return (left > right) - (left < right);
}

}  // namespace

std::uint64_t orderedBits(double number) {
  constexpr std::uint64_t sign = std::uint64_t{1} << 63;
  const auto bits = std::bit_cast<std::uint64_t>(number);
  return (bits & sign) != 0 ? ~bits : bits | sign;
}

std::string_view keyText(const SortKey& key, const OBS* oneCase) {
  return text::withoutTrailingBlanks({oneCase[key.slot].text, key.bytes});
}

int compareCases(const std::vector<SortKey>& keys, const OBS* first, const OBS* second) {
  const bool collated = isCollated();
  for (const SortKey& key : keys) {
    int order = 0;
    if (key.isNumeric) {
      order = compareNumbers(first[key.slot].number, second[key.slot].number);
    } else {
      const std::string_view left = keyText(key, first);
      const std::string_view right = keyText(key, second);
      order = collated ? VRIXMBstrcoll_A(left, right) : left.compare(right);
    }
    if (order != 0) return order;
  }
  return 0;
}

void sortByKeys(const std::vector<SortKey>& keys, std::vector<SortableCase>& cases) {
  const bool collated = isCollated();
  std::vector<CollatedKeys> collatedKeys;  // per string key, in key order
  if (collated) {
    for (const SortKey& key : keys) {
      if (!key.isNumeric) collatedKeys.emplace_back(key, cases);
    }
  }
  const auto firstPrefix = [&](const SortableCase& sorted) {
    const SortKey& key = keys.front();
    if (key.isNumeric) return orderedBits(sorted.slots[key.slot].number);
    return prefixOf(collated ? collatedKeys.front()[sorted.row] : keyText(key, sorted.slots));
  };
  const auto compareCollated = [&](const SortableCase& first, const SortableCase& second) {
    std::size_t nextString = 0;
    for (const SortKey& key : keys) {
      const int order = key.isNumeric
                            ? compareNumbers(first.slots[key.slot].number, second.slots[key.slot].number)
                            : collatedKeys[nextString][first.row].compare(collatedKeys[nextString][second.row]);
      if (order != 0) return order;
      if (!key.isNumeric) ++nextString;
    }
    return 0;
  };
  if (keys.empty()) return;
  for (SortableCase& sorted : cases) sorted.prefix = firstPrefix(sorted);
  std::sort(cases.begin(), cases.end(), [&](const SortableCase& first, const SortableCase& second) {
    if (first.prefix != second.prefix) return first.prefix < second.prefix;
    const int order = collated ? compareCollated(first, second) : compareCases(keys, first.slots, second.slots);
    return order != 0 ? order < 0 : first.row < second.row;
  });
}

}  // namespace workbench::data
