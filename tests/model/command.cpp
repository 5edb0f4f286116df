#include "tests/model/command.h"

#include <algorithm>

namespace workbench::tests::model {

namespace {

std::string writtenWord(const Word& word) {
  if (!word.isQuoted) return word.text;
  std::string all = "'";
  for (const char character : word.text) all += character == '\'' ? std::string("''") : std::string(1, character);
  return all + "'";
}

std::string writtenValues(const std::vector<Word>& values) {
  std::string all;
  for (const Word& word : values) all += (all.empty() ? "" : word.isAfterComma ? "," : " ") + writtenWord(word);
  return all;
}

}  // namespace

Subcommand& Command::subcommand(const std::string& name) {
  const auto known = std::find_if(subcommands.begin(), subcommands.end(),
                                  [&](const Subcommand& subcommand) { return subcommand.name == name; });
  if (known != subcommands.end()) return *known;
  subcommands.push_back({name, std::nullopt, {}});
  return subcommands.back();
}

void Command::set(const std::string& subcommandName, const std::string& keyword, const Word& value) {
  subcommand(subcommandName).keywords.push_back({keyword, {value}});
}

std::string written(const Command& command) {
  std::string all;
  for (const Subcommand& subcommand : command.subcommands) {
    all += (all.empty() ? "/" : " /") + subcommand.name;
    if (subcommand.values) all += "=" + writtenValues(*subcommand.values);
    for (const Keyword& keyword : subcommand.keywords) all += ' ' + keyword.name + '=' + writtenValues(keyword.values);
  }
  return all;
}

}  // namespace workbench::tests::model
