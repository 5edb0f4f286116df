#include "workbench/data/dictionary.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cassert>

#include "workbench/text/folding.h"

namespace workbench::data {
using text::foldedName;

namespace {

// Calls `each` with every character of a UTF-8 text and the bytes it was written with. A byte that is no UTF-8 comes by
// itself, as the character -1.
template <class Each>
void forEachCharacter(std::string_view text, Each each) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  for (std::size_t next = 0; next < text.size();) {
    const std::size_t start = next;
    UChar32 character = 0;
    U8_NEXT(bytes, next, text.size(), character);
    each(character, text.substr(start, next - start));
  }
}

bool mayStandInName(UChar32 character) {
  if (character < 0 || !u_isprint(character)) return false;
  const std::int8_t category = u_charType(character);
  return category != U_LINE_SEPARATOR && category != U_PARAGRAPH_SEPARATOR;
}

}  // namespace

std::int32_t Dictionary::add(Variable variable) {
  const std::int32_t index = size();
  [[maybe_unused]] const bool isNew = byFoldedName_.emplace(foldedName(variable.name), index).second;
  assert(isNew);  // callers ask find() or goodName() first
  variables_.push_back(std::move(variable));
  return index;
}

std::int32_t Dictionary::find(std::string_view name) const {
  const auto found = byFoldedName_.find(foldedName(name));
  return found == byFoldedName_.end() ? -1 : found->second;
}

std::string Dictionary::goodName(std::string_view name) const {
  std::string good;
  forEachCharacter(name, [&](UChar32 character, std::string_view written) {
    if (mayStandInName(character)) {
      good.append(written);
    } else {
      good.push_back('_');
    }
  });
  if (good.empty()) good.push_back('_');
  if (find(good) < 0) return good;
  for (std::int64_t number = 1;; ++number) {
    std::string numbered = good + "_" + std::to_string(number);
    if (find(numbered) < 0) return numbered;
  }
}

CaseLayout::CaseLayout(const Dictionary& dictionary) {
  slotOfVariable.reserve(dictionary.variables().size());
  std::uint32_t slot = 0;
  for (const Variable& variable : dictionary.variables()) {
    slotOfVariable.push_back(slot);
    slot += variable.slots();
  }
  caseSlots = slot;
}

}  // namespace workbench::data
