#include "workbench/text/nearest_word.h"

#include <algorithm>
#include <cstdint>

#include "workbench/text/folding.h"
#include "workbench/text/utf8.h"

namespace workbench::text {

namespace {

constexpr std::size_t mostEdits = 3;
constexpr std::size_t shortestBeginning = 3;  // of a word that was cut short

std::vector<std::int32_t> foldedCharacters(std::string_view word) {
  std::vector<std::int32_t> characters;
  for (std::size_t at = 0; at < word.size();) {
    const Character character = characterAt(word, at);
    characters.push_back(character.codePoint < 0 ? -1 : foldedCharacter(character.codePoint));
    at += character.bytes;
  }
  return characters;
}

}  // namespace

std::size_t editDistance(std::string_view leftWord, std::string_view rightWord, std::size_t limit) {
  const std::vector<std::int32_t> left = foldedCharacters(leftWord);
  const std::vector<std::int32_t> right = foldedCharacters(rightWord);
  const std::size_t lengths[] = {left.size(), right.size()};
  if (std::max(lengths[0], lengths[1]) - std::min(lengths[0], lengths[1]) > limit) return limit + 1;

  // Row by row: edits[j] turns the first i characters of left into the first j of right.
  std::vector<std::size_t> before, last(right.size() + 1), edits(right.size() + 1);
  for (std::size_t j = 0; j <= right.size(); ++j) edits[j] = j;
  for (std::size_t i = 1; i <= left.size(); ++i) {
    before = std::move(last);
    last = edits;
    edits[0] = i;
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const std::size_t replaced = last[j - 1] + (left[i - 1] != right[j - 1]);
      edits[j] = std::min({last[j] + 1, edits[j - 1] + 1, replaced});
      const bool isExchange = i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1];
      if (isExchange) edits[j] = std::min(edits[j], before[j - 2] + 1);
    }
    if (*std::min_element(edits.begin(), edits.end()) > limit) return limit + 1;
  }
  return std::min(edits[right.size()], limit + 1);
}

std::optional<std::string> nearestWord(std::string_view word, const std::vector<std::string>& known) {
  const std::size_t length = foldedCharacters(word).size();
  std::size_t fewest = std::min(mostEdits, length / 2);
  const std::string* nearest = nullptr;
  for (const std::string& candidate : known) {
    const std::size_t edits = editDistance(word, candidate, fewest);
    if (edits > fewest || (nearest != nullptr && edits == fewest)) continue;
    nearest = &candidate;
    fewest = edits;
  }
  if (nearest != nullptr) return *nearest;
  if (length < shortestBeginning) return std::nullopt;
  const std::string beginning = foldedName(word);
  const auto isBegun = [&](const std::string& candidate) { return foldedName(candidate).starts_with(beginning); };
  const auto begun = std::find_if(known.begin(), known.end(), isBegun);
  if (begun == known.end()) return std::nullopt;
  return *begun;
}

}  // namespace workbench::text
