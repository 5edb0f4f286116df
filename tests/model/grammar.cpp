#include "tests/model/grammar.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace workbench::tests::model {

namespace {

enum class Takes { oneString, oneWordOrString, names, words, stringOrWord, wholeNumberOrWord };

struct KnownKeyword {
  const char* subcommand;
  const char* name;
  Takes takes;
  std::vector<std::string> allowed;
};

const std::vector<KnownKeyword>& knownKeywords() {
  static const std::vector<std::string> yesOrNo = {"YES", "NO"};
  static const std::vector<KnownKeyword> known = {
      {"COMPDATASET", "PASSWORD", Takes::oneString, {}},
      {"SAVE", "FLAGMISMATCHES", Takes::oneWordOrString, yesOrNo},
      {"SAVE", "VARNAME", Takes::oneWordOrString, {}},
      {"SAVE", "MATCHDATASET", Takes::oneWordOrString, yesOrNo},
      {"SAVE", "MATCHNAME", Takes::names, {}},
      {"SAVE", "MATCHPASS", Takes::stringOrWord, {"NONE"}},
      {"SAVE", "MISMATCHDATASET", Takes::oneWordOrString, yesOrNo},
      {"SAVE", "MISMATCHNAME", Takes::names, {}},
      {"SAVE", "MISMATCHPASS", Takes::stringOrWord, {"NONE"}},
      {"SAVE", "ENCRYPTEDPW", Takes::oneWordOrString, yesOrNo},
      {"OUTPUT",
       "VARPROPERTIES",
       Takes::words,
       {"NONE", "ALL", "MEASURE", "LABEL", "VALUELABELS", "COLUMNS", "MISSING", "ALIGN", "ROLE", "ATTRIBUTES",
        "WIDTH"}},
      {"OUTPUT", "CASETABLE", Takes::oneWordOrString, yesOrNo},
      {"OUTPUT", "TABLELIMIT", Takes::wholeNumberOrWord, {"NONE"}},
  };
  return known;
}

bool isNumeral(const std::string& text) {
  return !text.empty() && (std::isdigit(static_cast<unsigned char>(text.back())) != 0) &&
         text.find_first_not_of("-0123456789.") == std::string::npos;
}

bool isLimit(const Word& word) {
  if (word.isQuoted || word.text.find_first_not_of("0123456789") != std::string::npos) return false;
  const long limit = std::stol(word.text);
  return limit > 0 && limit < 10001;
}

bool isOneOf(const std::vector<std::string>& allowed, const Word& word) {
  return std::any_of(allowed.begin(), allowed.end(),
                     [&](const std::string& known) { return sameName(known, word.text); });
}

bool takesValue(const KnownKeyword& keyword, const Word& word) {
  const bool isPlainWord = !word.isQuoted && !isNumeral(word.text);
  switch (keyword.takes) {
    case Takes::oneString:
      return word.isQuoted;
    case Takes::oneWordOrString:
      return (word.isQuoted || isPlainWord) && (keyword.allowed.empty() || isOneOf(keyword.allowed, word));
    case Takes::names:
      return word.isQuoted || isPlainWord;
    case Takes::words:
      return isPlainWord && isOneOf(keyword.allowed, word);
    case Takes::stringOrWord:
      return word.isQuoted || isOneOf(keyword.allowed, word);
    case Takes::wholeNumberOrWord:
      return isLimit(word) || (isPlainWord && isOneOf(keyword.allowed, word));
  }
  return false;
}

bool isGrammatical(const Subcommand& subcommand, const Keyword& keyword) {
  for (const KnownKeyword& known : knownKeywords()) {
    if (!sameName(known.subcommand, subcommand.name) || !sameName(known.name, keyword.name)) continue;
    const bool takesMany = known.takes == Takes::names || known.takes == Takes::words;
    if (keyword.values.empty() || (keyword.values.size() > 1 && !takesMany)) return false;
    return std::all_of(keyword.values.begin(), keyword.values.end(),
                       [&](const Word& word) { return takesValue(known, word); });
  }
  return false;
}

bool isGrammatical(const Subcommand& subcommand) {
  static const std::set<std::string> takesValues = {"compdataset", "variables", "caseid"};
  static const std::set<std::string> takesKeywordsOnly = {"save", "output"};
  const std::string name = folded(subcommand.name);
  if (!takesValues.contains(name) && !takesKeywordsOnly.contains(name)) return false;
  if (subcommand.values && takesKeywordsOnly.contains(name)) return false;
  std::set<std::string> seen;
  for (const Keyword& keyword : subcommand.keywords) {
    if (!isGrammatical(subcommand, keyword) || !seen.insert(folded(keyword.name)).second) return false;
  }
  return true;
}

bool isTo(const Word& word) { return sameName(word.text, "to"); }
bool isAll(const Word& word) { return sameName(word.text, "all"); }

}  // namespace

const Subcommand* find(const Command& command, const std::string& name) {
  for (const Subcommand& subcommand : command.subcommands) {
    if (sameName(subcommand.name, name)) return &subcommand;
  }
  return nullptr;
}

const std::vector<Word>* find(const Subcommand& subcommand, const std::string& keyword) {
  for (const Keyword& given : subcommand.keywords) {
    if (sameName(given.name, keyword)) return &given.values;
  }
  return nullptr;
}

bool isGrammatical(const Command& command) {
  std::set<std::string> seen;
  for (const Subcommand& subcommand : command.subcommands) {
    if (!isGrammatical(subcommand) || !seen.insert(folded(subcommand.name)).second) return false;
  }
  return true;
}

std::optional<std::vector<std::size_t>> namedVariables(const std::vector<Word>& list, const Dataset& dataset) {
  std::vector<std::size_t> named;
  const auto name = [&](std::size_t first, std::size_t last) {
    for (std::size_t variable = first; variable <= last; ++variable) {
      if (std::find(named.begin(), named.end(), variable) != named.end()) return false;
      named.push_back(variable);
    }
    return true;
  };
  for (std::size_t at = 0; at < list.size(); ++at) {
    const bool isRange = at + 1 < list.size() && isTo(list[at + 1]);
    if (isTo(list[at]) || (isRange && (at + 2 == list.size() || isAll(list[at])))) return std::nullopt;
    if (isAll(list[at])) {
      if (!dataset.variables.empty() && !name(0, dataset.variables.size() - 1)) return std::nullopt;
      continue;
    }
    const std::size_t behind = isRange ? at + 2 : at;
    if (isRange && (isAll(list[behind]) || isTo(list[behind]))) return std::nullopt;
    const auto first = placeOf(dataset, list[at].text);
    const auto last = placeOf(dataset, list[behind].text);
    if (!first || !last || *last < *first || !name(*first, *last)) return std::nullopt;
    at = behind;
  }
  return named;
}

}  // namespace workbench::tests::model
