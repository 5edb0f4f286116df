#include "workbench/language/job.h"

#include <algorithm>
#include <utility>

#include "workbench/language/hidden_passwords.h"
#include "workbench/language/syntax_report.h"
#include "workbench/text/folding.h"
#include "workbench/text/nearest_word.h"
#include "workbench/text/wording.h"

namespace workbench::language {

namespace {

using Kind = TokenInfoObj::Kind;
using Words = std::vector<std::string>;

constexpr std::size_t mostWordsOfUnknownName = 3;

Words wordsOf(const std::string& name) {
  Words words;
  for (const TokenInfoObj& token : tokensOf(name)) words.push_back(token.getString());
  return words;
}

std::string join(const Words& words, std::size_t count) {
  std::string name;
  for (std::size_t at = 0; at < std::min(count, words.size()); ++at) name += (at == 0 ? "" : " ") + words[at];
  return name;
}

// The words that a command starts with; one that "=" follows is a keyword already.
Words leadingWords(const std::vector<PlacedToken>& tokens) {
  Words words;
  for (std::size_t at = 0; at < tokens.size() && tokens[at].token.getKind() == Kind::word; ++at) {
    if (at + 1 < tokens.size() && isPunctuation(tokens[at + 1].token, "=")) break;
    words.push_back(tokens[at].token.getString());
  }
  return words;
}

bool startsWith(const Words& words, const Words& name) {
  return !name.empty() && name.size() <= words.size() &&
         std::equal(name.begin(), name.end(), words.begin(), text::sameName);
}

struct KnownName {
  std::string name;
  Words words;
};

const KnownName* longestMatch(const Words& words, const std::vector<KnownName>& known) {
  const KnownName* longest = nullptr;
  for (const KnownName& candidate : known) {
    if (longest != nullptr && candidate.words.size() <= longest->words.size()) continue;
    if (startsWith(words, candidate.words)) longest = &candidate;
  }
  return longest;
}

// The known name nearest to as many leading words as it has itself.
std::optional<std::string> nearestName(const Words& words, const std::vector<KnownName>& known) {
  std::size_t mostWords = 1;
  for (const KnownName& candidate : known) mostWords = std::max(mostWords, candidate.words.size());
  std::optional<std::string> nearest;
  for (std::size_t count = mostWords; count >= 1 && !nearest; --count) {
    Words names;
    for (const KnownName& candidate : known) {
      if (candidate.words.size() == count || count == 1) names.push_back(candidate.name);
    }
    nearest = text::nearestWord(join(words, count), names);
  }
  return nearest;
}

SyntaxError unknownCommand(const CommandText& text, const Words& words, const std::vector<KnownName>& known) {
  const auto at = [&](std::string what) { return SyntaxError{std::move(what), text.line, text.column}; };
  if (words.empty()) {
    return at(text::sentence("A command starts with its name; found ^1.", {shownToken(text.tokens.front().token)}));
  }
  const std::string name = join(words, mostWordsOfUnknownName);
  const std::optional<std::string> nearest = nearestName(words, known);
  if (nearest) return at(text::sentence("There is no command ^1. Did you mean ^2?", {name, *nearest}));
  std::string all;
  for (const KnownName& candidate : known) all += (all.empty() ? "" : ", ") + candidate.name;
  return at(text::sentence("There is no command ^1. The commands are: ^2.", {name, all}));
}

JobCommand jobCommand(std::string_view job, const CommandText& text, const std::vector<KnownName>& known) {
  JobCommand command;
  command.line = text.line;
  command.column = text.column;
  command.syntax = shownSyntax(job, text);
  command.error = text.error;

  const Words words = leadingWords(text.tokens);
  std::size_t wordsOfName = std::min(words.size(), mostWordsOfUnknownName);
  if (const KnownName* name = longestMatch(words, known); name != nullptr) {
    command.name = name->name;
    wordsOfName = name->words.size();
  } else {
    command.name = join(words, mostWordsOfUnknownName);
    if (!command.error) command.error = unknownCommand(text, words, known);
  }
  for (std::size_t at = wordsOfName; at < text.tokens.size(); ++at) command.tokens.push_back(text.tokens[at].token);
  return command;
}

}  // namespace

std::vector<JobCommand> readJob(std::string_view text, const std::vector<std::string>& knownNames) {
  std::vector<KnownName> known;
  for (const std::string& name : knownNames) known.push_back({name, wordsOf(name)});
  std::vector<JobCommand> commands;
  SourceCursor cursor(text);
  while (const std::optional<CommandText> command = nextCommand(cursor)) {
    commands.push_back(jobCommand(text, *command, known));
  }
  return commands;
}

}  // namespace workbench::language
