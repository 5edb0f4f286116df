// Descriptors for tests: written into a folder that goes away, read, and shown as short texts.
#pragma once

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/data/files/file_fixture.h"
#include "workbench/data/cells/decimal_text.h"
#include "workbench/data/descriptors/find_description.h"

namespace workbench::data {

inline std::string withoutFolder(std::string text, const TestFolder& folder) {
  const std::string prefix = folder.path("");
  for (std::size_t at = text.find(prefix); at != std::string::npos; at = text.find(prefix)) {
    text.erase(at, prefix.size());
  }
  return text;
}

inline testing::AssertionResult beginsWith(const std::string& text, std::string_view beginning) {
  if (text.starts_with(beginning)) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "\"" << text << "\" begins with something else than \"" << beginning << "\"";
}

// What a schema beside a data file says of it.
inline Outcome<DescribedTable> readSchemaText(std::string_view schema) {
  const TestFolder folder;
  folder.write("people.csv", "a\n1\n");
  folder.write("people.schema.json", schema);
  Outcome<std::optional<DescribedTable>> table = descriptionBeside(folder.path("people.csv"));
  if (!table) {
    Problem problem = table.problem();
    problem.where = withoutFolder(problem.where, folder);
    return problem;
  }
  return **table;
}

inline DescribedTable tableOf(std::string_view schema) {
  Outcome<DescribedTable> table = readSchemaText(schema);
  if (table) return *table;
  ADD_FAILURE() << table.problem().text();
  return {};
}

inline std::string problemOf(std::string_view schema) {
  const Outcome<DescribedTable> table = readSchemaText(schema);
  return table ? "no problem" : table.problem().text();
}

inline std::string schemaOfField(std::string_view field) { return fmt::format(R"({{"fields": [{}]}})", field); }

// A field of the name "a" with these further properties.
inline std::string schemaWith(std::string_view properties) {
  return schemaOfField(fmt::format(R"({{"name": "a"{}{}}})", properties.empty() ? "" : ", ", properties));
}
inline DescribedTable tableWith(std::string_view properties) { return tableOf(schemaWith(properties)); }
inline DescribedField fieldWith(std::string_view properties) {
  const DescribedTable table = tableWith(properties);
  return table.fields.empty() ? DescribedField() : table.fields.front();
}
// Without the place's beginning, which is the same for all: "/fields/0".
inline std::string problemWith(std::string_view properties) {
  std::string text = problemOf(schemaWith(properties));
  const std::string prefix = "people.schema.json, /fields/0";
  return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

inline std::string shownMissing(const Variable& variable) {
  const MissingValues& missing = variable.missing;
  const std::size_t count = static_cast<std::size_t>(missing.code < 0 ? -missing.code : missing.code);
  std::string text = missing.code < 0 ? "range" : "";
  for (std::size_t index = 0; index < count && index < missing.values.size(); ++index) {
    if (!text.empty()) text += ' ';
    const OBS& value = missing.values[index];
    text += variable.isNumeric() ? decimalText(value.number) : fmt::format("'{}'", std::string_view(value.text, 8));
  }
  return text;
}

inline std::string shownLabels(const Variable& variable) {
  std::vector<std::string> labels;
  for (const auto& [value, label] : variable.numberLabels) labels.push_back(decimalText(value) + "=" + label);
  for (const auto& [value, label] : variable.textLabels) labels.push_back("'" + value + "'=" + label);
  return fmt::format("{}", fmt::join(labels, ", "));
}

inline std::string shownNoValue(const DescribedField& field) {
  return fmt::format("{}", fmt::join(field.reading.noValueTexts, "|"));
}

inline std::string shownFormat(const PrintFormat& format) {
  for (const FormatTypeRow& row : formatTypeRows) {
    if (row.type == format.type) return fmt::format("{}{}.{}", row.name, format.width, format.decimals);
  }
  return "?";
}

inline std::string shownAttributes(const DatasourceAttributes& attributes) {
  std::vector<std::string> all;
  for (std::int32_t index = 0; index < attributes.Size(); ++index) {
    all.push_back(fmt::format("{}=[{}]", attributes.Name(index), fmt::join(attributes.Values(index), ",")));
  }
  return fmt::format("{}", fmt::join(all, " "));
}

// All of a field, so that equal texts are equal fields.
inline std::string shown(const DescribedField& field) {
  const Variable& variable = field.variable;
  const CellReading& reading = field.reading;
  std::string text = fmt::format("{} type{} '{}' '{}{}' {} [{}][{}]", variable.name, static_cast<int>(reading.type),
                                 reading.pattern, reading.decimalChar, reading.groupChar, reading.bareNumber,
                                 fmt::join(reading.trueTexts, "|"), fmt::join(reading.falseTexts, "|"));
  text += fmt::format(" none[{}] label[{}] width{}", shownNoValue(field), variable.label.value_or("-"),
                      field.width.value_or(-1));
  text += " format" + (field.format ? shownFormat(*field.format) : "-");
  text += fmt::format(" columns{} align{} level{} role{}", field.displayWidth.value_or(-1),
                      field.alignment ? static_cast<int>(*field.alignment) : -1, static_cast<int>(variable.level),
                      static_cast<int>(variable.role));
  text += fmt::format(" labels[{}] missing[{}] attributes[{}]", shownLabels(variable), shownMissing(variable),
                      shownAttributes(variable.attributes));
  if (!field.categories) return text;
  return text + fmt::format(" categories[{}][{}]", fmt::join(field.categories->numbers, ","),
                            fmt::join(field.categories->texts, ","));
}

inline std::string shown(const DescribedTable& table) {
  std::string text =
      fmt::format("match{} filter[{}] weight[{}] split[{}] attributes[{}]", static_cast<int>(table.fieldsMatch),
                  table.filter, table.weight, fmt::join(table.split, ","), shownAttributes(table.attributes));
  for (const DescribedField& field : table.fields) text += "\n" + shown(field);
  return text;
}

inline std::string shownWarnings(const DescribedTable& table) {
  return fmt::format("{}", fmt::join(table.warnings, "\n"));
}

}  // namespace workbench::data
