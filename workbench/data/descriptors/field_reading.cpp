#include "workbench/data/descriptors/field_reading.h"

#include <set>
#include <utility>

#include "workbench/data/descriptors/categories_reading.h"
#include "workbench/data/descriptors/cell_reading_of_field.h"
#include "workbench/data/descriptors/constraints_reading.h"
#include "workbench/data/descriptors/field_types.h"
#include "workbench/data/descriptors/field_values.h"
#include "workbench/data/descriptors/property_names.h"
#include "workbench/data/descriptors/statistics_variable.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

using VRIX_Variable_Enumerations::Alignment;
using VRIX_Variable_Enumerations::MeasurementLevel;

// A variable of which nothing but its type is known.
Variable plainVariable(bool isText) {
  Variable variable;
  if (!isText) return variable;
  variable.width = 1;  // until the field's width is declared or the cells are seen
  variable.format = {FormatType::text, 1, 0};
  variable.alignment = Alignment::left;
  variable.level = MeasurementLevel::nominal;
  return variable;
}

void readNameAndTitle(const DescriptorObject& field, Variable& variable) {
  if (const auto name = field.required(property::name)) variable.name = name->textWithoutNul().value_or("");
  if (const auto title = field.at(property::title)) variable.label = title->text();
}

// What "statistics:variable" does not say follows from the categories, else from the type.
MeasurementLevel levelOf(const CategoriesReading& categories, bool isText) {
  if (categories.areOrdered) return MeasurementLevel::ordinal;
  return categories.areGiven || isText ? MeasurementLevel::nominal : MeasurementLevel::scale;
}

void warnOfLabelsLeftOut(const MissingReading& missing, const DescriptorObject& field, const std::string& name) {
  for (const std::string& text : missing.labelsLeftOut) {
    field.value().findings().warn(
        text::sentence("the label of the missing value \"^1\" is left out, because this text stands for no value.",
                       {text}),
        name);
  }
}

// Values that are missing stay in the data, so the restriction has to let them pass.
Categories categoriesOf(std::vector<FieldValue> allowed, const std::vector<FieldValue>& missingEntries,
                        const std::vector<FieldValue>& declaredMissing) {
  allowed.insert(allowed.end(), missingEntries.begin(), missingEntries.end());
  allowed.insert(allowed.end(), declaredMissing.begin(), declaredMissing.end());
  std::set<FieldValue> known;
  Categories categories;
  for (const FieldValue& value : allowed) {
    if (!known.insert(value).second) continue;
    if (const double* const number = std::get_if<double>(&value)) {
      categories.numbers.push_back(*number);
    } else {
      categories.texts.push_back(std::get<std::string>(value));
    }
  }
  return categories;
}

}  // namespace

DescribedField describedField(const DescriptorObject& field, const std::vector<MissingEntry>& schemaEntries) {
  DescriptorFindings& findings = field.value().findings();
  DescribedField described;

  // 1. What it is.
  const FieldType& type = *fieldType(field);
  described.variable = plainVariable(type.isText());
  readNameAndTitle(field, described.variable);
  described.reading = cellReading(field, type);
  if (findings.problem()) return described;

  // 2. What its values are called, and which are missing.
  FieldValueReader values(described.reading);
  ValueLabels labels;
  const std::vector<MissingEntry> entries = missingEntries(field).value_or(schemaEntries);
  MissingReading missing = readMissing(entries, field, values, labels);
  CategoriesReading categories = readCategories(field, type, entries, values, labels);
  const StatisticsReading statistics = readStatisticsVariable(field, described, values, labels);
  labels.giveTo(described.variable);
  warnOfLabelsLeftOut(missing, field, described.variable.name);

  // 3. What is restricted to what.
  checkConstraints(field, categories.restriction, values);
  if (categories.restriction) {
    described.categories = categoriesOf(*std::move(categories.restriction), missing.values, statistics.missingValues);
  }

  // 4. What several of them decide together.
  described.variable.level = statistics.level.value_or(levelOf(categories, type.isText()));
  described.variable.missing =
      statistics.missing ? *statistics.missing : userMissing(missing.values, described.variable.name, findings);
  described.reading.noValueTexts = std::move(missing.noValueTexts);
  return described;
}

}  // namespace workbench::data
