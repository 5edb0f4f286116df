#include "syntax/command_grammar.h"

#include <array>
#include <initializer_list>

namespace compdatas {

namespace {

using ParamSpec = UPSpecTypes::ParamSpec;
using SubComSpec = UPSpecTypes::SubComSpec;

// TABLELIMIT lies between the two, neither of them included: 1 to 10000.
constexpr double tableLimitAbove = 0.0;
constexpr double tableLimitBelow = 10001.0;

struct Keyword {
  const char* name;
  ParamSpec spec;
  std::initializer_list<const char*> allowedValues;
  bool hasBounds = false;
};

void addKeyword(SubComDescriptor& subcommand, const Keyword& keyword) {
  ParamDescriptor descriptor(keyword.name, keyword.spec, false, true, BracketOptions::none);
  for (const char* value : keyword.allowedValues) descriptor.addStringValue(value);
  if (keyword.hasBounds) {
    descriptor.setLowerBoundary(tableLimitAbove, UPSpecTypes::LowerBdryOptions::exclusive);
    descriptor.setUpperBoundary(tableLimitBelow, UPSpecTypes::UpperBdryOptions::exclusive);
  }
  subcommand.addParamDescriptor(descriptor);
}

SubComDescriptor subcommandWithValues(const char* name) {
  SubComDescriptor subcommand(name, SubComSpec::valuesThenKeywords, false, false);
  subcommand.setExportParamDesc(ParamSpec::nameList, false);
  return subcommand;
}

}  // namespace

void addSubcommands(CommandDescriptor& grammar) {
  SubComDescriptor compDataset = subcommandWithValues("COMPDATASET");
  addKeyword(compDataset, {"PASSWORD", ParamSpec::stringOrWord, {}});
  grammar.addSubComDescriptor(compDataset);

  grammar.addSubComDescriptor(subcommandWithValues("VARIABLES"));
  grammar.addSubComDescriptor(subcommandWithValues("CASEID"));

  SubComDescriptor save("SAVE", SubComSpec::keywordsOnly, false, false);
  addKeyword(save, {"FLAGMISMATCHES", ParamSpec::wordOrString, {"YES", "NO"}});
  addKeyword(save, {"VARNAME", ParamSpec::wordOrString, {}});
  addKeyword(save, {"MATCHDATASET", ParamSpec::wordOrString, {"YES", "NO"}});
  addKeyword(save, {"MATCHNAME", ParamSpec::nameList, {}});
  addKeyword(save, {"MATCHPASS", ParamSpec::stringOrWord, {"NONE"}});
  addKeyword(save, {"MISMATCHDATASET", ParamSpec::wordOrString, {"YES", "NO"}});
  addKeyword(save, {"MISMATCHNAME", ParamSpec::nameList, {}});
  addKeyword(save, {"MISMATCHPASS", ParamSpec::stringOrWord, {"NONE"}});
  grammar.addSubComDescriptor(save);
  addKeyword(save, {"ENCRYPTEDPW", ParamSpec::wordOrString, {"YES", "NO"}});
  grammar.addSubComDescriptor(save);

  SubComDescriptor output("OUTPUT", SubComSpec::keywordsOnly, false, false);
  addKeyword(output, {"VARPROPERTIES",
                      ParamSpec::wordList,
                      {"NONE", "ALL", "MEASURE", "LABEL", "VALUELABELS", "COLUMNS", "MISSING", "ALIGN", "ROLE",
                       "ATTRIBUTES", "WIDTH"}});
  addKeyword(output, {"CASETABLE", ParamSpec::wordOrString, {"YES", "NO"}});
  addKeyword(output, {"TABLELIMIT", ParamSpec::integerOrWord, {"NONE"}, true});
  grammar.addSubComDescriptor(output);
}

}  // namespace compdatas
