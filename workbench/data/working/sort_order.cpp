#include "workbench/data/working/sort_order.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "host/runtime.h"
#include "workbench/text/string_comparison.h"

namespace workbench::data {
namespace {

int compareNumbers(double first, double second) {
  const std::uint64_t left = orderedBits(first);
  const std::uint64_t right = orderedBits(second);
  return (left > right) - (left < right);
}

void appendNumber(std::uint64_t number, std::string& key) {
  for (int shift = 56; shift >= 0; shift -= 8) key += static_cast<char>(number >> shift & 0xFF);
}

// Ends the text so that the bytes of what follows decide only between equal texts: a zero byte stands for the end, and
// one within the text is marked.
void appendEnded(std::string_view text, std::string& key) {
  for (const char byte : text) {
    key += byte;
    if (byte == '\0') key += '\xFF';
  }
  key.append(2, '\0');
}

}  // namespace

bool isCollated(const std::vector<SortKey>& keys) {
  return std::any_of(keys.begin(), keys.end(), [](const SortKey& key) { return key.isCollated; });
}

std::uint64_t orderedBits(double number) {
  constexpr std::uint64_t sign = std::uint64_t{1} << 63;
  const auto bits = std::bit_cast<std::uint64_t>(number);
  return (bits & sign) != 0 ? ~bits : bits | sign;
}

std::string_view keyText(const SortKey& key, const OBS* oneCase) {
  return text::withoutTrailingBlanks({oneCase[key.slot].text, key.bytes});
}

int compareCases(const std::vector<SortKey>& keys, const OBS* first, const OBS* second) {
  for (const SortKey& key : keys) {
    int order = 0;
    if (key.isNumeric) {
      order = compareNumbers(first[key.slot].number, second[key.slot].number);
    } else {
      const std::string_view left = keyText(key, first);
      const std::string_view right = keyText(key, second);
      order = key.isCollated ? VRIXMBstrcoll_A(left, right) : left.compare(right);
    }
    if (order != 0) return order;
  }
  return 0;
}

std::uint64_t prefixOf(const SortKey& key, const OBS* oneCase) {
  return key.isNumeric ? orderedBits(oneCase[key.slot].number) : prefixOf(keyText(key, oneCase));
}

// The first eight bytes. Bytes that are not there count as zero, so of two texts with one prefix nothing is known yet.
std::uint64_t prefixOf(std::string_view text) {
  unsigned char bytes[8] = {};
  std::memcpy(bytes, text.data(), std::min(text.size(), sizeof bytes));
  std::uint64_t prefix = 0;
  for (const unsigned char byte : bytes) prefix = prefix << 8 | byte;
  return prefix;
}

std::string collatedKey(const std::vector<SortKey>& keys, const OBS* oneCase) {
  std::string key;
  for (const SortKey& one : keys) {
    if (one.isNumeric) {
      appendNumber(orderedBits(oneCase[one.slot].number), key);
    } else {
      const std::string_view text = keyText(one, oneCase);
      appendEnded(one.isCollated ? text::collationKey(text) : std::string(text), key);
    }
  }
  return key;
}

}  // namespace workbench::data
