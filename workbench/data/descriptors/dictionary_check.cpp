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
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// Why a part of a variable or of the dataset cannot be written, as a clause: "the label is no UTF-8".
using Fault = std::optional<std::string>;

template <class Rows, class Meaning>
bool isAmong(const Rows& rows, Meaning meaning) {
  return std::any_of(rows.begin(), rows.end(), [=](const auto& row) { return row.meaning == meaning; });
}

Fault attributesFault(const DatasourceAttributes& attributes) {
  if (attributes.Size() > mostAttributes)
    return text::sentence("the attributes are more than ^1", {fmt::to_string(mostAttributes)});
  for (std::int32_t index = 0; index < attributes.Size(); ++index) {
    const std::vector<std::string>& values = attributes.Values(index);
    const bool areTexts =
        text::isUtf8(attributes.Name(index)) && std::all_of(values.begin(), values.end(), text::isUtf8);
    if (!areTexts) return text::sentence("the attribute ^1 is no UTF-8", {fmt::to_string(index + 1)});
  }
  return std::nullopt;
}

Fault nameFault(const Variable& variable) {
  if (!text::isUtf8(variable.name)) return text::sentence("the name is no UTF-8");
  if (variable.name.find('\0') != std::string::npos) return text::sentence("the name holds a NUL character");
  return std::nullopt;
}

Fault formatFault(const Variable& variable) {
  const PrintFormat& format = variable.format;
  const bool isKnown = std::any_of(std::begin(formatTypeRows), std::end(formatTypeRows),
                                   [&](const FormatTypeRow& row) { return row.type == format.type; });
  if (!isKnown)
    return text::sentence("the print format has the type ^1, which has no name",
                          {fmt::to_string(static_cast<int>(format.type))});
  if ((format.type == FormatType::text) == variable.isNumeric()) {
    return variable.isNumeric() ? text::sentence("the print format is one of strings")
                                : text::sentence("the print format is one of numbers");
  }
  if (format.width < 1 || format.width > widestFormat(format.type)) {
    return text::sentence("the print format has the width ^1; it has to be 1 to ^2",
                          {fmt::to_string(format.width), fmt::to_string(widestFormat(format.type))});
  }
  const std::int64_t most = mostDecimalsOf(format.type, format.width);
  if (format.decimals >= 0 && format.decimals <= most) return std::nullopt;
  return text::sentence("the print format has ^1 decimals; they have to be 0 to ^2",
                        {fmt::to_string(format.decimals), fmt::to_string(most)});
}

Fault storageFault(const Variable& variable) {
  if (variable.width >= 0 && variable.width <= widestStorage) return std::nullopt;
  return text::sentence("the storage width is ^1; it has to be 1 to ^2",
                        {fmt::to_string(variable.width), fmt::to_string(widestStorage)});
}

Fault displayFault(const Variable& variable) {
  if (variable.displayWidth >= 1 && variable.displayWidth <= widestDisplay) return std::nullopt;
  return text::sentence("the display width is ^1; it has to be 1 to ^2",
                        {fmt::to_string(variable.displayWidth), fmt::to_string(widestDisplay)});
}

Fault alignmentFault(const Variable& variable) {
  return isAmong(alignmentWords, variable.alignment) ? std::nullopt
                                                     : Fault(text::sentence("the alignment has no name"));
}

Fault levelFault(const Variable& variable) {
  return isAmong(levelWords, variable.level) ? std::nullopt
                                             : Fault(text::sentence("the measurement level has no name"));
}

Fault roleFault(const Variable& variable) {
  return isAmong(roleWords, variable.role) ? std::nullopt : Fault(text::sentence("the role has no name"));
}

bool isValue(double number) { return std::isfinite(number) && number != systemMissing; }

Fault labelFault(const Variable& variable) {
  return variable.label && !text::isUtf8(*variable.label) ? Fault(text::sentence("the label is no UTF-8"))
                                                          : std::nullopt;
}

Fault valueLabelsFault(const Variable& variable) {
  if (variable.isNumeric()) {
    std::set<double> known;
    for (const auto& [value, label] : variable.numberLabels) {
      if (!isValue(value)) return text::sentence("the value label \"^1\" belongs to no value", {label});
      if (!text::isUtf8(label)) return text::sentence("the label of the value ^1 is no UTF-8", {fmt::to_string(value)});
      if (!known.insert(value).second) return text::sentence("the value ^1 has two labels", {fmt::to_string(value)});
    }
    return std::nullopt;
  }
  std::set<std::string_view> known;
  for (const auto& [value, label] : variable.textLabels) {
    if (!text::isUtf8(value) || !text::isUtf8(label))
      return text::sentence("the value labels hold one that is no UTF-8");
    if (!known.insert(text::withoutTrailingBlanks(value)).second)
      return text::sentence("the value \"^1\" has two labels", {value});
  }
  return std::nullopt;
}

Fault missingFault(const Variable& variable) {
  const MissingValues& missing = variable.missing;
  const std::optional<std::size_t> count = missingCount(missing.code);
  if (!count)
    return text::sentence("the missing values have the code ^1, which stands for nothing",
                          {fmt::to_string(missing.code)});
  if (!variable.isNumeric()) {
    if (isRange(missing.code)) return text::sentence("the missing values are a range, and it is a string");
    for (std::size_t index = 0; index < *count; ++index) {
      if (!text::isUtf8(missingText(missing.values[index])))
        return text::sentence("the missing value ^1 is no UTF-8", {fmt::to_string(index + 1)});
    }
    return std::nullopt;
  }
  for (std::size_t index = 0; index < *count; ++index) {
    if (!isValue(missing.values[index].number))
      return text::sentence("the missing value ^1 is no value", {fmt::to_string(index + 1)});
  }
  const bool isReversed = isRange(missing.code) && missing.values[0].number > missing.values[1].number;
  if (isReversed) return text::sentence("the range of missing values has its lower end above the upper one");
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
    return Problem{text::sentence("A dictionary without variables cannot be written."), "",
                   text::sentence("Save one that has a variable, or none.")};
  }
  for (std::int32_t index = 0; index < dictionary.size(); ++index) {
    const Variable& variable = dictionary.at(index);
    for (const FaultRow& row : faultsOfVariables) {
      const Fault found = row.find(variable);
      const bool isLeftToInference = row.find == storageFault;
      if (!found || isLeftToInference) continue;
      const std::string shown = nameFault(variable) ? fmt::to_string(index + 1) : fmt::format("\"{}\"", variable.name);
      return Problem{text::sentence("The dictionary cannot be written: of variable ^1 ^2.", {shown, *found}), "",
                     text::sentence("Change it first.")};
    }
  }
  if (const Fault found = attributesFault(dictionary.attributes)) {
    return Problem{text::sentence("The dictionary cannot be written: of the dataset ^1.", {*found}), "",
                   text::sentence("Change it first.")};
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
          text::sentence("Its dictionary is written without a part: of variable \"^1\" ^2.", {variable.name, *found}));
    }
  }
  if (const Fault found = attributesFault(dictionary.attributes)) {
    writable.dictionary.attributes = DatasourceAttributes();
    writable.losses.push_back(text::sentence("Its dictionary is written without a part: of the dataset ^1.", {*found}));
  }
  return writable;
}

}  // namespace workbench::data
