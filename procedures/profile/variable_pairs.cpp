#include "procedures/profile/variable_pairs.h"

#include <algorithm>

#include "procedures/profile/value_equality.h"

namespace profile {

namespace {

constexpr std::int32_t onlyRange = -2;
constexpr std::int32_t rangeAndValue = -3;

// The plain number formats have units of their own; near numbers are equal under them alone.
bool isPlainNumber(FormatType type) { return type > FormatType::text && type <= FormatType::customE; }

DifferenceUnit unitOf(const VRIX_Variable& variable, FormatType type) {
  if (variable.GetType() != 0 || type == FormatType::duration) return DifferenceUnit::none;
  if (type == FormatType::date) return DifferenceUnit::days;
  if (type == FormatType::time || type == FormatType::dateTime) return DifferenceUnit::seconds;
  return DifferenceUnit::number;
}

bool haveSameType(const VRIX_Variable& left, const VRIX_Variable& right) {
  return (left.GetType() == 0) == (right.GetType() == 0);
}

VariablePair madePair(const VRIX_DataSource& active, std::int32_t activeIndex, const VRIX_DataSource& comparison,
                      std::int32_t comparisonIndex) {
  VariablePair pair;
  pair.active = &active.GetVariable(activeIndex);
  pair.comparison = &comparison.GetVariable(comparisonIndex);
  pair.index = {activeIndex, comparisonIndex};
  pair.width = {static_cast<std::size_t>(pair.active->GetType()), static_cast<std::size_t>(pair.comparison->GetType())};
  pair.isText = pair.active->GetType() != 0;
  FormatType type{};
  std::int32_t width = 0;
  pair.active->GetFormatEx(type, width, pair.decimals);
  pair.nearCounts = isPlainNumber(type);
  pair.unit = unitOf(*pair.active, type);
  if (!pair.isText) pair.missing = {MissingNumbers(*pair.active), MissingNumbers(*pair.comparison)};
  return pair;
}

}  // namespace

MissingNumbers::MissingNumbers(const VRIX_Variable& variable) {
  const OBS* values[3] = {nullptr, nullptr, nullptr};
  const std::int32_t kind = variable.GetMissingValues(values[0], values[1], values[2]);
  hasRange_ = kind == onlyRange || kind == rangeAndValue;
  if (hasRange_) {
    low_ = values[0]->number;
    high_ = values[1]->number;
  }
  if (kind == rangeAndValue) discrete_[discreteCount_++] = values[2]->number;
  const std::int32_t mostDiscrete = static_cast<std::int32_t>(discrete_.size());
  for (std::int32_t value = 0; kind <= mostDiscrete && value < kind; ++value) {
    discrete_[discreteCount_++] = values[value]->number;
  }
}

bool MissingNumbers::has(double number) const {
  if (isSystemMissing(number)) return true;
  if (hasRange_ && low_ <= number && number <= high_) return true;
  const auto end = discrete_.begin() + static_cast<std::ptrdiff_t>(discreteCount_);
  return std::find(discrete_.begin(), end, number) != end;
}

std::vector<VariablePair> pairVariables(const ProfileOptions& options, const VRIX_DataSource& active,
                                        const VRIX_DataSource& comparison, std::vector<std::string>& unpaired) {
  unpaired.insert(unpaired.end(), options.unknownNames.begin(), options.unknownNames.end());
  std::vector<std::int32_t> indexes = options.variables;
  std::sort(indexes.begin(), indexes.end());
  std::vector<VariablePair> pairs;
  for (const std::int32_t index : indexes) {
    if (std::find(options.caseIds.begin(), options.caseIds.end(), index) != options.caseIds.end()) continue;
    const VRIX_Variable& variable = active.GetVariable(index);
    const std::int32_t partner = comparison.FindVarIndex(variable.GetName(), FindOptions::standard);
    if (partner != -1 && haveSameType(variable, comparison.GetVariable(partner))) {
      pairs.push_back(madePair(active, index, comparison, partner));
    } else if (partner != -1 || !options.allVariables) {
      unpaired.push_back(variable.GetName());
    }
  }
  return pairs;
}

std::optional<std::vector<CaseIdVariable>> pairCaseIds(const ProfileOptions& options, const VRIX_DataSource& active,
                                                       const VRIX_DataSource& comparison) {
  std::vector<CaseIdVariable> ids;
  for (const std::int32_t index : options.caseIds) {
    const VRIX_Variable& variable = active.GetVariable(index);
    const std::int32_t partner = comparison.FindVarIndex(variable.GetName(), FindOptions::standard);
    if (partner == -1 || !haveSameType(variable, comparison.GetVariable(partner))) return std::nullopt;
    const std::int32_t width = variable.GetType();
    const std::int32_t partnerWidth = std::min(width, comparison.GetVariable(partner).GetType());
    ids.push_back({&variable,
                   {index, partner},
                   width != 0,
                   {static_cast<std::size_t>(width), static_cast<std::size_t>(partnerWidth)}});
  }
  return ids;
}

}  // namespace profile
