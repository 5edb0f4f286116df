// Data files that are opened with a dictionary written down beside them.
#include <gtest/gtest.h>

#include "host/messages.h"
#include "tests/data/files/file_fixture.h"

namespace workbench::data {
namespace {

using VRIX_Variable_Enumerations::MeasurementLevel;

TEST(DescribedFile, TakesTheDictionaryFromThePackageOfItsFolder) {
  const TestFolder folder;
  folder.write("datapackage.json", R"({"resources": [{"name": "people", "path": "people.csv", "schema": {"fields": [
    {"name": "id", "type": "integer", "title": "Number"},
    {"name": "town", "type": "string", "statistics:variable": {"storageWidth": 12}}]}}]})");
  const SharedFile file = opened(folder.write("people.csv", "id,town\n1,Ghent\n"));
  EXPECT_EQ(types(file), "id F1.0, town A12");
  EXPECT_EQ(file->dictionary().at(0).label, "Number");
  EXPECT_EQ(file->dictionaryFile(), folder.path("datapackage.json"));
  EXPECT_EQ(shown(file), "1 'Ghent'");
}

TEST(DescribedFile, TakesTheDictionaryFromASchemaOfItsOwnName) {
  const TestFolder folder;
  folder.write("people.schema.json", R"({"fields": [{"name": "zip", "type": "string", "title": "Post code"}]})");
  const SharedFile file = opened(folder.write("people.csv", "zip\n1000\n9000\n"));
  EXPECT_EQ(types(file), "zip A4");
  EXPECT_EQ(file->dictionary().at(0).level, MeasurementLevel::nominal);
  EXPECT_EQ(file->dictionaryFile(), folder.path("people.schema.json"));
}

TEST(DescribedFile, PrefersThePackageAndPassesOverOneThatDoesNotNameTheFile) {
  const TestFolder folder;
  folder.write(
      "datapackage.json",
      R"({"resources": [{"name": "a", "path": "a.csv", "schema": {"fields": [{"name": "x", "title": "A"}]}}]})");
  folder.write("a.schema.json", R"({"fields": [{"name": "x", "title": "not this"}]})");
  folder.write("b.schema.json", R"({"fields": [{"name": "x", "title": "B"}]})");
  EXPECT_EQ(opened(folder.write("a.csv", "x\n1\n"))->dictionary().at(0).label, "A");
  EXPECT_EQ(opened(folder.write("b.csv", "x\n1\n"))->dictionary().at(0).label, "B");
}

TEST(DescribedFile, IsInferredWhereNothingIsWrittenDown) {
  const TestFolder folder;
  const SharedFile file = opened(folder.write("a.csv", "x\n1\n"));
  EXPECT_EQ(file->dictionaryFile(), "");
  EXPECT_EQ(types(file), "x F1.0");
}

TEST(DescribedFile, IsOpenedThroughThePackageAndTheNameOfItsResource) {
  const TestFolder folder;
  folder.write("a.csv", "x\n1\n");
  folder.write("b.csv", "x\n2\n");
  folder.write("datapackage.json", R"({"resources": [
    {"name": "first", "path": "a.csv", "schema": {"fields": [{"name": "x", "type": "integer"}]}},
    {"name": "second", "path": "b.csv", "schema": {"fields": [{"name": "x", "type": "integer"}]}}]})");
  EXPECT_EQ(shown(opened(folder.path("datapackage.json#second"))), "2");
  EXPECT_EQ(problemOf(folder, folder.path("datapackage.json")),
            "datapackage.json: The package has 2 tables. Name one of \"first\" and \"second\".");
  EXPECT_NE(problemOf(folder, folder.path("datapackage.json#third")).find("\"third\""), std::string::npos);
}

TEST(DescribedFile, HoldsTheCasesOfAllFilesOfItsResource) {
  const TestFolder folder;
  folder.write("a.csv", "x,y\n1,a\n");
  folder.write("b.csv", "x,y\n2,bbb\n");
  folder.write("datapackage.json", R"({"resources": [{"name": "all", "type": "table", "path": ["a.csv", "b.csv"]}]})");
  const SharedFile file = opened(folder.path("datapackage.json"));
  EXPECT_EQ(shown(file), "1 'a' / 2 'bbb'");
  EXPECT_EQ(types(file), "x F1.0, y A3");
  EXPECT_EQ(file->caseCount(), 2);
  EXPECT_EQ(file->furtherFiles(),
            (std::vector{folder.path("a.csv"), folder.path("b.csv"), folder.path("datapackage.json")}));
}

TEST(DescribedFile, ReadsInTheDialectAndWithTheMarksThatAreDeclared) {
  const TestFolder folder;
  folder.write("datapackage.json", R"({"resources": [{"name": "people", "path": "people.csv",
    "dialect": {"delimiter": ";", "nullSequence": "\\N", "commentChar": "#"},
    "schema": {"missingValues": ["", "NA"], "fields": [
      {"name": "id", "type": "integer"},
      {"name": "income", "type": "number", "decimalChar": ",", "groupChar": "."},
      {"name": "day", "type": "date", "format": "%d.%m.%Y"},
      {"name": "ok", "type": "boolean"}]}}]})");
  const SharedFile file =
      opened(folder.write("people.csv", "id;income;day;ok\n# typed twice\n1;1.234,50;21.11.2026;true\n2;NA;\\N;0\n"));
  EXPECT_EQ(types(file), "id F1.0, income F7.2, day DATE10.0, ok F1.0");
  EXPECT_EQ(shown(file), "1 1234.5 20778 1 / 2 . . 0");
}

TEST(DescribedFile, KeepsUserMissingValuesInTheDataAndMakesOthersMissing) {
  const TestFolder folder;
  folder.write("a.schema.json", R"({"fields": [{"name": "q", "type": "integer",
    "missingValues": [{"value": ""}, {"value": "NA"}, {"value": "-9", "label": "refused"}]}]})");
  const SharedFile file = opened(folder.write("a.csv", "q\n3\n-9\nNA\n\n"));
  EXPECT_EQ(shown(file), "3 / -9 / . / .");
  const Variable& q = file->dictionary().at(0);
  EXPECT_EQ(q.missing.code, 1);
  EXPECT_EQ(q.missing.values[0].number, -9);
  ASSERT_EQ(q.numberLabels.size(), 1U);
  EXPECT_EQ(q.numberLabels[0].second, "refused");
}

TEST(DescribedFile, RefusesACellThatDoesNotReadAndNamesItsPlace) {
  const TestFolder folder;
  folder.write("a.schema.json", R"({"fields": [{"name": "q", "type": "integer"}]})");
  folder.write("a.csv", "q\n3\n1.5\n");
  const std::string problem = problemOf(folder, folder.path("a.csv"));
  EXPECT_NE(problem.find("a.csv, line 3"), std::string::npos) << problem;
  EXPECT_NE(problem.find("\"q\""), std::string::npos) << problem;
  EXPECT_NE(problem.find("\"1.5\""), std::string::npos) << problem;
}

TEST(DescribedFile, RefusesADeclaredNumberThatIsNotHeld) {
  const TestFolder folder;
  folder.write("a.schema.json", R"({"fields": [{"name": "q", "type": "integer"}]})");
  folder.write("a.csv", "q\n9007199254740993\n");
  EXPECT_NE(problemOf(folder, folder.path("a.csv")).find("2^53"), std::string::npos);
}

TEST(DescribedFile, RefusesAStringThatIsLongerThanDeclared) {
  const TestFolder folder;
  folder.write("a.schema.json",
               R"({"fields": [{"name": "t", "type": "string", "statistics:variable": {"storageWidth": 3}}]})");
  const SharedFile file = opened(folder.write("a.csv", "t\nabc\nabcd\n"));
  try {
    casesOf(*file);
    ADD_FAILURE() << "the longer text was read";
  } catch (const ErrorText& error) {
    EXPECT_NE(error.GetText().find("\"abcd\""), std::string::npos) << error.GetText();
  }
}

TEST(DescribedFile, InfersWhatIsLeftOpenOverBothFiles) {
  const TestFolder folder;
  folder.write("a.schema.json", R"({"fields": [{"name": "t", "type": "string"}, {"name": "x", "type": "number"}]})");
  folder.write("b.schema.json", R"({"fields": [{"name": "t", "type": "string"}, {"name": "x", "type": "number"}]})");
  const std::string first = folder.write("a.csv", "t,x\nab,1\n");
  const std::string second = folder.write("b.csv", "t,x\nabcdef,12.25\n");
  EXPECT_EQ(types(opened(first, second)), "t A6, x F5.2");
  EXPECT_EQ(types(opened(second, first)), "t A6, x F5.2");
}

TEST(DescribedFile, MakesAColumnTextThatIsDeclaredAsAStringInTheOtherFile) {
  const TestFolder folder;
  folder.write("a.schema.json", R"({"fields": [{"name": "zip", "type": "string"}]})");
  const std::string first = folder.write("a.csv", "zip\n1000\n");
  const std::string second = folder.write("b.csv", "zip\n90000\n");
  EXPECT_EQ(types(opened(first, second)), "zip A5");
  const SharedFile undeclared = opened(second, first);
  EXPECT_EQ(types(undeclared), "zip A5");
  EXPECT_EQ(warningsOf(undeclared), "");
}

TEST(DescribedFile, InfersColumnsThatNoFieldDeclares) {
  const TestFolder folder;
  folder.write("a.schema.json",
               R"({"fieldsMatch": "subset", "fields": [{"name": "b", "type": "string", "title": "B"}]})");
  const SharedFile file = opened(folder.write("a.csv", "a,b\n1,2\n"));
  EXPECT_EQ(types(file), "a F1.0, b A1");
}

TEST(DescribedFile, WarnsOfValuesThatAreNoCategory) {
  const TestFolder folder;
  folder.write("a.schema.json", R"({"fields": [{"name": "sex", "type": "integer", "missingValues": ["", "9"],
    "categories": [{"value": 1, "label": "male"}, {"value": 2, "label": "female"}]}]})");
  EXPECT_EQ(warningsOf(opened(folder.write("a.csv", "sex\n1\n3\n9\n"))),
            "Column \"sex\": the value \"3\" in line 3 is no category of the field.");
  EXPECT_EQ(warningsOf(opened(folder.write("a.csv", "sex\n1\n3\n4\n"))),
            "Column \"sex\": 2 values, the first of them \"3\" in line 3, are no category of the field.");
}

TEST(DescribedFile, SaysThatZonedTimesAreReadAsUtc) {
  const TestFolder folder;
  folder.write("a.schema.json", R"({"fields": [{"name": "at", "type": "datetime"}]})");
  const SharedFile file = opened(folder.write("a.csv", "at\n1970-01-01T01:00:00+01:00\n1970-01-01T00:00:05Z\n"));
  EXPECT_EQ(shown(file), "0 / 5");
  EXPECT_EQ(warningsOf(file), "Column \"at\": its times bear a zone; they are read as times in UTC.");
}

TEST(DescribedFile, WarnsOfASizeThatIsNotTheOneTold) {
  const TestFolder folder;
  folder.write("datapackage.json", R"({"resources": [{"name": "a", "path": "a.csv", "bytes": 99}]})");
  EXPECT_EQ(warningsOf(opened(folder.write("a.csv", "x\n1\n"))),
            fmt::format("The file has 4 bytes, and {} says 99.", folder.path("datapackage.json")));
}

TEST(DescribedFile, TakesFilterWeightAndSplitByTheirNames) {
  const TestFolder folder;
  folder.write("datapackage.json", R"({"resources": [{"name": "a", "path": "a.csv",
    "statistics:dataset": {"filter": "f", "weight": "w", "split": ["s"], "attributes": {"Source": ["survey"]}},
    "schema": {"fields": [{"name": "f", "type": "integer"}, {"name": "w", "type": "number"},
      {"name": "s", "type": "string"}]}}]})");
  const SharedFile file = opened(folder.write("a.csv", "f,w,s\n1,2,a\n"));
  EXPECT_EQ(file->dictionary().filter, 0);
  EXPECT_EQ(file->dictionary().weight, 1);
  EXPECT_EQ(file->dictionary().split, std::vector{2});
  ASSERT_EQ(file->dictionary().attributes.Size(), 1);
  EXPECT_EQ(file->dictionary().attributes.Name(0), "Source");
}

TEST(DescribedFile, IsRefusedWhenItsDescriptorIsNotSound) {
  const TestFolder folder;
  folder.write("a.csv", "x\n1\n");
  folder.write("a.schema.json", R"({"fields": [{"name": "x", "type": "integr"}]})");
  const std::string problem = problemOf(folder, folder.path("a.csv"));
  EXPECT_NE(problem.find("a.schema.json"), std::string::npos) << problem;
  EXPECT_NE(problem.find("/fields/0/type"), std::string::npos) << problem;
  EXPECT_NE(problem.find("integer"), std::string::npos) << problem;
}

TEST(DescribedFile, BringsADictionaryOnlyWhereFieldsAreWrittenDown) {
  const TestFolder folder;
  folder.write("a.csv", "x\n1\n");
  EXPECT_FALSE(bringsDictionary(folder.path("a.csv")));
  folder.write("datapackage.json", R"({"resources": [{"name": "a", "path": "a.csv"}]})");
  EXPECT_FALSE(bringsDictionary(folder.path("a.csv")));
  folder.write("datapackage.json",
               R"({"resources": [{"name": "a", "path": "a.csv", "schema": {"fields": [{"name": "x"}]}}]})");
  EXPECT_TRUE(bringsDictionary(folder.path("a.csv")));
  EXPECT_TRUE(bringsDictionary(folder.path("datapackage.json#a")));
  EXPECT_FALSE(bringsDictionary(folder.path("nowhere.csv")));
}

}  // namespace
}  // namespace workbench::data
