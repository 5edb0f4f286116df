#include "tests/model/naive_dictionary.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <bit>
#include <cstdint>

#include "tests/model/cell_text.h"
#include "tests/model/messages.h"

namespace workbench::tests::model {

namespace {

bool haveSameBits(const Value& left, const Value& right) {
  if (left.index() != right.index()) return false;
  if (left.index() == 1) return textOf(left) == textOf(right);
  return std::bit_cast<std::uint64_t>(numberOf(left)) == std::bit_cast<std::uint64_t>(numberOf(right));
}

bool missingValuesAgree(const MissingValues& left, const MissingValues& right) {
  const auto firstAgree = [&](std::size_t number) {
    for (std::size_t place = 0; place < number; ++place) {
      if (!haveSameBits(left.values[place], right.values[place])) return false;
    }
    return true;
  };
  if (left.code != right.code) return false;
  switch (left.code) {
    case 0:
      return true;
    case 1:
      return firstAgree(1);
    case 2:
    case -2:
      return firstAgree(2);
    case 3:
    case -3:
      return firstAgree(3);
    default:
      return false;  // what is not known is never the same, -1 least of all
  }
}

// Neither value labels nor attributes have an order.
bool labelsAgree(const Variable& left, const Variable& right) {
  return left.valueLabels.size() == right.valueLabels.size() &&
         std::all_of(left.valueLabels.begin(), left.valueLabels.end(), [&](const auto& labelled) {
           return std::count(right.valueLabels.begin(), right.valueLabels.end(), labelled) == 1;
         });
}

bool attributesAgree(const Variable& left, const Variable& right) {
  return left.attributes.size() == right.attributes.size() &&
         std::all_of(left.attributes.begin(), left.attributes.end(), [&](const Attribute& attribute) {
           return std::any_of(right.attributes.begin(), right.attributes.end(), [&](const Attribute& other) {
             return attribute.name == other.name && attribute.values == other.values;
           });
         });
}

std::set<std::string> differingProperties(const Variable& left, const Variable& right) {
  std::set<std::string> differing;
  if (left.level != right.level) differing.insert("measure");
  if (left.format.width != right.format.width) differing.insert("width");
  if (left.label.value_or("") != right.label.value_or("")) differing.insert("label");
  if (!labelsAgree(left, right)) differing.insert("valuelabels");
  if (!missingValuesAgree(left.missing, right.missing)) differing.insert("missing");
  if (left.columns != right.columns) differing.insert("columns");
  if (left.alignment != right.alignment) differing.insert("align");
  if (left.role != right.role) differing.insert("role");
  if (!attributesAgree(left, right)) differing.insert("attributes");
  return differing;
}

// Those whose names do not begin with "$".
template <class Use>
void forEachCustomAttribute(const Variable& variable, Use use) {
  for (const Attribute& attribute : variable.attributes) {
    if (!attribute.name.starts_with('$')) use(attribute.name, fmt::format("{}", fmt::join(attribute.values, ", ")));
  }
}

ComparedVariable compareVariables(const Variable& active, const Variable& compared,
                                  const std::set<std::string>& chosen) {
  ComparedVariable result;
  for (const std::string& property : differingProperties(active, compared)) {
    if (chosen.contains(property)) result.differing.insert(property);
  }
  forEachCustomAttribute(
      active, [&](const std::string& name, const std::string& text) { result.attributes[name].first = text; });
  forEachCustomAttribute(
      compared, [&](const std::string& name, const std::string& text) { result.attributes[name].second = text; });
  return result;
}

}  // namespace

ComparedDictionaries compareDictionaries(const World& world, const Options& options,
                                         const std::vector<CaseIdPlace>& caseIds) {
  std::set<std::size_t> examined(options.variables.begin(), options.variables.end());
  for (const CaseIdPlace& id : caseIds) examined.insert(id.active);

  ComparedDictionaries result;
  std::vector<std::string> uncompared = options.notInActive;
  if (!examined.empty()) result.properties = options.properties;
  for (const std::size_t place : examined) {
    const Variable& variable = world.active.variables[place];
    const auto partner = placeOf(world.compared, variable.name);
    if (!partner || world.compared.variables[*partner].isNumber() != variable.isNumber()) {
      uncompared.push_back(variable.name);
      continue;
    }
    ComparedVariable both = compareVariables(variable, world.compared.variables[*partner], options.properties);
    both.active = place;
    both.compared = *partner;
    both.isCaseId = std::any_of(caseIds.begin(), caseIds.end(), [&](const auto& id) { return id.active == place; });
    for (const auto& [name, texts] : both.attributes) result.attributeNames.insert(name);
    result.variables.push_back(both);
  }

  if (!uncompared.empty() && result.variables.empty()) {
    result.messages.push_back(messageLine(0, 3, say::noVariablesMatch));
    result.state = DictionaryState::nothingPaired;
  } else if (!uncompared.empty()) {
    std::vector<std::string> names;
    for (const std::string& name : uncompared) names.push_back(plain(name));
    result.messages.push_back(messageLine(4, 2, keyedComposite(uncomparedPattern, {list(names)})));
  }
  const bool allAgree = std::all_of(result.variables.begin(), result.variables.end(),
                                    [](const ComparedVariable& variable) { return variable.differing.empty(); });
  if (result.state == DictionaryState::differs && options.noProperties) {
    result.state = DictionaryState::nothingToShow;
  } else if (!result.variables.empty() && allAgree) {
    result.messages.push_back(messageLine(4, 1, say::allAttributesMatch));
    result.state = DictionaryState::nothingToShow;
  }
  return result;
}

}  // namespace workbench::tests::model
