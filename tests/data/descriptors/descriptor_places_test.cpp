// Whatever has the wrong type is refused at its place, and nothing else is.
#include <gtest/gtest.h>

#include "tests/data/descriptors/package_fixture.h"

namespace workbench::data {
namespace {

struct WrongValue {
  const char* json;   // properties
  const char* place;  // behind that of the object they stand in
};

// The problem's place, behind the beginning; the whole text when it lies elsewhere.
std::string placeOf(const std::string& problem, const std::string& beginning) {
  if (!problem.starts_with(beginning)) return problem;
  const std::string rest = problem.substr(beginning.size());
  return rest.substr(0, rest.find(": "));
}

void expectPlaces(const std::vector<WrongValue>& wrongValues, const std::string& beginning,
                  std::string (*problem)(std::string_view)) {
  for (const WrongValue& wrong : wrongValues) {
    EXPECT_EQ(placeOf(problem(wrong.json), beginning), wrong.place) << wrong.json;
  }
}

TEST(WrongType, IsFoundInAPackage) {
  expectPlaces(
      {
          {R"({"resources": {}})", "/resources"},
          {R"({"resources": null})", "/resources"},
          {R"({"resources": "people.csv"})", "/resources"},
          {R"({"resources": [1]})", "/resources/0"},
          {R"({"resources": [[]]})", "/resources/0"},
          {R"({"resources": [{"name": 1, "path": "a"}]})", "/resources/0/name"},
          {R"({"resources": [{"name": null, "path": "a"}]})", "/resources/0/name"},
          {R"({"resources": [{"name": "a", "path": "a"}, {"name": {}, "path": "b"}]})", "/resources/1/name"},
      },
      "datapackage.json, ", [](std::string_view text) { return PackageFolder(text).problem("people"); });
}

TEST(WrongType, IsFoundInAResource) {
  expectPlaces(
      {
          {R"("path": 1)", "/path"},
          {R"("path": null)", "/path"},
          {R"("path": true)", "/path"},
          {R"("path": {})", "/path"},
          {R"("path": ["a", 1])", "/path/1"},
          {R"("path": ["a", ["b"]])", "/path/1"},
          {R"("url": 1)", "/url"},
          {R"("path": "people.csv", "type": 1)", "/type"},
          {R"("path": "people.csv", "type": ["table"])", "/type"},
          {R"("path": "people.csv", "format": 1)", "/format"},
          {R"("path": "people.csv", "mediatype": ["text/csv"])", "/mediatype"},
          {R"("path": "people.csv", "encoding": 8)", "/encoding"},
          {R"("path": "people.csv", "encoding": null)", "/encoding"},
          {R"("path": "people.csv", "bytes": "12")", "/bytes"},
          {R"("path": "people.csv", "bytes": 1.5)", "/bytes"},
          {R"("path": "people.csv", "bytes": true)", "/bytes"},
          {R"("path": "people.csv", "hash": 12)", "/hash"},
          {R"("path": "people.csv", "compression": true)", "/compression"},
          {R"("path": "people.csv", "dialect": 1)", "/dialect"},
          {R"("path": "people.csv", "dialect": [])", "/dialect"},
          {R"("path": "people.csv", "schema": 1)", "/schema"},
          {R"("path": "people.csv", "schema": null)", "/schema"},
          {R"("path": "people.csv", "statistics:dataset": [])", "/statistics:dataset"},
          {R"("path": "people.csv", "statistics:dataset": "x")", "/statistics:dataset"},
      },
      "", packageProblem);
}

TEST(WrongType, IsFoundInADialect) {
  const std::vector<WrongValue> wrongValues = {
      {R"("delimiter": 1)", "/delimiter"},
      {R"("delimiter": null)", "/delimiter"},
      {R"("delimiter": [";"])", "/delimiter"},
      {R"("lineTerminator": 10)", "/lineTerminator"},
      {R"("quoteChar": 34)", "/quoteChar"},
      {R"("quoteChar": false)", "/quoteChar"},
      {R"("doubleQuote": "true")", "/doubleQuote"},
      {R"("doubleQuote": 1)", "/doubleQuote"},
      {R"("escapeChar": null)", "/escapeChar"},
      {R"("escapeChar": "")", "/escapeChar"},
      {R"("header": "false")", "/header"},
      {R"("header": 0)", "/header"},
      {R"("header": null)", "/header"},
      {R"("headerRows": 1)", "/headerRows"},
      {R"("headerRows": ["1"])", "/headerRows/0"},
      {R"("headerRows": [1, 1.5])", "/headerRows/1"},
      {R"("headerRows": [-1])", "/headerRows/0"},
      {R"("headerJoin": 1)", "/headerJoin"},
      {R"("commentRows": {})", "/commentRows"},
      {R"("commentRows": [null])", "/commentRows/0"},
      {R"("commentChar": 1)", "/commentChar"},
      {R"("commentChar": "")", "/commentChar"},
      {R"("nullSequence": null)", "/nullSequence"},
      {R"("skipInitialSpace": "yes")", "/skipInitialSpace"},
  };
  expectPlaces(wrongValues, "/dialect", [](std::string_view json) {
    return packageProblem(fmt::format(R"("path": "people.csv", "dialect": {{{}}})", json));
  });
}

TEST(WrongType, IsFoundInASchema) {
  const std::vector<WrongValue> wrongValues = {
      {R"("fieldsMatch": 1)", "/fieldsMatch"},
      {R"("fieldsMatch": null)", "/fieldsMatch"},
      {R"("fieldsMatch": [])", "/fieldsMatch"},
      {R"("fieldsMatch": [1])", "/fieldsMatch/0"},
      {R"("missingValues": "")", "/missingValues"},
      {R"("missingValues": {"value": ""})", "/missingValues"},
      {R"("missingValues": [null])", "/missingValues/0"},
      {R"("missingValues": [{"value": -9}])", "/missingValues/0/value"},
      {R"("missingValues": [{"value": "", "label": 1}])", "/missingValues/0/label"},
      {R"("missingValues": ["", "x", 9])", "/missingValues/2"},
      {R"("primaryKey": 1)", "/primaryKey"},
      {R"("primaryKey": [1])", "/primaryKey/0"},
      {R"("primaryKey": {})", "/primaryKey"},
      {R"("uniqueKeys": "a")", "/uniqueKeys"},
      {R"("uniqueKeys": [[]])", "/uniqueKeys/0"},
      {R"("foreignKeys": {})", "/foreignKeys"},
      {R"("foreignKeys": ["a"])", "/foreignKeys/0"},
      {R"("foreignKeys": [{"fields": 1, "reference": {"fields": ["a"]}}])", "/foreignKeys/0/fields"},
      {R"("foreignKeys": [{"fields": ["a"], "reference": "b"}])", "/foreignKeys/0/reference"},
      {R"("foreignKeys": [{"fields": ["a"], "reference": {"fields": 1}}])", "/foreignKeys/0/reference/fields"},
  };
  expectPlaces(wrongValues, "people.schema.json, ", [](std::string_view json) {
    return problemOf(fmt::format(R"({{"fields": [{{"name": "a"}}], {}}})", json));
  });
  expectPlaces({{R"({"fields": 1})", "/fields"},
                {R"({"fields": {}})", "/fields"},
                {R"({"fields": null})", "/fields"},
                {R"({"fields": [1]})", "/fields/0"},
                {R"({"fields": [{"name": "a"}, []]})", "/fields/1"}},
               "people.schema.json, ", problemOf);
}

TEST(WrongType, IsFoundInAField) {
  expectPlaces({{R"({"name": 1})", "/name"}, {R"({"name": null})", "/name"}, {R"({"name": ["a"]})", "/name"}},
               "people.schema.json, /fields/0", [](std::string_view json) { return problemOf(schemaOfField(json)); });
  expectPlaces(
      {
          {R"("type": 1)", "/type"},
          {R"("type": ["string"])", "/type"},
          {R"("type": null)", "/type"},
          {R"("type": "String")", "/type"},
          {R"("type": "date", "format": 1)", "/format"},
          {R"("type": "string", "format": null)", "/format"},
          {R"("title": 1)", "/title"},
          {R"("title": null)", "/title"},
          {R"("missingValues": "-9")", "/missingValues"},
          {R"("missingValues": [-9])", "/missingValues/0"},
          {R"("type": "number", "decimalChar": 1)", "/decimalChar"},
          {R"("type": "number", "groupChar": null)", "/groupChar"},
          {R"("type": "integer", "groupChar": ["."])", "/groupChar"},
          {R"("type": "number", "bareNumber": "false")", "/bareNumber"},
          {R"("type": "integer", "bareNumber": 0)", "/bareNumber"},
          {R"("type": "boolean", "trueValues": "yes")", "/trueValues"},
          {R"("type": "boolean", "trueValues": [1])", "/trueValues/0"},
          {R"("type": "boolean", "falseValues": [false])", "/falseValues/0"},
          {R"("type": "integer", "categories": {})", "/categories"},
          {R"("type": "integer", "categories": 1)", "/categories"},
          {R"("type": "integer", "categories": [null])", "/categories/0"},
          {R"("type": "integer", "categories": [[1]])", "/categories/0"},
          {R"("type": "integer", "categories": [true])", "/categories/0"},
          {R"("type": "string", "categories": [1])", "/categories/0"},
          {R"("type": "string", "categories": [{"value": 1}])", "/categories/0/value"},
          {R"("type": "string", "categories": [{"label": "x"}])", "/categories/0"},
          {R"("type": "string", "categories": [{"value": "a", "label": 1}])", "/categories/0/label"},
          {R"("type": "string", "categories": ["a"], "categoriesOrdered": "true")", "/categoriesOrdered"},
          {R"("enumLabels": ["x"])", "/enumLabels"},
          {R"("enumLabels": {"a": 1})", "/enumLabels/a"},
          {R"("enumLabels": {"a": "x"}, "enumOrdered": 1)", "/enumOrdered"},
          {R"("constraints": [])", "/constraints"},
          {R"("constraints": {"required": "true"})", "/constraints/required"},
          {R"("constraints": {"unique": 1})", "/constraints/unique"},
          {R"("constraints": {"minLength": "1"})", "/constraints/minLength"},
          {R"("constraints": {"minLength": -1})", "/constraints/minLength"},
          {R"("constraints": {"maxLength": 1.5})", "/constraints/maxLength"},
          {R"("constraints": {"minimum": true})", "/constraints/minimum"},
          {R"("constraints": {"maximum": [1]})", "/constraints/maximum"},
          {R"("constraints": {"exclusiveMinimum": {}})", "/constraints/exclusiveMinimum"},
          {R"("constraints": {"exclusiveMaximum": null})", "/constraints/exclusiveMaximum"},
          {R"("constraints": {"pattern": 1})", "/constraints/pattern"},
          {R"("constraints": {"enum": "a"})", "/constraints/enum"},
          {R"("constraints": {"jsonSchema": "x"})", "/constraints/jsonSchema"},
      },
      "", problemWith);
}

TEST(WrongType, IsFoundInWhatTheStandardHasNoWordFor) {
  expectPlaces({{R"("statistics:variable": [])", "/statistics:variable"},
                {R"("statistics:variable": null)", "/statistics:variable"},
                {R"("statistics:variable": "x")", "/statistics:variable"}},
               "", problemWith);
  const std::vector<WrongValue> wrongValues = {
      {R"("format": "F8.2")", "/format"},
      {R"("format": {"type": 5, "width": 8})", "/format/type"},
      {R"("format": {"type": "f", "width": 8})", "/format/type"},
      {R"("format": {"type": "F", "width": "8"})", "/format/width"},
      {R"("format": {"type": "F", "width": 8, "decimals": "2"})", "/format/decimals"},
      {R"("format": {"type": "F", "width": 8, "decimals": -1})", "/format/decimals"},
      {R"("format": {"width": 8})", "/format"},
      {R"("columns": "8")", "/columns"},
      {R"("columns": null)", "/columns"},
      {R"("align": 1)", "/align"},
      {R"("align": "Left")", "/align"},
      {R"("level": 3)", "/level"},
      {R"("level": "Scale")", "/level"},
      {R"("role": 0)", "/role"},
      {R"("role": "recordid")", "/role"},
      {R"("valueLabels": {"1": "x"})", "/valueLabels"},
      {R"("valueLabels": ["x"])", "/valueLabels/0"},
      {R"("valueLabels": [{"value": 1}])", "/valueLabels/0"},
      {R"("valueLabels": [{"label": "x"}])", "/valueLabels/0"},
      {R"("valueLabels": [{"value": 1, "label": 2}])", "/valueLabels/0/label"},
      {R"("valueLabels": [{"value": null, "label": "x"}])", "/valueLabels/0/value"},
      {R"("missing": [9])", "/missing"},
      {R"("missing": 9)", "/missing"},
      {R"("missing": {"low": null, "high": 1})", "/missing/low"},
      {R"("missing": {"low": 1, "high": [2]})", "/missing/high"},
      {R"("missing": {"low": 1, "high": 2, "value": "9"})", "/missing/value"},
      {R"("missing": {"values": 9})", "/missing/values"},
      {R"("missing": {"values": [null]})", "/missing/values/0"},
      {R"("attributes": [])", "/attributes"},
      {R"("attributes": {"a": "x"})", "/attributes/a"},
      {R"("attributes": {"a/b": [1]})", "/attributes/a~1b/0"},
  };
  expectPlaces(wrongValues, "/statistics:variable", [](std::string_view json) {
    return problemWith(fmt::format(R"("type": "number", "statistics:variable": {{{}}})", json));
  });
  expectPlaces({{R"("storageWidth": "8")", "/storageWidth"},
                {R"("storageWidth": 0)", "/storageWidth"},
                {R"("storageWidth": 8.5)", "/storageWidth"}},
               "/statistics:variable", [](std::string_view json) {
                 return problemWith(fmt::format(R"("type": "string", "statistics:variable": {{{}}})", json));
               });
}

TEST(WrongType, IsFoundInWhatIsSaidOfADataset) {
  const std::vector<WrongValue> wrongValues = {
      {R"("attributes": "x")", "/attributes"}, {R"("attributes": {"a": [null]})", "/attributes/a/0"},
      {R"("filter": 1)", "/filter"},           {R"("filter": null)", "/filter"},
      {R"("weight": ["a"])", "/weight"},       {R"("split": "a")", "/split"},
      {R"("split": [1])", "/split/0"},         {R"("split": {})", "/split"},
  };
  expectPlaces(wrongValues, "people.schema.json, /statistics:dataset", [](std::string_view json) {
    return problemOf(
        fmt::format(R"({{"fields": [{{"name": "a", "type": "number"}}], "statistics:dataset": {{{}}}}})", json));
  });
}

}  // namespace
}  // namespace workbench::data
