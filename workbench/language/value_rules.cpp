#include "workbench/language/value_rules.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "workbench/language/syntax_report.h"
#include "workbench/text/wording.h"

namespace workbench::language {

namespace {

using text::sentence;
using Kind = TokenInfoObj::Kind;
using Spec = UPSpecTypes::ParamSpec;

bool isAllowedWord(const Keyword& keyword, const std::string& word) {
  for (const std::string& allowed : keyword.allowed) {
    if (text::sameName(allowed, word)) return true;
  }
  return false;
}

bool keepsBounds(const Keyword& keyword, double number) {
  if (keyword.lower && (keyword.lower->isInclusive ? number < keyword.lower->value : number <= keyword.lower->value)) {
    return false;
  }
  return !keyword.upper ||
         (keyword.upper->isInclusive ? number <= keyword.upper->value : number < keyword.upper->value);
}

std::string_view withoutPlus(const TokenInfoObj& token) {
  std::string_view digits = token.getString();
  if (digits.starts_with('+')) digits.remove_prefix(1);
  return digits;
}

template <class Number>
std::optional<Number> numberOf(const TokenInfoObj& token) {
  if (token.getKind() != Kind::number) return std::nullopt;
  const std::string_view digits = withoutPlus(token);
  Number number = 0;
  const std::from_chars_result read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (read.ec != std::errc() || read.ptr != digits.data() + digits.size()) return std::nullopt;
  return number;
}

template <class Number>
bool isNumberWithin(const Keyword& keyword, const TokenInfoObj& token) {
  const std::optional<Number> number = numberOf<Number>(token);
  return number && keepsBounds(keyword, static_cast<double>(*number));
}

// " (> 0, <= 5)"; empty without bounds.
std::string boundsNotation(const Keyword& keyword) {
  std::string notation;
  if (keyword.lower) notation += fmt::format("{} {}", keyword.lower->isInclusive ? ">=" : ">", keyword.lower->value);
  if (keyword.upper) {
    notation += notation.empty() ? "" : ", ";
    notation += fmt::format("{} {}", keyword.upper->isInclusive ? "<=" : "<", keyword.upper->value);
  }
  return notation.empty() ? notation : " (" + notation + ")";
}

// The lowest and the highest whole number within the bounds, when both are set.
struct WholeRange {
  double lowest = 0;
  double highest = 0;
};
std::optional<WholeRange> wholeRange(const Keyword& keyword) {
  if (!keyword.lower || !keyword.upper) return std::nullopt;
  const double lowest =
      keyword.lower->isInclusive ? std::ceil(keyword.lower->value) : std::floor(keyword.lower->value) + 1;
  const double highest =
      keyword.upper->isInclusive ? std::floor(keyword.upper->value) : std::ceil(keyword.upper->value) - 1;
  return WholeRange{lowest, highest};
}

std::string wholeNumberPhrase(const Keyword& keyword) {
  if (const std::optional<WholeRange> range = wholeRange(keyword)) {
    return sentence("a whole number from ^1 to ^2",
                    {fmt::format("{}", range->lowest), fmt::format("{}", range->highest)});
  }
  return sentence("a whole number") + boundsNotation(keyword);
}

std::string orAllowedWords(std::string phrase, const Keyword& keyword) {
  std::vector<std::string> all{std::move(phrase)};
  all.insert(all.end(), keyword.allowed.begin(), keyword.allowed.end());
  return eitherOf(all);
}

std::string alternatives(std::string first, const Keyword& keyword) {
  for (const std::string& word : keyword.allowed) first += (first.empty() ? "" : "|") + word;
  return first;
}

}  // namespace

bool takesList(const Keyword& keyword) { return keyword.spec == Spec::nameList || keyword.spec == Spec::wordList; }

bool takes(const Keyword& keyword, const TokenInfoObj& token) {
  const Kind kind = token.getKind();
  const bool isAllowed = isAllowedWord(keyword, token.getString());
  const bool isFree = keyword.allowed.empty();
  switch (keyword.spec) {
    case Spec::nameList:
    case Spec::wordOrString:
      return (kind == Kind::word || kind == Kind::quotedString) && (isFree || isAllowed);
    case Spec::stringOrWord:
      return kind == Kind::quotedString || (kind == Kind::word && isAllowed);
    case Spec::wordList:
      return kind == Kind::word && (isFree || isAllowed);
    case Spec::number:
      return isNumberWithin<double>(keyword, token) || (kind == Kind::word && isAllowed);
    case Spec::integerOrWord:
      return isNumberWithin<std::int32_t>(keyword, token) || (kind == Kind::word && isAllowed);
  }
  return false;
}

std::string expectedValue(const Keyword& keyword) {
  const bool isFree = keyword.allowed.empty();
  switch (keyword.spec) {
    case Spec::nameList:
    case Spec::wordOrString:
      return isFree ? sentence("a name or a text in quotes") : eitherOf(keyword.allowed);
    case Spec::stringOrWord:
      return orAllowedWords(sentence("a text in quotes"), keyword);
    case Spec::wordList:
      return isFree ? sentence("a word") : eitherOf(keyword.allowed);
    case Spec::number:
      return orAllowedWords(sentence("a number") + boundsNotation(keyword), keyword);
    case Spec::integerOrWord:
      return orAllowedWords(wholeNumberPhrase(keyword), keyword);
  }
  return "";
}

std::string valueNotation(const Keyword& keyword) {
  const bool isFree = keyword.allowed.empty();
  switch (keyword.spec) {
    case Spec::nameList:
      return isFree ? sentence("name") + " ...|" + sentence("'text'") : alternatives("", keyword) + " ...";
    case Spec::wordOrString:
      return isFree ? sentence("name") + "|" + sentence("'text'") : alternatives("", keyword);
    case Spec::stringOrWord:
      return alternatives(sentence("'text'"), keyword);
    case Spec::wordList:
      return (isFree ? sentence("word") : alternatives("", keyword)) + " ...";
    case Spec::number:
      return alternatives(sentence("number") + boundsNotation(keyword), keyword);
    case Spec::integerOrWord: {
      const std::optional<WholeRange> range = wholeRange(keyword);
      const std::string whole = range ? fmt::format("{}..{}", range->lowest, range->highest)
                                      : sentence("whole number") + boundsNotation(keyword);
      return alternatives(whole, keyword);
    }
  }
  return "";
}

}  // namespace workbench::language
