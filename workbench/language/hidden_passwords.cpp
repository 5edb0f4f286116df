#include "workbench/language/hidden_passwords.h"

#include <array>

#include "workbench/text/folding.h"
#include "workbench/text/nearest_word.h"

namespace workbench::language {

namespace {

constexpr std::size_t misspellings = 2;

using Kind = TokenInfoObj::Kind;

// One past the last value of the keyword that stands at `keyword`; the first value where the function says.
struct ValueRange {
  std::size_t first = 0;
  std::size_t end = 0;
};

ValueRange valuesOf(const std::vector<PlacedToken>& tokens, std::size_t keyword) {
  const bool hasSign = keyword + 1 < tokens.size() && isPunctuation(tokens[keyword + 1].token, "=");
  const std::size_t first = keyword + (hasSign ? 2 : 1);
  // A keyword whose "=" is missing: only a string can have been meant as its value.
  if (!hasSign) {
    const bool isString = first < tokens.size() && tokens[first].token.getKind() == Kind::quotedString;
    return {first, first + (isString ? 1 : 0)};
  }
  std::size_t end = first;
  while (end < tokens.size()) {
    const PlacedToken& token = tokens[end];
    // An unquoted password may hold any character, so what follows it without a blank is part of it.
    const bool goesOn =
        end > first && tokens[end - 1].token.getKind() != Kind::quotedString && tokens[end - 1].end == token.begin;
    const bool startsKeyword =
        token.token.getKind() == Kind::word && end + 1 < tokens.size() && isPunctuation(tokens[end + 1].token, "=");
    if (!goesOn && (isPunctuation(token.token, "/") || startsKeyword)) break;
    ++end;
  }
  return {first, end};
}

}  // namespace

bool isPasswordKeyword(std::string_view name) {
  const std::string folded = text::foldedName(name);
  return folded.ends_with("pass") || folded.ends_with("password") ||
         text::editDistance(folded, "password", misspellings) <= misspellings;
}

std::string shownSyntax(std::string_view job, const CommandText& command) {
  std::string shown;
  std::size_t copied = command.begin;
  const std::vector<PlacedToken>& tokens = command.tokens;
  for (std::size_t at = 0; at < tokens.size(); ++at) {
    const bool isKeyword = tokens[at].token.getKind() == Kind::word && isPasswordKeyword(tokens[at].token.getString());
    if (!isKeyword) continue;
    const ValueRange values = valuesOf(tokens, at);
    if (values.first == values.end) continue;
    shown.append(job.substr(copied, tokens[values.first].begin - copied)).append(hiddenPassword);
    copied = tokens[values.end - 1].end;
    at = values.end - 1;
  }
  return shown.append(job.substr(copied, command.end - copied));
}

}  // namespace workbench::language
