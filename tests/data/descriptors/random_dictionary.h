// Dictionaries of every shape, for the laws of what is written and read back, and what tells two of them apart.
//
// The functions that make something are called inside of a property's check.
#pragma once

#include <fmt/format.h>
#include <rapidcheck.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "tests/data/descriptors/descriptor_fixture.h"
#include "tests/data/descriptors/dictionary_builder.h"
#include "workbench/data/cells/system_missing.h"
#include "workbench/data/descriptors/missing_codes.h"
#include "workbench/data/descriptors/statistics_words.h"

namespace workbench::data {

using VRIX_Variable_Enumerations::Alignment;
using VRIX_Variable_Enumerations::MeasurementLevel;
using VRIX_Variable_Enumerations::Role;

inline rc::Gen<std::string> validText() {
  const auto piece = rc::gen::element<std::string>("a", "B", " ", "  ", "0", "-9", "\"", "\\", "/", "~", "\n", "\t",
                                                   "\x01", "\x7F", std::string(1, '\0'), "é", "ß", "日", "😀", "\u2028",
                                                   "\uFFFD", "\uFFFE", "\u0301", "NA", "LO", "{", "$");
  return rc::gen::map(rc::gen::resize(12, rc::gen::container<std::vector<std::string>>(piece)),
                      [](const std::vector<std::string>& pieces) {
                        std::string text;
                        for (const std::string& one : pieces) text += one;
                        return text;
                      });
}

inline rc::Gen<double> number() {
  const auto special = rc::gen::element<double>(
      0.0, -0.0, 1.0, -9.0, 99.5, 0.1, 1.0 / 3, 1e21, 1e22, 1e-7, 5e-324, 2.2250738585072014e-308, DBL_MAX,
      std::nextafter(-DBL_MAX, 0.0), 9007199254740992.0, 9007199254740994.0, -9007199254740992.0, 4503599627370497.5,
      123456789.123456789, 20'000.0, 43'200.25, 1e9 + 0.125);
  const auto byBits = rc::gen::suchThat(
      rc::gen::map(rc::gen::arbitrary<std::uint64_t>(), [](std::uint64_t bits) { return std::bit_cast<double>(bits); }),
      [](double value) { return std::isfinite(value) && value != systemMissing; });
  const auto whole = rc::gen::map(rc::gen::inRange(-3000, 3000), [](int value) { return static_cast<double>(value); });
  return rc::gen::oneOf(special, byBits, whole);
}

template <class Meaning, std::size_t size>
Meaning oneOf(const std::array<WordRow<Meaning>, size>& rows) {
  return rows[*rc::gen::inRange<std::size_t>(0, size)].meaning;
}

inline DatasourceAttributes someAttributes() {
  DatasourceAttributes attributes;
  const auto names = *rc::gen::resize(6, rc::gen::container<std::vector<std::string>>(validText()));
  for (const std::string& name : names)
    attributes.Add(name, *rc::gen::resize(6, rc::gen::container<std::vector<std::string>>(validText())));
  return attributes;
}

inline std::string withoutBlanksAtItsEnd(std::string text) { return text.erase(text.find_last_not_of(' ') + 1); }

// A text of at most 8 bytes that is UTF-8.
inline std::string shortText() {
  std::string text = *rc::gen::suchThat(validText(), [](const std::string& each) { return each.size() <= 8; });
  return withoutBlanksAtItsEnd(text);
}

inline PrintFormat someFormat(bool isText, std::int32_t storageWidth) {
  if (isText) return {FormatType::text, *rc::gen::element(storageWidth, 1, 32767), 0};
  const FormatTypeRow& row = *rc::gen::suchThat(
      rc::gen::elementOf(std::vector<FormatTypeRow>(std::begin(formatTypeRows), std::end(formatTypeRows))),
      [](const FormatTypeRow& each) { return each.type != FormatType::text; });
  const auto width = *rc::gen::inRange<std::int32_t>(1, widestNumber + 1);
  return {row.type, width, *rc::gen::inRange<std::int32_t>(0, mostDecimalsOf(row.type, width) + 1)};
}

inline MissingValues someMissing(bool isText) {
  MissingValues missing;
  missing.code = *rc::gen::element(0, 0, 1, 2, 3, -2, -3);
  if (isText && missing.code < 0) missing.code = -missing.code;
  for (OBS& value : missing.values) value = missingValueOf(isText ? FieldValue(shortText()) : FieldValue(*number()));
  if (missing.code < 0 && missing.values[0].number > missing.values[1].number) {
    std::swap(missing.values[0], missing.values[1]);
  }
  return missing;
}

// Labels of some values, missing ones among them.
inline void giveLabels(Variable& variable) {
  const std::size_t missingOnes = missingCount(variable.missing.code).value_or(0);
  const auto some = *rc::gen::inRange(0, 4);
  if (variable.isNumeric()) {
    std::map<double, std::string> labels;
    for (int index = 0; index < some; ++index) labels.emplace(*number(), *validText());
    for (std::size_t index = 0; index < missingOnes; ++index) {
      if (*rc::gen::arbitrary<bool>()) labels.emplace(variable.missing.values[index].number, *validText());
    }
    variable.numberLabels.assign(labels.begin(), labels.end());
    return;
  }
  std::map<std::string, std::string> labels;
  for (int index = 0; index < some; ++index) labels.emplace(withoutBlanksAtItsEnd(*validText()), *validText());
  for (std::size_t index = 0; index < missingOnes; ++index) {
    if (*rc::gen::arbitrary<bool>()) labels.emplace(missingText(variable.missing.values[index]), *validText());
  }
  variable.textLabels.assign(labels.begin(), labels.end());
}

inline Variable someVariable(std::int32_t index) {
  Variable variable;
  std::string name = *validText();
  std::erase(name, '\0');
  variable.name = fmt::format("v{}{}", index, name);
  const bool isText = *rc::gen::arbitrary<bool>();
  if (isText) variable.width = *rc::gen::element<std::int32_t>(1, 7, 8, 9, 255, 32767);
  variable.format = someFormat(isText, variable.width);
  if (*rc::gen::arbitrary<bool>()) variable.label = *validText();
  variable.missing = someMissing(isText);
  giveLabels(variable);
  variable.displayWidth = *rc::gen::inRange<std::int32_t>(1, widestDisplay + 1);
  variable.alignment = oneOf(alignmentWords);
  variable.level = oneOf(levelWords);
  variable.role = oneOf(roleWords);
  if (*rc::gen::arbitrary<bool>()) variable.attributes = someAttributes();
  return variable;
}

inline Dictionary someDictionary() {
  Dictionary dictionary;
  const auto count = *rc::gen::inRange<std::int32_t>(1, 5);
  std::vector<std::int32_t> numbers = {-1};
  for (std::int32_t index = 0; index < count; ++index) {
    dictionary.add(someVariable(index));
    if (dictionary.at(index).isNumeric()) numbers.push_back(index);
  }
  dictionary.filter = *rc::gen::elementOf(numbers);
  dictionary.weight = *rc::gen::elementOf(numbers);
  for (std::int32_t index = 0; index < count; ++index) {
    if (*rc::gen::arbitrary<bool>()) dictionary.split.push_back(index);
  }
  dictionary.attributes = someAttributes();
  return dictionary;
}

inline bool areSameValues(const MissingValues& left, const MissingValues& right) {
  if (left.code != right.code) return false;
  for (std::size_t index = 0; index < missingCount(left.code).value_or(0); ++index) {
    if (std::memcmp(&left.values[index], &right.values[index], sizeof(OBS)) != 0) return false;
  }
  return true;
}

// The first property in which they differ; empty when there is none.
inline std::string difference(const Variable& left, const Variable& right) {
  if (left.name != right.name) return "name";
  if (left.width != right.width) return "width";
  if (shownFormat(left.format) != shownFormat(right.format)) return "format";
  if (left.label != right.label) return "label";
  if (left.numberLabels != right.numberLabels || left.textLabels != right.textLabels) return "value labels";
  if (!areSameValues(left.missing, right.missing)) return "missing values";
  if (left.displayWidth != right.displayWidth) return "display width";
  if (left.alignment != right.alignment || left.level != right.level || left.role != right.role) return "words";
  return left.attributes == right.attributes ? "" : "attributes";
}

inline std::string nameOf(const Dictionary& dictionary, std::int32_t index) {
  return index < 0 ? std::string() : dictionary.at(index).name;
}

}  // namespace workbench::data
