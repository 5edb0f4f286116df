// Property display: how one dictionary property of one variable becomes the content of a cell.
#pragma once

#include <cstdint>
#include <vector>

#include "host/data.h"
#include "host/output.h"

namespace compdatas {

// Keys of what the host's enumerations mean; a number that stands for nothing is "CD_Unknown".
const char* AlignmentKey(VRIX_Variable_Enumerations::Alignment alignment);
const char* MeasurementLevelKey(VRIX_Variable_Enumerations::MeasurementLevel level);
const char* RoleKey(VRIX_Variable_Enumerations::Role role);

// The missing-value specification of one variable, as read for display. The values belong to the variable.
struct MissingValueSet {
  explicit MissingValueSet(const VRIX_Variable& ofVariable);

  std::int32_t kind = 0;        // as VRIX_Variable::GetMissingValues gives it
  const OBS* value1 = nullptr;  // of a range: the low end
  const OBS* value2 = nullptr;  // of a range: the high end
  const OBS* value3 = nullptr;  // beside a range: the discrete value
  const VRIX_Variable& variable;
  std::vector<std::int32_t> slots;  // which value fills each placeholder of the pattern, 0 for value1
};

// The pattern that lays the values out; fills the slots. Empty when there is nothing to show.
const char* MissingValuePattern(MissingValueSet& missing);

// Adds a value for each slot to a composite made on that pattern, and finishes it.
void AddMissingValueCells(BpComposite& composite, const MissingValueSet& missing);

// A cell that holds the active dataset's value and then the comparison dataset's.
void writeTwoValues(BpCategory& category, const BpCellText& active, const BpCellText& compared);

}  // namespace compdatas
