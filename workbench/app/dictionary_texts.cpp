#include "workbench/app/dictionary_texts.h"

#include <fmt/format.h>

#include <array>
#include <bit>
#include <cstdint>

#include "workbench/data/descriptors/missing_codes.h"

namespace workbench::app {

namespace {

using data::DictionaryVariable;
using data::MissingValues;

constexpr const char* unknownKey = "Unknown";
constexpr auto alignmentKeys = std::to_array<const char*>({"Left", "Right", "Center"});
constexpr auto levelKeys = std::to_array<const char*>({unknownKey, "Nominal", "Ordinal", "Scale", "Flag", "Typeless"});
constexpr auto roleKeys =
    std::to_array<const char*>({"Input", "Target", "Both", "None", "Partition", "Split", "Frequency", "Record ID"});

template <std::size_t size, class Enumeration>
const char* keyOf(const std::array<const char*, size>& keys, Enumeration value) {
  const auto index = static_cast<std::size_t>(value);
  return index < size ? keys[index] : unknownKey;
}

bool isConstant(const OBS& value, std::size_t machineConstant) {
  return std::bit_cast<std::uint64_t>(value) == std::bit_cast<std::uint64_t>(pvGetCmnMch()->constants[machineConstant]);
}

BpDataValue valueText(const DictionaryVariable& variable, const OBS& value) {
  if (variable.variable().isNumeric()) return {variable, value.number, BpValueShow::inPrintFormat};
  return {variable, data::missingText(value), BpValueShow::inPrintFormat};
}

}  // namespace

std::string formatText(const data::PrintFormat& format) {
  std::string name;
  for (const FormatTypeRow& row : formatTypeRows) {
    if (row.type == format.type) name = row.name;
  }
  return format.decimals > 0 ? fmt::format("{}{}.{}", name, format.width, format.decimals)
                             : fmt::format("{}{}", name, format.width);
}

const char* alignmentKey(VRIX_Variable_Enumerations::Alignment alignment) { return keyOf(alignmentKeys, alignment); }

const char* levelKey(VRIX_Variable_Enumerations::MeasurementLevel level) { return keyOf(levelKeys, level); }

const char* roleKey(VRIX_Variable_Enumerations::Role role) { return keyOf(roleKeys, role); }

BpComposite missingValuesText(const DictionaryVariable& variable) {
  const MissingValues& missing = variable.variable().missing;
  const bool isRange = data::isRange(missing.code);
  const bool hasValueBeside = missing.code == data::rangeAndValueCode;
  BpComposite text(isRange ? (hasValueBeside ? "^1 - ^2, ^3" : "^1 - ^2") : "[%1:, ^1:]1", false);
  if (isRange) {
    const auto add = [&](const OBS& end, std::size_t constant, const char* word) {
      if (isConstant(end, constant)) {
        text.Add(BpString(word, false));
      } else {
        text.Add(valueText(variable, end));
      }
    };
    add(missing.values[0], CmnMch::lowestValidNumber, "LO");
    add(missing.values[1], CmnMch::highestNumber, "HI");
    if (hasValueBeside) text.Add(valueText(variable, missing.values[2]));
  } else {
    text.Sublist();
    for (const OBS& value : data::discreteValues(missing)) text.Add(valueText(variable, value));
    text.EndSublist();
  }
  text.Finish();
  return text;
}

BpComposite listText(const std::vector<std::string>& texts) {
  BpComposite list("[%1:, ^1:]1", false);
  list.Sublist();
  for (const std::string& text : texts) list.Add(BpString(text, false));
  list.EndSublist();
  list.Finish();
  return list;
}

}  // namespace workbench::app
