#include "tables/property_display.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <string_view>

namespace compdatas {

namespace {

constexpr const char* unknownKey = "CD_Unknown";

// Left, right, center: the host counts them in this order.
constexpr auto alignmentKeys = std::to_array<const char*>({"CD_Left", "CD_Right", "CD_Center"});
constexpr auto measurementLevelKeys =
    std::to_array<const char*>({unknownKey, "CD_Nominal", "CD_Ordinal", "CD_Scale", "CD_Flag", "CD_Typeless"});
constexpr auto roleKeys =
    std::to_array<const char*>({"CD_InputRole", "CD_TargetRole", "CD_BothRoles", "CD_NoneRole", "CD_PartitionRole",
                                "CD_SplitRole", "CD_FreqWeightRole", "CD_RecordIDRole"});

template <std::size_t size>
const char* keyOf(const std::array<const char*, size>& keys, std::int32_t number) {
  return number >= 0 && static_cast<std::size_t>(number) < size ? keys[static_cast<std::size_t>(number)] : unknownKey;
}

bool isConstant(const OBS* value, std::size_t machineConstant) {
  return std::bit_cast<std::uint64_t>(*value) ==
         std::bit_cast<std::uint64_t>(pvGetCmnMch()->constants[machineConstant]);
}

// How a range is laid out, by what its ends are and whether a discrete value stands beside it.
struct RangeRow {
  bool lowIsLowest;
  bool highIsHighest;
  const char* pattern;
  const char* patternWithValue;
};
constexpr auto rangeRows = std::to_array<RangeRow>({
    {false, false, "^1 - ^2", "^1 - ^2, ^3"},
    {true, false, "LO - ^1", "LO - ^1, ^2"},
    {false, true, "^1 - HI", "^1 - HI, ^2"},
    {true, true, "LO - HI", "LO - HI, ^1"},
});

const char* rangePattern(MissingValueSet& missing) {
  const bool lowIsLowest = isConstant(missing.value1, CmnMch::lowestValidNumber);
  const bool highIsHighest = isConstant(missing.value2, CmnMch::highestNumber);
  const bool withValue = missing.kind == -3;
  if (!lowIsLowest) missing.slots.push_back(0);
  if (!highIsHighest) missing.slots.push_back(1);
  if (withValue) missing.slots.push_back(2);
  const auto* row = std::find_if(rangeRows.begin(), rangeRows.end(), [&](const RangeRow& candidate) {
    return candidate.lowIsLowest == lowIsLowest && candidate.highIsHighest == highIsHighest;
  });
  return withValue ? row->patternWithValue : row->pattern;
}

bool isDiscrete(const MissingValueSet& missing) { return missing.kind >= 1 && missing.kind <= 3; }

// Of a string's missing value no more than its first 8 bytes are kept, and no more than the string is wide count.
std::string_view missingText(const OBS& value, std::int32_t width) {
  std::string_view text(value.text, std::min<std::size_t>(static_cast<std::size_t>(width), sizeof value.text));
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

}  // namespace

const char* AlignmentKey(VRIX_Variable_Enumerations::Alignment alignment) {
  return keyOf(alignmentKeys, static_cast<std::int32_t>(alignment));
}

const char* MeasurementLevelKey(VRIX_Variable_Enumerations::MeasurementLevel level) {
  return keyOf(measurementLevelKeys, static_cast<std::int32_t>(level));
}

const char* RoleKey(VRIX_Variable_Enumerations::Role role) { return keyOf(roleKeys, static_cast<std::int32_t>(role)); }

MissingValueSet::MissingValueSet(const VRIX_Variable& ofVariable) : variable(ofVariable) {
  kind = variable.GetMissingValues(value1, value2, value3);
}

const char* MissingValuePattern(MissingValueSet& missing) {
  if (isDiscrete(missing)) {
    for (std::int32_t slot = 0; slot < missing.kind; ++slot) missing.slots.push_back(slot);
    return "[%1:, ^1:]1";
  }
  return missing.kind == -2 || missing.kind == -3 ? rangePattern(missing) : "";
}

void AddMissingValueCells(BpComposite& composite, const MissingValueSet& missing) {
  const std::array<const OBS*, 3> values = {missing.value1, missing.value2, missing.value3};
  const std::int32_t width = missing.variable.GetType();
  if (isDiscrete(missing)) composite.Sublist();
  for (const std::int32_t slot : missing.slots) {
    const OBS& value = *values[static_cast<std::size_t>(slot)];
    if (width != 0) {
      composite.Add(BpDataValue(missing.variable, missingText(value, width), BpValueShow::inPrintFormat));
    } else {
      composite.Add(BpDataValue(missing.variable, value.number, BpValueShow::inPrintFormat));
    }
  }
  if (isDiscrete(missing)) composite.EndSublist();
  composite.Finish();
}

void writeTwoValues(BpCategory& category, const BpCellText& active, const BpCellText& compared) {
  BpComposite values("(1) ^1\n(2) ^2", false);
  values.Add(active);
  values.Add(compared);
  values.Finish();
  category.Cell(values);
}

}  // namespace compdatas
