#include "workbench/data/descriptors/schema_writer.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/data/descriptors/dictionary_check.h"
#include "workbench/data/descriptors/field_types.h"
#include "workbench/data/descriptors/property_names.h"
#include "workbench/data/descriptors/statistics_words.h"
#include "workbench/data/descriptors/written_missing.h"
#include "workbench/text/string_comparison.h"

namespace workbench::data {
namespace {

using VRIX_Variable_Enumerations::MeasurementLevel;
using VRIX_Variable_Enumerations::Role;

// The version of the standard that a schema is written by. A name: nothing is fetched from there.
constexpr std::string_view schemaProfile = "https://datapackage.org/profiles/2.0/tableschema.json";

// Labels of values on their way to where they are written.
using Labels = std::vector<std::pair<Json, std::string>>;

template <class Rows, class Meaning>
std::string_view wordOf(const Rows& rows, Meaning meaning) {
  return std::find_if(rows.begin(), rows.end(), [=](const auto& row) { return row.meaning == meaning; })->word;
}

std::string formatName(FormatType type) {
  return std::find_if(std::begin(formatTypeRows), std::end(formatTypeRows),
                      [=](const FormatTypeRow& row) { return row.type == type; })
      ->name;
}

Json formatJson(const PrintFormat& format) {
  Json json;
  json[property::type] = formatName(format.type);
  json[property::width] = format.width;
  if (format.type != FormatType::text) json[property::decimals] = format.decimals;
  return json;
}

Json attributesJson(const DatasourceAttributes& attributes) {
  Json json = Json::object();
  for (std::int32_t index = 0; index < attributes.Size(); ++index) {
    json[attributes.Name(index)] = attributes.Values(index);
  }
  return json;
}

// The label of a missing value, where the variable has one.
const std::string* labelOf(const Variable& variable, std::size_t missingIndex) {
  const OBS& missing = variable.missing.values[missingIndex];
  if (variable.isNumeric()) {
    for (const auto& [value, label] : variable.numberLabels) {
      if (value == missing.number) return &label;
    }
    return nullptr;
  }
  const std::string_view sought = text::withoutTrailingBlanks({missing.text, sizeof missing.text});
  for (const auto& [value, label] : variable.textLabels) {
    if (text::withoutTrailingBlanks(value) == sought) return &label;
  }
  return nullptr;
}

// One per missing text, null where there is none. All are null when two are alike: there, labels have to be unique.
std::vector<const std::string*> labelsOfMissing(const Variable& variable, std::size_t count) {
  std::vector<const std::string*> labels(count, nullptr);
  std::set<std::string_view> known;
  for (std::size_t index = 0; index < count; ++index) {
    labels[index] = labelOf(variable, index);
    if (labels[index] != nullptr && !known.insert(*labels[index]).second) return {count, nullptr};
  }
  return labels;
}

// The empty text comes first: it is what a value that is not there is written as.
Json missingEntriesJson(const std::vector<std::string>& texts, const std::vector<const std::string*>& labels) {
  const bool areLabelled =
      std::any_of(labels.begin(), labels.end(), [](const auto* label) { return label != nullptr; });
  Json entries = Json::array();
  const auto add = [&](const std::string& text, const std::string* label) {
    if (!areLabelled) {
      entries.push_back(text);
      return;
    }
    Json entry;
    entry[property::value] = text;
    if (label != nullptr) entry[property::label] = *label;
    entries.push_back(std::move(entry));
  };
  add("", nullptr);
  for (std::size_t index = 0; index < texts.size(); ++index) add(texts[index], labels[index]);
  return entries;
}

// Those that no missing entry bears.
Json valueLabelsJson(const Variable& variable, const std::vector<const std::string*>& borne) {
  const auto isBorne = [&](const std::string& label) {
    return std::find(borne.begin(), borne.end(), &label) != borne.end();
  };
  Json labels = Json::array();
  const auto add = [&](Json value, const std::string& label) {
    if (isBorne(label)) return;
    Json entry;
    entry[property::value] = std::move(value);
    entry[property::label] = label;
    labels.push_back(std::move(entry));
  };
  if (variable.isNumeric()) {
    for (const auto& [value, label] : variable.numberLabels) add(numberJson(value), label);
  } else {
    for (const auto& [value, label] : variable.textLabels) add(text::withoutTrailingBlanks(value), label);
  }
  return labels;
}

Json statisticsJson(const Variable& variable) {
  Json json;
  if (!variable.isNumeric() && variable.width <= widestStorage) json[property::storageWidth] = variable.width;
  json[property::format] = formatJson(variable.format);
  json[property::columns] = variable.displayWidth;
  json[property::align] = wordOf(alignmentWords, variable.alignment);
  const MeasurementLevel usual = variable.isNumeric() ? MeasurementLevel::scale : MeasurementLevel::nominal;
  if (variable.level != usual) json[property::level] = wordOf(levelWords, variable.level);
  if (variable.role != Role::input) json[property::role] = wordOf(roleWords, variable.role);
  return json;
}

Json schemaJson(const Dictionary& dictionary) {
  Json schema;
  schema[property::profileAddress] = schemaProfile;
  schema[property::fields] = Json::array();
  for (const Variable& variable : dictionary.variables()) schema[property::fields].push_back(fieldJson(variable));
  return schema;
}

}  // namespace

Outcome<std::string> resourceText(const std::string& name, const Dictionary& dictionary) {
  if (std::optional<Problem> problem = whyNotWritten(dictionary)) return *std::move(problem);
  Json resource;
  resource[property::name] = name;
  resource[property::type] = "table";
  resource[property::schema] = schemaJson(dictionary);
  if (Json dataset = datasetJson(dictionary); !dataset.empty()) {
    resource[property::statisticsDataset] = std::move(dataset);
  }
  return resource.dump();
}

Outcome<std::string> schemaText(const Dictionary& dictionary) {
  if (std::optional<Problem> problem = whyNotWritten(dictionary)) return *std::move(problem);
  Json schema = schemaJson(dictionary);
  if (Json dataset = datasetJson(dictionary); !dataset.empty()) {
    schema[property::statisticsDataset] = std::move(dataset);
  }
  return fileText(schema);
}

Json fieldJson(const Variable& variable) {
  Json field;
  field[property::name] = variable.name;
  field[property::type] = variable.isNumeric() ? writtenType(variable.format.type).name : writtenTextType;
  if (variable.label) field[property::title] = *variable.label;

  const WrittenMissing missing = writtenMissing(variable);
  const std::vector<const std::string*> labels = labelsOfMissing(variable, missing.texts.size());
  if (!missing.texts.empty()) field[property::missingValues] = missingEntriesJson(missing.texts, labels);

  Json statistics = statisticsJson(variable);
  if (Json others = valueLabelsJson(variable, labels); !others.empty()) {
    statistics[property::valueLabels] = std::move(others);
  }
  if (missing.declared != nullptr) statistics[property::missing] = *missing.declared;
  if (variable.attributes.Size() != 0) statistics[property::attributes] = attributesJson(variable.attributes);
  field[property::statisticsVariable] = std::move(statistics);
  return field;
}

Json datasetJson(const Dictionary& dictionary) {
  Json dataset = Json::object();
  if (dictionary.attributes.Size() != 0) dataset[property::attributes] = attributesJson(dictionary.attributes);
  if (dictionary.filter >= 0) dataset[property::filter] = dictionary.at(dictionary.filter).name;
  if (dictionary.weight >= 0) dataset[property::weight] = dictionary.at(dictionary.weight).name;
  for (const std::int32_t index : dictionary.split) dataset[property::split].push_back(dictionary.at(index).name);
  return dataset;
}

std::string fileText(const Json& descriptor) {
  constexpr int indentation = 2;
  return descriptor.dump(indentation) + "\n";
}

}  // namespace workbench::data
