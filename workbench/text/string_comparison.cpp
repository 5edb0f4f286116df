#include "workbench/text/string_comparison.h"

#include <fmt/format.h>
#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <utility>

#include "host/messages.h"
#include "host/runtime.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/folding.h"
#include "workbench/text/wording.h"

namespace workbench::text {

namespace {

int sign(int number) { return (number > 0) - (number < 0); }

int compareBytes(std::string_view left, std::string_view right) { return sign(left.compare(right)); }

// Up to the first character beyond ASCII the answer needs no folded copy. A character beyond it may fold to an ASCII
// one (the Kelvin sign to k), so from there on both rests are folded.
int compareFolded(std::string_view left, std::string_view right) {
  const std::size_t common = std::min(left.size(), right.size());
  for (std::size_t at = 0; at < common; ++at) {
    const auto leftByte = static_cast<unsigned char>(left[at]);
    const auto rightByte = static_cast<unsigned char>(right[at]);
    if (leftByte >= 0x80 || rightByte >= 0x80) {
      return compareBytes(foldedName(left.substr(at)), foldedName(right.substr(at)));
    }
    if (leftByte == rightByte) continue;
    const auto lowered = [](unsigned char byte) { return byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : int{byte}; };
    if (lowered(leftByte) != lowered(rightByte)) return sign(lowered(leftByte) - lowered(rightByte));
  }
  return sign((left.size() > right.size()) - (left.size() < right.size()));
}

icu::StringPiece piece(std::string_view text) { return {text.data(), static_cast<std::int32_t>(text.size())}; }

Outcome<icu::Locale> localeOf(std::string_view tag) {
  UErrorCode status = U_ZERO_ERROR;
  icu::Locale locale = icu::Locale::forLanguageTag(piece(tag), status);
  if (U_FAILURE(status) || locale.isBogus() || locale.getLanguage()[0] == '\0') {
    locale = icu::Locale::createCanonical(std::string(tag).c_str());
  }
  std::int32_t count = 0;
  const icu::Locale* known = icu::Collator::getAvailableLocales(count);
  const bool isKnown = std::any_of(known, known + count, [&](const icu::Locale& candidate) {
    return std::string_view(candidate.getLanguage()) == locale.getLanguage();
  });
  if (isKnown) return locale;
  return Problem{sentence("No order of texts is known for ^1.", {tag}), "",
                 sentence("Name a language such as de or sv_SE, or leave the collation out.")};
}

// The collator in force, kept per thread: collators may not be shared while they are in use.
const icu::Collator& collatorInForce() {
  thread_local std::string locale;
  thread_local std::unique_ptr<icu::Collator> collator;
  const std::string& wanted = currentRun().settings.collation;
  if (collator == nullptr || locale != wanted) {
    const Outcome<icu::Locale> known = localeOf(wanted);
    if (!known) throw ErrorText(known.problem().text());
    UErrorCode status = U_ZERO_ERROR;
    collator.reset(icu::Collator::createInstance(*known, status));
    if (U_FAILURE(status)) {
      collator.reset();
      throw ErrorText(sentence("No order of texts is known for ^1.", {wanted}));
    }
    locale = wanted;
  }
  return *collator;
}

bool endsInBlank(std::string_view text) { return !text.empty() && text.back() == ' '; }

int compareTrimmed(std::string_view left, std::string_view right) {
  if (!endsInBlank(left) && !endsInBlank(right)) return compareBytes(left, right);
  return compareBytes(withoutTrailingBlanks(left), withoutTrailingBlanks(right));
}

// Texts that the locale holds to be equal are in the order of their bytes.
[[gnu::noinline]] int compareInLocale(std::string_view left, std::string_view right, int orderOfBytes) {
  UErrorCode status = U_ZERO_ERROR;
  const UCollationResult order = collatorInForce().compareUTF8(piece(left), piece(right), status);
  if (U_FAILURE(status)) throw ErrorText(sentence("Two texts could not be put in order: ^1.", {u_errorName(status)}));
  return order != UCOL_EQUAL ? static_cast<int>(order) : orderOfBytes;
}

int compareCollated(std::string_view left, std::string_view right) {
  const int orderOfBytes = compareTrimmed(left, right);
  if (orderOfBytes == 0 || currentRun().settings.collation.empty()) return orderOfBytes;
  return compareInLocale(withoutTrailingBlanks(left), withoutTrailingBlanks(right), orderOfBytes);
}

// Apart, like what a locale needs: a comparison that is asked for at every case sets up little.
[[gnu::noinline]] void writeToJournal(const char* name, std::string_view left, std::string_view right, int result) {
  journal().line(fmt::format("{}({}, {}) -> {}", name, Journal::quoted(left), Journal::quoted(right), result));
}

// Runs a comparison and, when the journal is on, writes what was asked and what came out.
template <class Compare>
int journaled(const char* name, std::string_view left, std::string_view right, Compare compare) {
  const int result = compare(left, right);
  if (journal().isOn()) writeToJournal(name, left, right, result);
  return result;
}

}  // namespace

std::string_view withoutTrailingBlanks(std::string_view text) {
  // The padding of a wide text is long: eight blanks at a time, then one.
  constexpr char blanks[] = {' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '};
  while (text.size() >= sizeof blanks &&
         std::memcmp(text.data() + text.size() - sizeof blanks, blanks, sizeof blanks) == 0) {
    text.remove_suffix(sizeof blanks);
  }
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

std::string collationKey(std::string_view text) {
  text = withoutTrailingBlanks(text);
  if (currentRun().settings.collation.empty()) return std::string(text);
  const icu::Collator& collator = collatorInForce();
  const icu::UnicodeString wide = icu::UnicodeString::fromUTF8(piece(text));
  // A sort key holds no zero byte but the one that ends it; behind that one the text itself decides.
  std::string key(static_cast<std::size_t>(collator.getSortKey(wide, nullptr, 0)), '\0');
  collator.getSortKey(wide, reinterpret_cast<std::uint8_t*>(key.data()), static_cast<std::int32_t>(key.size()));
  return key.append(text);
}

Outcome<Done> checkCollation(std::string_view locale) {
  if (locale.empty()) return Done{};
  const Outcome<icu::Locale> known = localeOf(locale);
  if (!known) return known.problem();
  return Done{};
}

}  // namespace workbench::text

int VRIXMBstrcmp_A(std::string_view left, std::string_view right) {
  using namespace workbench::text;
  return journaled("VRIXMBstrcmp_A", left, right, compareBytes);
}

int VRIXMBstricmp_A(std::string_view left, std::string_view right) {
  using namespace workbench::text;
  return journaled("VRIXMBstricmp_A", left, right, compareFolded);
}

int VRIXMBstrnbcmp_A(std::string_view left, std::string_view right) {
  using namespace workbench::text;
  return journaled("VRIXMBstrnbcmp_A", left, right, compareTrimmed);
}

int VRIXMBstrcoll_A(std::string_view left, std::string_view right) {
  using namespace workbench::text;
  return journaled("VRIXMBstrcoll_A", left, right, compareCollated);
}
