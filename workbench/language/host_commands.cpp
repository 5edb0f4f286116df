#include "workbench/language/host_commands.h"

#include "workbench/language/grammar_state.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/folding.h"

namespace workbench::language {

namespace {

using Spec = UPSpecTypes::ParamSpec;

struct KeywordRow {
  std::string_view name;
  Spec spec;
  bool required;
  std::vector<std::string_view> allowedWords = {};
};

struct CommandRow {
  std::string_view name;
  std::string_view title;
  std::vector<KeywordRow> keywords;
};

constexpr bool required = true;
constexpr bool optional = false;

const std::vector<CommandRow>& commandRows() {
  static const std::vector<CommandRow> rows = {
      // RENAME: old TO new, for every variable. Keywords of that beginning are about the file of TYPESWITH.
      {"OPEN DATA",
       "Open Data",
       {{"FILE", Spec::stringOrWord, required},
        {"PASSWORD", Spec::stringOrWord, optional},
        {"NAME", Spec::wordOrString, optional},
        {"TYPESWITH", Spec::stringOrWord, optional},
        {"TYPESPASSWORD", Spec::stringOrWord, optional},
        {"RENAME", Spec::nameList, optional},
        {"DROP", Spec::nameList, optional},
        {"TYPESRENAME", Spec::nameList, optional},
        {"TYPESDROP", Spec::nameList, optional}}},
      {"ACTIVATE DATASET", "Activate Dataset", {{"NAME", Spec::wordOrString, required}}},
      {"CLOSE DATASET", "Close Dataset", {{"NAME", Spec::wordOrString, required}}},
      {"SAVE DATA", "Save Data", {{"FILE", Spec::stringOrWord, required}, {"PASSWORD", Spec::stringOrWord, optional}}},
      // LIKE: texts are cut to the widths of that dataset's variables. WITH: that dataset is sorted as well, its texts
      // cut to the widths of the active one's variables. WHEN=NEEDED: cases in order stay as they are.
      {"SORT CASES",
       "Sort Cases",
       {{"BY", Spec::nameList, required},
        {"LIKE", Spec::wordOrString, optional},
        {"WITH", Spec::wordOrString, optional},
        {"WHEN", Spec::wordOrString, optional, {"NEEDED"}}}},
      // Tells what should be known before the active dataset is held against that one.
      {"CHECK DATASETS",
       "Check Datasets",
       {{"WITH", Spec::wordOrString, required}, {"KEYS", Spec::nameList, optional}}},
      {"FILTER CASES", "Filter Cases", {{"BY", Spec::wordOrString, required}}},
      {"WEIGHT CASES", "Weight Cases", {{"BY", Spec::wordOrString, required}}},
      {"SPLIT CASES", "Split Cases", {{"BY", Spec::nameList, required}}},
      {"DESCRIBE DATA", "Describe Data", {}},
      {"SET OPTIONS",
       "Set Options",
       {{"TOLERANCE", Spec::number, optional}, {"COLLATION", Spec::wordOrString, optional}}},
  };
  return rows;
}

CommandDescriptor descriptorOf(const CommandRow& row) {
  SubComDescriptor keywords("", UPSpecTypes::SubComSpec::keywordsOnly, optional, false);
  for (const KeywordRow& keyword : row.keywords) {
    ParamDescriptor descriptor(keyword.name, keyword.spec, keyword.required, true, BracketOptions::none);
    for (const std::string_view word : keyword.allowedWords) descriptor.addStringValue(word);
    // A tolerance below zero makes no sense; at one every two numbers of the same sign are near.
    if (keyword.spec == Spec::number) {
      descriptor.setLowerBoundary(0, UPSpecTypes::LowerBdryOptions::inclusive);
      descriptor.setUpperBoundary(1, UPSpecTypes::UpperBdryOptions::exclusive);
    }
    keywords.addParamDescriptor(descriptor);
  }
  CommandDescriptor command(row.name, row.title);
  command.addSubComDescriptor(keywords);
  return command;
}

}  // namespace

const std::vector<CommandDescriptor>& hostCommands() {
  static const std::vector<CommandDescriptor> commands = [] {
    const Journal::Pause pause(journal());
    std::vector<CommandDescriptor> all;
    all.reserve(commandRows().size());
    for (const CommandRow& row : commandRows()) all.push_back(descriptorOf(row));
    return all;
  }();
  return commands;
}

const CommandDescriptor* hostCommand(std::string_view name) {
  for (const CommandDescriptor& command : hostCommands()) {
    if (text::sameName(command.state().name, name)) return &command;
  }
  return nullptr;
}

std::vector<std::string> hostCommandNames() {
  std::vector<std::string> names;
  for (const CommandDescriptor& command : hostCommands()) names.push_back(command.state().name);
  return names;
}

}  // namespace workbench::language
