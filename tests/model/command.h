// One COMPARE DATASETS command as it is written: subcommands, their unnamed values, their keywords, in their order.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace workbench::tests::model {

struct Word {
  std::string text;
  bool isQuoted = false;
  bool isAfterComma = false;  // instead of a blank; not of a first word
};

struct Keyword {
  std::string name;
  std::vector<Word> values;
};

struct Subcommand {
  std::string name;
  std::optional<std::vector<Word>> values;  // nothing: no "=" behind the name
  std::vector<Keyword> keywords;
};

struct Command {
  std::vector<Subcommand> subcommands;

  // The first of that name, made when there is none.
  Subcommand& subcommand(const std::string& name);
  // Gives a keyword one value.
  void set(const std::string& subcommandName, const std::string& keyword, const Word& value);
};

// What stands behind the command's name.
std::string written(const Command& command);

}  // namespace workbench::tests::model
