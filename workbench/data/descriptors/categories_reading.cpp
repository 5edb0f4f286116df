#include "workbench/data/descriptors/categories_reading.h"

#include <set>
#include <string>
#include <unordered_set>

#include "workbench/data/descriptors/property_names.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

struct Category {
  FieldValue value;
  std::optional<std::string> label;
};

std::optional<Category> categoryOf(const DescriptorValue& entry, bool asObject, const FieldValueReader& values) {
  std::optional<DescriptorValue> written = entry;
  std::optional<std::string> label;
  if (asObject) {
    const auto object = entry.object();
    written = object ? object->required(property::value) : std::nullopt;
    const auto labelled = object ? object->at(property::label) : std::nullopt;
    if (labelled) label = labelled->text();
  }
  const std::optional<FieldValue> value = written ? values.ofJson(*written) : std::nullopt;
  if (!value) return std::nullopt;
  return Category{*value, std::move(label)};
}

// What is missing is looked for in the text of a cell, before the cell is a value; so the same code could never be the
// category.
std::set<FieldValue> valuesOf(const std::vector<MissingEntry>& missing, const FieldValueReader& values) {
  std::set<FieldValue> all;
  for (const MissingEntry& entry : missing) {
    if (const auto value = values.ofCell(entry.text)) {
      all.insert(*value);
    } else if (values.isText()) {
      all.insert(std::string());
    }
  }
  return all;
}

std::vector<FieldValue> readList(const DescriptorValue& value, const std::vector<MissingEntry>& missing,
                                 const FieldValueReader& values, ValueLabels& labels) {
  const std::vector<DescriptorValue> list = value.list().value_or(std::vector<DescriptorValue>{});
  if (list.empty()) value.reject("^1 lists no value.", "List all values that the field may hold, or leave it out.");
  const std::set<FieldValue> missingOnes = valuesOf(missing, values);
  std::set<FieldValue> known;
  std::unordered_set<std::string> knownLabels;
  std::vector<FieldValue> all;
  for (const DescriptorValue& each : list) {
    const bool asObject = list.front().isObject();
    if (each.isObject() != asObject) {
      each.rejectWith("Values and objects stand in the same list of categories.",
                      "Write all as values, or all as objects with \"value\" and \"label\".");
    }
    const std::optional<Category> category = categoryOf(each, asObject, values);
    if (!category) break;
    if (!known.insert(category->value).second) {
      each.rejectWith("The category ^1 is listed twice.", {shownValue(category->value)}, "List it once.");
    }
    if (category->label && !knownLabels.insert(*category->label).second) {
      each.rejectWith("Two categories have the label \"^1\".", {*category->label}, "Give each a label of its own.");
    }
    if (missingOnes.contains(category->value)) {
      each.rejectWith("^1 is a category and a missing value at once.", {shownValue(category->value)},
                      "Take it out of \"categories\" or of the \"missingValues\" in force, which are [\"\"] where "
                      "none are listed.");
    }
    if (category->label) labels.add(category->value, *category->label, each);
    all.push_back(category->value);
  }
  return all;
}

void readOldLabels(const DescriptorValue& value, const std::string& fieldName, const FieldValueReader& values,
                   ValueLabels& labels) {
  const auto object = value.object();
  if (!object) return;
  for (const auto& [cell, labelled] : object->members()) {
    const std::optional<std::string> label = labelled.text();
    if (!label) return;
    if (const auto labelledValue = values.ofCell(cell)) {
      labels.add(*labelledValue, *label, labelled);
    } else {
      value.findings().warn(text::sentence("the label of \"^1\" is left out, because it stands for no value.", {cell}),
                            fieldName);
    }
  }
}

bool truthOf(const DescriptorObject& field, std::string_view name) {
  const auto value = field.at(name);
  return value && value->truth().value_or(false);
}

}  // namespace

CategoriesReading readCategories(const DescriptorObject& field, const FieldType& type,
                                 const std::vector<MissingEntry>& missing, const FieldValueReader& values,
                                 ValueLabels& labels) {
  CategoriesReading reading;
  const auto nameValue = field.at(property::name);
  const std::string fieldName = nameValue ? nameValue->text().value_or("") : "";
  if (const auto value = field.at(property::enumLabels)) {
    reading.areGiven = true;
    reading.areOrdered = truthOf(field, property::enumOrdered);
    readOldLabels(*value, fieldName, values, labels);
  }
  const auto value = field.at(property::categories);
  if (!value) return reading;
  if (!type.takesCategories) {
    field.value().findings().warn(
        text::sentence("\"categories\" are passed over, because a field of type \"^1\" has none.", {type.name}),
        fieldName);
    return reading;
  }
  reading.areGiven = true;
  reading.areOrdered = truthOf(field, property::categoriesOrdered);
  reading.restriction = readList(*value, missing, values, labels);
  return reading;
}

}  // namespace workbench::data
