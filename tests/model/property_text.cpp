#include "tests/model/property_text.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "tests/model/cell_text.h"

namespace workbench::tests::model {

namespace {

std::string keyAt(const std::vector<std::string>& keys, int number) {
  const bool isKnown = number >= 0 && static_cast<std::size_t>(number) < keys.size();
  return isKnown ? keys[static_cast<std::size_t>(number)] : "CD_Unknown";
}

std::string shownValue(const Variable& variable, const Value& value) {
  if (variable.isNumber()) return valueText(variable, value);
  const auto bytes = static_cast<std::size_t>(std::min(variable.width, 8));
  return valueText(variable, Value(textOf(value).substr(0, bytes)));
}

// The ends of a range as words where they are the ends of all numbers.
bool isLowest(const Value& value) { return value.index() == 0 && numberOf(value) == std::nextafter(-DBL_MAX, 0); }
bool isHighest(const Value& value) { return value.index() == 0 && numberOf(value) == DBL_MAX; }

std::string rangeText(const Variable& variable, bool hasFurtherValue) {
  const auto& [low, high, further] = variable.missing.values;
  std::vector<std::string> items;
  std::string pattern;
  const auto add = [&](const Value& value) {
    items.push_back(shownValue(variable, value));
    pattern += "^" + std::to_string(items.size());
  };
  if (isLowest(low)) {
    pattern += "LO";
  } else {
    add(low);
  }
  pattern += " - ";
  if (isHighest(high)) {
    pattern += "HI";
  } else {
    add(high);
  }
  if (hasFurtherValue) {
    pattern += ", ";
    add(further);
  }
  return composite(pattern, items);
}

}  // namespace

std::string alignmentText(int alignment) { return keyAt({"CD_Left", "CD_Right", "CD_Center"}, alignment); }

std::string levelText(int level) {
  return keyAt({"CD_Unknown", "CD_Nominal", "CD_Ordinal", "CD_Scale", "CD_Flag", "CD_Typeless"}, level);
}

std::string roleText(int role) {
  return keyAt({"CD_InputRole", "CD_TargetRole", "CD_BothRoles", "CD_NoneRole", "CD_PartitionRole", "CD_SplitRole",
                "CD_FreqWeightRole", "CD_RecordIDRole"},
               role);
}

std::string missingValuesText(const Variable& variable) {
  const int code = variable.missing.code;
  if (code == -2 || code == -3) return rangeText(variable, code == -3);
  if (code < 1 || code > 3) return composite("", {});
  std::vector<std::string> items;
  for (int place = 0; place < code; ++place) {
    items.push_back(shownValue(variable, variable.missing.values[static_cast<std::size_t>(place)]));
  }
  return composite("[%1:, ^1:]1", {list(items)});
}

}  // namespace workbench::tests::model
