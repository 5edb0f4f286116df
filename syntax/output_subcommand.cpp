#include "syntax/output_subcommand.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace compdatas {

namespace {

constexpr auto propertyKeywords = std::to_array<std::string_view>(
    {"MEASURE", "WIDTH", "LABEL", "VALUELABELS", "COLUMNS", "MISSING", "ALIGN", "ROLE", "ATTRIBUTES"});

bool isPropertyKeyword(std::string_view word) {
  return std::find(propertyKeywords.begin(), propertyKeywords.end(), word) != propertyKeywords.end();
}

// NONE and ALL stand alone; beside other words they are no property and refuse the whole list.
bool readVarProperties(const ParamObj& keyword, CompareOptions& options) {
  std::vector<std::string> words;
  if (!keyword.getUpStringList(words)) return true;
  if (words.size() == 1 && words.front() == "NONE") {
    options.setVarPropertiesNone();
    return true;
  }
  if (words.size() == 1 && words.front() == "ALL") {
    options.setVarPropertiesAll();
    return true;
  }
  if (!std::all_of(words.begin(), words.end(), isPropertyKeyword)) return false;
  options.setVarProperties(words);
  return true;
}

void readTableLimit(const ParamObj& keyword, CompareOptions& options) {
  if (keyword.isStringValueCase("NONE")) {
    options.setTableLimitNone();
    return;
  }
  std::int32_t limit = 0;
  if (keyword.getIntegerValue(limit)) options.setTableLimit(limit);
}

}  // namespace

bool readOutput(const SubComObj& subcommand, CompareOptions& options) {
  const ParamObj* varProperties = subcommand.getParamObj("VARPROPERTIES");
  const ParamObj* caseTable = subcommand.getParamObj("CASETABLE");
  const ParamObj* tableLimit = subcommand.getParamObj("TABLELIMIT");

  if (varProperties != nullptr && !readVarProperties(*varProperties, options)) return false;
  if (caseTable != nullptr && caseTable->isStringValueCase("NO")) options.setCaseTable(false);
  if (tableLimit != nullptr) readTableLimit(*tableLimit, options);
  return true;
}

}  // namespace compdatas
