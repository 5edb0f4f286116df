#include "workbench/data/descriptors/dictionary_check.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "workbench/data/cells/system_missing.h"
#include "workbench/data/descriptors/missing_codes.h"
#include "workbench/data/descriptors/statistics_words.h"
#include "workbench/text/string_comparison.h"
#include "workbench/text/utf8.h"

namespace workbench::data {
namespace {

// A part of a variable that cannot be written: "The label".
using Fault = std::optional<std::string>;

template <class Rows, class Meaning>
bool isAmong(const Rows& rows, Meaning meaning) {
  return std::any_of(rows.begin(), rows.end(), [=](const auto& row) { return row.meaning == meaning; });
}

Fault attributesFault(const DatasourceAttributes& attributes) {
  if (attributes.Size() > mostAttributes) return fmt::format("attributes are more than {}", mostAttributes);
  for (std::int32_t index = 0; index < attributes.Size(); ++index) {
    const std::vector<std::string>& values = attributes.Values(index);
    const bool areTexts =
        text::isUtf8(attributes.Name(index)) && std::all_of(values.begin(), values.end(), text::isUtf8);
    if (!areTexts) return fmt::format("attribute {} is no UTF-8", index + 1);
  }
  return std::nullopt;
}

Fault nameFault(const Variable& variable) {
  if (!text::isUtf8(variable.name)) return "name is no UTF-8";
  if (variable.name.find('\0') != std::string::npos) return "name holds a NUL character";
  return std::nullopt;
}

Fault formatFault(const Variable& variable) {
  const PrintFormat& format = variable.format;
  const bool isKnown = std::any_of(std::begin(formatTypeRows), std::end(formatTypeRows),
                                   [&](const FormatTypeRow& row) { return row.type == format.type; });
  if (!isKnown) return fmt::format("print format has the type {}, which has no name", static_cast<int>(format.type));
  if ((format.type == FormatType::text) == variable.isNumeric()) {
    return variable.isNumeric() ? "print format is one of strings" : "print format is one of numbers";
  }
  if (format.width < 1 || format.width > widestFormat(format.type)) {
    return fmt::format("print format has the width {}; it has to be 1 to {}", format.width, widestFormat(format.type));
  }
  const std::int64_t most = mostDecimalsOf(format.type, format.width);
  if (format.decimals >= 0 && format.decimals <= most) return std::nullopt;
  return fmt::format("print format has {} decimals; they have to be 0 to {}", format.decimals, most);
}

Fault storageFault(const Variable& variable) {
  if (variable.width >= 0 && variable.width <= widestStorage) return std::nullopt;
  return fmt::format("storage width is {}; it has to be 1 to {}", variable.width, widestStorage);
}

Fault displayFault(const Variable& variable) {
  if (variable.displayWidth >= 1 && variable.displayWidth <= widestDisplay) return std::nullopt;
  return fmt::format("display width is {}; it has to be 1 to {}", variable.displayWidth, widestDisplay);
}

Fault alignmentFault(const Variable& variable) {
  return isAmong(alignmentWords, variable.alignment) ? std::nullopt : Fault("alignment has no name");
}

Fault levelFault(const Variable& variable) {
  return isAmong(levelWords, variable.level) ? std::nullopt : Fault("measurement level has no name");
}

Fault roleFault(const Variable& variable) {
  return isAmong(roleWords, variable.role) ? std::nullopt : Fault("role has no name");
}

bool isValue(double number) { return std::isfinite(number) && number != systemMissing; }

Fault labelFault(const Variable& variable) {
  return variable.label && !text::isUtf8(*variable.label) ? Fault("label is no UTF-8") : std::nullopt;
}

Fault valueLabelsFault(const Variable& variable) {
  if (variable.isNumeric()) {
    std::set<double> known;
    for (const auto& [value, label] : variable.numberLabels) {
      if (!isValue(value)) return fmt::format("value label \"{}\" belongs to no value", label);
      if (!text::isUtf8(label)) return fmt::format("label of the value {} is no UTF-8", value);
      if (!known.insert(value).second) return fmt::format("value {} has two labels", value);
    }
    return std::nullopt;
  }
  std::set<std::string_view> known;
  for (const auto& [value, label] : variable.textLabels) {
    if (!text::isUtf8(value) || !text::isUtf8(label)) return "value labels hold one that is no UTF-8";
    if (!known.insert(text::withoutTrailingBlanks(value)).second)
      return fmt::format("value \"{}\" has two labels", value);
  }
  return std::nullopt;
}

Fault missingFault(const Variable& variable) {
  const MissingValues& missing = variable.missing;
  const std::optional<std::size_t> count = missingCount(missing.code);
  if (!count) return fmt::format("missing values have the code {}, which stands for nothing", missing.code);
  if (!variable.isNumeric()) {
    if (isRange(missing.code)) return "missing values are a range, and it is a string";
    for (std::size_t index = 0; index < *count; ++index) {
      if (!text::isUtf8(missingText(missing.values[index])))
        return fmt::format("missing value {} is no UTF-8", index + 1);
    }
    return std::nullopt;
  }
  for (std::size_t index = 0; index < *count; ++index) {
    if (!isValue(missing.values[index].number)) return fmt::format("missing value {} is no value", index + 1);
  }
  const bool isReversed = isRange(missing.code) && missing.values[0].number > missing.values[1].number;
  if (isReversed) return "range of missing values has its lower end above the upper one";
  return std::nullopt;
}

// A fault, and what is written instead of what has it.
struct FaultRow {
  Fault (*find)(const Variable&);
  void (*leaveOut)(Variable&);
};
constexpr auto faultsOfVariables = std::to_array<FaultRow>({
    {nameFault, [](Variable&) {}},
    {storageFault, [](Variable&) {}},  // a width that cannot be told is left to be inferred
    {formatFault,
     [](Variable& variable) {
       variable.format = variable.isNumeric()
                             ? PrintFormat()
                             : PrintFormat{FormatType::text, std::clamp(variable.width, 1, widestStorage), 0};
     }},
    {displayFault,
     [](Variable& variable) { variable.displayWidth = std::clamp(variable.displayWidth, 1, widestDisplay); }},
    {alignmentFault, [](Variable& variable) { variable.alignment = Variable().alignment; }},
    {levelFault, [](Variable& variable) { variable.level = VRIX_Variable_Enumerations::MeasurementLevel::unknown; }},
    {roleFault, [](Variable& variable) { variable.role = Variable().role; }},
    {labelFault, [](Variable& variable) { variable.label.reset(); }},
    {valueLabelsFault,
     [](Variable& variable) {
       variable.numberLabels.clear();
       variable.textLabels.clear();
     }},
    {missingFault, [](Variable& variable) { variable.missing = MissingValues(); }},
    {[](const Variable& variable) { return attributesFault(variable.attributes); },
     [](Variable& variable) { variable.attributes = DatasourceAttributes(); }},
});

}  // namespace

std::optional<Problem> whyNotWritten(const Dictionary& dictionary) {
  if (dictionary.size() == 0) {
    return Problem{"A dictionary without variables cannot be written.", "", "Save one that has a variable, or none."};
  }
  for (std::int32_t index = 0; index < dictionary.size(); ++index) {
    const Variable& variable = dictionary.at(index);
    for (const FaultRow& row : faultsOfVariables) {
      const Fault found = row.find(variable);
      const bool isLeftToInference = row.find == storageFault;
      if (!found || isLeftToInference) continue;
      const std::string shown = nameFault(variable) ? fmt::to_string(index + 1) : fmt::format("\"{}\"", variable.name);
      return Problem{fmt::format("The dictionary cannot be written: of variable {} the {}.", shown, *found), "",
                     "Change it first."};
    }
  }
  if (const Fault found = attributesFault(dictionary.attributes)) {
    return Problem{fmt::format("The dictionary cannot be written: of the dataset the {}.", *found), "",
                   "Change it first."};
  }
  return std::nullopt;
}

WritableDictionary writablePartOf(const Dictionary& dictionary) {
  WritableDictionary writable{dictionary, {}};
  for (std::int32_t index = 0; index < dictionary.size(); ++index) {
    Variable& variable = writable.dictionary.at(index);
    for (const FaultRow& row : faultsOfVariables) {
      const Fault found = row.find(variable);
      if (!found) continue;
      row.leaveOut(variable);
      writable.losses.push_back(
          fmt::format("Its dictionary is written without a part: of variable \"{}\" the {}.", variable.name, *found));
    }
  }
  if (const Fault found = attributesFault(dictionary.attributes)) {
    writable.dictionary.attributes = DatasourceAttributes();
    writable.losses.push_back(fmt::format("Its dictionary is written without a part: of the dataset the {}.", *found));
  }
  return writable;
}

}  // namespace workbench::data
