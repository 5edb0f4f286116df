// Variables for tests of what is written.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "workbench/data/descriptors/field_values.h"
#include "workbench/data/descriptors/written_missing.h"
#include "workbench/data/dictionary.h"

namespace workbench::data {

inline Variable numeric(std::string name) {
  Variable variable;
  variable.name = std::move(name);
  return variable;
}

inline Variable textual(std::string name, std::int32_t width) {
  Variable variable = numeric(std::move(name));
  variable.width = width;
  variable.format = {FormatType::text, width, 0};
  variable.alignment = VRIX_Variable_Enumerations::Alignment::left;
  variable.level = VRIX_Variable_Enumerations::MeasurementLevel::nominal;
  return variable;
}

inline Variable dated(std::string name) {
  Variable variable = numeric(std::move(name));
  variable.format = {FormatType::date, 10, 0};
  return variable;
}

// With the variable "d" alone.
inline Dictionary oneDate() {
  Dictionary dictionary;
  dictionary.add(dated("d"));
  return dictionary;
}

// Discrete missing values.
inline Variable withMissing(Variable variable, const std::vector<double>& values) {
  variable.missing.code = static_cast<std::int32_t>(values.size());
  for (std::size_t index = 0; index < values.size(); ++index) {
    variable.missing.values[index] = missingValueOf(values[index]);
  }
  return variable;
}
inline Variable withMissingTexts(Variable variable, const std::vector<std::string>& values) {
  variable.missing.code = static_cast<std::int32_t>(values.size());
  for (std::size_t index = 0; index < values.size(); ++index) {
    variable.missing.values[index] = missingValueOf(values[index]);
  }
  return variable;
}

inline Variable withRange(Variable variable, std::int32_t code, const std::vector<double>& values) {
  variable.missing.code = code;
  for (std::size_t index = 0; index < values.size(); ++index) variable.missing.values[index].number = values[index];
  return variable;
}

inline std::string schemaNumber(double value) { return numberJson(value).dump(); }

}  // namespace workbench::data
