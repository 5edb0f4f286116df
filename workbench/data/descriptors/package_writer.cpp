#include "workbench/data/descriptors/package_writer.h"

#include <fmt/format.h>

#include <array>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "workbench/data/descriptors/data_package.h"
#include "workbench/data/descriptors/descriptor_value.h"
#include "workbench/data/descriptors/dictionary_check.h"
#include "workbench/data/descriptors/json_text.h"
#include "workbench/data/descriptors/property_names.h"
#include "workbench/data/descriptors/resource_path.h"
#include "workbench/data/descriptors/schema_keys.h"
#include "workbench/data/descriptors/schema_writer.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// What an old field said of how its cells are read, and of its variable.
constexpr auto replacedInFields = std::to_array<std::string_view>(
    {property::type, property::format, property::title, property::missingValues, property::decimalChar,
     property::groupChar, property::bareNumber, property::trueValues, property::falseValues, property::delimiter,
     property::itemType, property::categories, property::categoriesOrdered, property::enumLabels, property::enumOrdered,
     property::statisticsVariable});

constexpr auto replacedInSchemas =
    std::to_array<std::string_view>({property::fieldsMatch, property::missingValues, property::statisticsDataset});

constexpr auto keysOfSchemas =
    std::to_array<std::string_view>({property::primaryKey, property::uniqueKeys, property::foreignKeys});

// What an old dialect said of a text file.
constexpr auto replacedInDialects = std::to_array<std::string_view>(
    {property::delimiter, property::lineTerminator, property::quoteChar, property::doubleQuote, property::escapeChar,
     property::header, property::headerRows, property::headerJoin, property::commentRows, property::commentChar,
     property::nullSequence, property::skipInitialSpace});

// Of the old file's bytes.
constexpr auto replacedInResources =
    std::to_array<std::string_view>({property::bytes, property::hash, property::compression});

constexpr std::string_view writtenEncoding = "utf-8";

template <std::size_t size>
void eraseAll(Json& object, const std::array<std::string_view, size>& names) {
  for (const std::string_view name : names) object.erase(name);
}

// Empty when there is no such text: what is replaced need not have been sound.
std::string textOf(const Json& object, std::string_view name) {
  const auto found = object.find(name);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

// Constraints go on where they can still be read: values in them are written as the cells were.
bool keepsConstraints(const Json& before, const Json& after) {
  const std::string typeBefore = textOf(before, property::type);
  const std::string typeAfter = textOf(after, property::type);
  const bool isSameType = typeBefore == typeAfter || (typeBefore == "integer" && typeAfter == "number");
  return isSameType && !before.contains(property::format) && !before.contains(property::decimalChar);
}

Json mergedField(Json field, const Json& written) {
  if (!keepsConstraints(field, written)) field.erase(property::constraints);
  for (const std::string_view name : replacedInFields) {
    if (!written.contains(name)) field.erase(name);
  }
  for (const auto& [name, value] : written.items()) field[name] = value;
  return field;
}

// The objects of the old fields, by their names.
std::map<std::string, Json> fieldsBefore(const Json& schema) {
  std::map<std::string, Json> fields;
  const auto list = schema.find(property::fields);
  if (list == schema.end() || !list->is_array()) return fields;
  for (const Json& field : *list) {
    if (field.is_object()) fields.emplace(textOf(field, property::name), field);
  }
  return fields;
}

Json fieldsJson(const Json& schema, const Dictionary& dictionary) {
  const std::map<std::string, Json> before = fieldsBefore(schema);
  Json fields = Json::array();
  for (const Variable& variable : dictionary.variables()) {
    const auto known = before.find(variable.name);
    Json written = fieldJson(variable);
    fields.push_back(known == before.end() ? std::move(written) : mergedField(known->second, written));
  }
  return fields;
}

// Whether a key of the schema still names fields that are there.
bool holds(const Json& schema, std::string_view key, const std::unordered_set<std::string>& fieldNames) {
  Json alone = Json::object();
  alone[key] = schema[key];
  const JsonDocument document{"", std::make_shared<const Json>(std::move(alone)), {}};
  DescriptorFindings findings;
  checkKeys(*DescriptorValue(document, findings).object(), fieldNames);
  return !findings.problem();
}

void describeFields(Json& resource, const Dictionary& dictionary) {
  Json& schema = resource[property::schema];
  if (!schema.is_object()) schema = Json::object();  // in a file of its own, or none
  eraseAll(schema, replacedInSchemas);
  schema[property::fields] = fieldsJson(schema, dictionary);
  std::unordered_set<std::string> names;
  for (const Variable& variable : dictionary.variables()) names.insert(variable.name);
  for (const std::string_view key : keysOfSchemas) {
    if (schema.contains(key) && !holds(schema, key, names)) schema.erase(key);
  }
}

void describeFile(Json& resource, std::optional<char> delimiter) {
  eraseAll(resource, replacedInResources);
  if (resource.contains(property::encoding)) resource[property::encoding] = writtenEncoding;
  Json dialect = resource.value(std::string(property::dialect), Json::object());
  if (!dialect.is_object()) dialect = Json::object();
  eraseAll(dialect, replacedInDialects);
  if (delimiter) dialect[property::delimiter] = std::string(1, *delimiter);
  if (dialect.empty()) {
    resource.erase(property::dialect);
  } else {
    resource[property::dialect] = std::move(dialect);
  }
}

void describeDataset(Json& resource, const Dictionary& dictionary) {
  Json dataset = datasetJson(dictionary);
  if (dataset.empty()) {
    resource.erase(property::statisticsDataset);
  } else {
    resource[property::statisticsDataset] = std::move(dataset);
  }
}

}  // namespace

Outcome<std::string> packageTextWith(const std::string& packagePath, const std::string& dataFileName,
                                     const Dictionary& dictionary, std::optional<char> delimiter) {
  // 1. The package as it is.
  if (std::optional<Problem> problem = whyNotWritten(dictionary)) return *std::move(problem);
  const Outcome<JsonDocument> document = readJsonFile(packagePath);
  if (!document) return document.problem();
  DescriptorFindings findings;
  const std::vector<Resource> resources = resourcesOf(DescriptorValue(*document, findings));
  if (findings.problem()) return *findings.problem();
  if (!document->roundedNumbers.empty()) {
    return Problem{text::sentence("The number would not stay what it is when the file is written again."),
                   fmt::format("{}, {}", packagePath, *document->roundedNumbers.begin()),
                   text::sentence("Put it into quotes.")};
  }

  // 2. The resource in it.
  const Outcome<std::optional<std::size_t>> index =
      resourceOfFile(resources, besideDescriptor(packagePath, dataFileName));
  if (!index) return index.problem();
  if (!*index) {
    return Problem{text::sentence("No resource of the package is ^1.", {dataFileName}), packagePath,
                   text::sentence("Add one with its name and path.")};
  }

  // 3. What it is from now on.
  Json package = *document->root;
  Json& resource = package[property::resources][**index];
  describeFile(resource, delimiter);
  describeFields(resource, dictionary);
  describeDataset(resource, dictionary);
  return fileText(package);
}

}  // namespace workbench::data
