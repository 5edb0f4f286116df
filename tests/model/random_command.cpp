#include "tests/model/random_command.h"

#include <algorithm>
#include <cctype>

#include "tests/model/grammar.h"
#include "tests/model/naive_outputs.h"
#include "tests/model/observed_run.h"
#include "tests/model/random_choice.h"

namespace workbench::tests::model {

namespace {

using Words = std::vector<Word>;

Words anyNames(const Dataset& dataset) {
  Words names;
  for (const Variable& variable : dataset.variables) {
    if (!oneIn(3)) names.push_back(nameWord(variable.name));
  }
  return shuffled(std::move(names));
}

Word anyName(const Dataset& dataset) {
  return dataset.variables.empty() ? Word{"unknown"} : nameWord(anyOf(dataset.variables).name);
}

Words anyVariableList(const Dataset& dataset) {
  if (!oneIn(3)) return {{"ALL"}};
  Words names = anyNames(dataset);
  if (oneIn(4)) names.insert(names.begin() + static_cast<std::ptrdiff_t>(upTo(names.size())), Word{"unknown"});
  if (oneIn(8)) names.push_back({"no such", true});
  if (oneIn(6)) names = {anyName(dataset), {"to"}, anyName(dataset)};
  if (oneIn(30)) names.push_back({"TO"});
  if (oneIn(30)) names.insert(names.begin(), Word{"all"});
  if (oneIn(30) && !names.empty()) names.push_back(names.front());
  return names;
}

Words anyCaseIds(const Dataset& dataset) {
  Words ids = anyNames(dataset);
  if (ids.size() > 4) ids.resize(4);
  if (oneIn(30)) ids.push_back({"unknown"});
  if (oneIn(40)) ids = {{"all"}};
  return ids;
}

// How the comparison dataset is named: mostly as the open one.
Subcommand anyComparison(const World& world) {
  Subcommand comparison{"COMPDATASET", Words{{inAnyCase("b")}}, {}};
  if (!world.compared.path.empty() && oneIn(2)) comparison.values = Words{{world.compared.path, true}};
  if (oneIn(6)) comparison.keywords.push_back({"PASSWORD", {{anyOf<std::string>({"", "sesame"}), true}}});
  if (!oneIn(25)) return comparison;
  switch (upTo(6)) {
    case 0:
      comparison.values = Words{{"a"}};
      break;
    case 1:
      comparison.values = Words{{"A"}};
      break;
    case 2:
      comparison.values = Words{{"*"}};
      break;
    case 3:
      comparison.values = Words{{"nosuch"}};
      break;
    case 4:
      comparison.values = Words{{scratchFile("nosuch.csv"), true}};
      break;
    case 5:
      comparison.values = Words{{"b"}, {"a"}};
      break;
    default:
      comparison.values.reset();
  }
  return comparison;
}

Word anyOutputName(const World& world, bool usesFiles) {
  if (!usesFiles && !oneIn(8)) return anyOf<Word>({{"agreed"}, {"differing"}, {"Further", true}, {"further_1"}});
  if (!usesFiles) return anyOf<Word>({{"agreed"}, {"AGREED"}, {"A"}, {"b"}, {"*"}});
  if (oneIn(2)) return anyOf<Word>({{outputFile("o.csv"), true}, {outputFile("O.csv"), true}});
  const Words names = {
      {"agreed"},
      {"differing"},
      {outputFile("o.csv"), true},
      {outputFile("O.csv"), true},
      {"Agreed"},
      {"agreed", true},
      {outputFile("./o.csv"), true},
      {outputFile("none/o.csv"), true},
      {outputFile("o.unknown"), true},
      {"A"},
      {"b"},
      {"*"},
      {world.compared.path.empty() ? outputFile("p.csv") : world.compared.path, true},
      {world.active.path.empty() ? outputFile("q.csv") : world.active.path, true},
  };
  return anyOf(names);
}

// A password that is heeded makes a dataset's name unusable. What data files make of one is not looked at here, so none
// is given where it would be theirs.
Word anyPassword(const Words& names) {
  const bool isForDataset = names.size() != 1 || isHandle(names.front().text);
  return anyOf<Word>(isForDataset ? Words{{"NONE"}, {"", true}, {"sesame", true}} : Words{{"NONE"}, {"", true}});
}

void addSavedCases(Command& command, const World& world, bool usesFiles, bool usesPasswords, const std::string& kind) {
  if (!usesPasswords && !oneIn(2)) return;
  command.set("SAVE", kind + "DATASET", {oneIn(8) ? "no" : "YES", oneIn(12)});
  Words names;
  if (!oneIn(4)) names.push_back(anyOutputName(world, usesFiles));
  if (oneIn(25)) names.push_back({"further"});
  if (!names.empty()) command.subcommand("SAVE").keywords.push_back({kind + "NAME", names});
  if (usesPasswords && !oneIn(4)) command.set("SAVE", kind + "PASS", anyPassword(names));
}

void addSave(Command& command, const World& world, bool usesFiles) {
  if (oneIn(4)) command.set("SAVE", "FLAGMISMATCHES", {oneIn(3) ? "yes" : "NO", oneIn(10)});
  if (oneIn(5)) {
    const Words names = {{"flag"}, {"CASESCOMPARE"}, {"two words", true}, {"", true}, {"a"}, {"\u00c9t\u00e9"}};
    command.set("SAVE", "VARNAME", anyOf(names));
  }
  const bool usesPasswords = oneIn(15);
  addSavedCases(command, world, usesFiles, usesPasswords, "MATCH");
  addSavedCases(command, world, usesFiles, usesPasswords, "MISMATCH");
  if (oneIn(10)) command.set("SAVE", "ENCRYPTEDPW", {oneIn(2) ? "YES" : "NO"});
}

void addOutput(Command& command) {
  static const std::vector<std::string> properties = {"MEASURE", "WIDTH", "LABEL", "VALUELABELS", "COLUMNS",
                                                      "MISSING", "ALIGN", "ROLE",  "ATTRIBUTES"};
  if (!oneIn(3)) {
    Words words;
    for (const std::string& property : shuffled(properties)) {
      if (oneIn(3)) words.push_back({property});
    }
    if (words.empty() || oneIn(2)) words = {{oneIn(6) ? "NONE" : "ALL"}};
    if (oneIn(20)) words.push_back(words.front());
    if (oneIn(60)) words.push_back({"NONE"});
    command.subcommand("OUTPUT").keywords.push_back({"VARPROPERTIES", words});
  }
  if (oneIn(4)) command.set("OUTPUT", "CASETABLE", {oneIn(3) ? "YES" : "NO", oneIn(10)});
  if (oneIn(3)) command.set("OUTPUT", "TABLELIMIT", {anyOf<std::string>({"1", "2", "none", "3", "10000"})});
}

// Something that the host's command parser does not take.
void addSyntaxError(Command& command) {
  switch (upTo(8)) {
    case 0:
      command.set("OUTPUT", "TABLELIMIT", {anyOf<std::string>({"0", "10001", "-5", "2.5", "many"})});
      break;
    case 1:
      command.set("OUTPUT", "CASETABLE", {"perhaps"});
      break;
    case 2:
      command.subcommand("OUTPUT").keywords.push_back({"VARPROPERTIES", {{"LABEL"}, {"COLOUR"}}});
      break;
    case 3:
      command.set("SAVE", "MATCHPASS", {"word"});
      break;
    case 4:
      command.set("SAVE", "FLAGS", {"YES"});
      break;
    case 5:
      command.subcommands.push_back({"VARIABLES", Words{{"ALL"}}, {}});
      break;
    case 6:
      command.subcommands.push_back({"CASES", Words{{"a"}}, {}});
      break;
    case 7:
      command.subcommand("SAVE").keywords.push_back({"FLAGMISMATCHES", {{"YES"}, {"NO"}}});
      break;
    default:
      command.set("VARIABLES", "PASSWORD", {"sesame", true});
  }
}

// Unknown names are shown as they are written, so these stay.
void rewriteWords(Words& words) {
  for (Word& word : words) {
    if (!word.isQuoted && word.text != "unknown") word.text = inAnyCase(word.text);
    if (&word != &words.front()) word.isAfterComma = oneIn(5);
  }
}

}  // namespace

Word nameWord(const std::string& name) { return {name, name.find(' ') != std::string::npos}; }

Command anyCommand(const World& world, bool usesFiles) {
  Command command;
  if (!oneIn(60)) command.subcommands.push_back(anyComparison(world));
  if (!oneIn(60)) {
    Subcommand variables{"VARIABLES", anyVariableList(world.active), {}};
    if (oneIn(40)) variables.values.reset();
    command.subcommands.push_back(variables);
  }
  if (!oneIn(3)) {
    Subcommand caseIds{"CASEID", anyCaseIds(world.active), {}};
    if (oneIn(40)) caseIds.values.reset();
    command.subcommands.push_back(caseIds);
  }
  addSave(command, world, usesFiles);
  addOutput(command);
  if (oneIn(30)) addSyntaxError(command);
  return command;
}

Command rewritten(const Command& command) {
  Command other = command;
  other.subcommands = shuffled(other.subcommands);
  for (Subcommand& subcommand : other.subcommands) {
    const bool namesVariables = sameName(subcommand.name, "VARIABLES") || sameName(subcommand.name, "CASEID");
    if (namesVariables && subcommand.values) rewriteWords(*subcommand.values);
    subcommand.name = inAnyCase(subcommand.name);
    subcommand.keywords = shuffled(subcommand.keywords);
    for (Keyword& keyword : subcommand.keywords) {
      const bool isName = folded(keyword.name).ends_with("name");
      keyword.name = inAnyCase(keyword.name);
      if (!isName) rewriteWords(keyword.values);
    }
  }
  return other;
}

std::vector<std::string> caseIdsOf(const Command& command) {
  std::vector<std::string> ids;
  const Subcommand* given = find(command, "CASEID");
  if (given == nullptr || !given->values) return ids;
  for (const Word& word : *given->values) ids.push_back(word.text);
  return ids;
}

}  // namespace workbench::tests::model
