// Dictionaries that stand beside the data: compared, shown and written by the program.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/program/program_run.h"

namespace workbench::tests::dictionary_files_test {

constexpr const char* answers = R"({"fields": [
  {"name": "id", "type": "integer"},
  {"name": "sex", "type": "integer", "title": "Sex", "missingValues": ["", "9"],
   "categories": [{"value": 1, "label": "male"}, {"value": 2, "label": "female"}]}]})";
constexpr const char* otherAnswers = R"({"fields": [
  {"name": "id", "type": "integer"},
  {"name": "sex", "type": "integer", "title": "Gender", "statistics:variable": {"level": "nominal", "role": "target",
   "attributes": {"Source": ["Q2"]}}}]})";

struct TwoDescribedFiles {
  TwoDescribedFiles() {
    folder.write("a.csv", "id,sex\n1,1\n2,9\n");
    folder.write("b.csv", "id,sex\n1,1\n2,2\n");
    folder.write("a.schema.json", answers);
    folder.write("b.schema.json", otherAnswers);
  }
  ProgramFolder folder;
};

bool hasTable(const nlohmann::json& results, const std::string& key) {
  for (const auto& command : results["commands"]) {
    for (const auto& item : command["items"]) {
      if (item["item"] == "table" && item["key"] == key) return true;
    }
  }
  return false;
}

TEST(DictionaryFiles, AreComparedWhereBothDatasetsHaveOne) {
  const TwoDescribedFiles files;
  const auto results = files.folder.results({"compare", "a.csv", "b.csv", "--id", "id"});
  EXPECT_EQ(cellOf(results, "CD_DictCompTableName", {"sex", "CD_AttributeLabel"}), "(1) Sex\n(2) Gender");
  EXPECT_TRUE(hasTable(results, "CD_ValueLabelsCompTableName"));
}

TEST(DictionaryFiles, AreNotComparedWhereOnlyOneHasOneOrNobodyWantsIt) {
  const TwoDescribedFiles files;
  EXPECT_FALSE(hasTable(files.folder.results({"compare", "a.csv", "b.csv", "--id", "id", "--properties", "none"}),
                        "CD_DictCompTableName"));
  std::filesystem::remove(files.folder.path("b.schema.json"));
  EXPECT_FALSE(hasTable(files.folder.results({"compare", "a.csv", "b.csv", "--id", "id"}), "CD_DictCompTableName"));
}

TEST(DictionaryFiles, AreShownByDescribe) {
  const TwoDescribedFiles files;
  const auto results = files.folder.results({"describe", "a.csv"});
  EXPECT_EQ(cellOf(results, "Dataset", {"Dictionary File", ""}), "a.schema.json");
  EXPECT_EQ(cellOf(results, "Dictionary", {"sex", "Label"}), "Sex");
  EXPECT_EQ(cellOf(results, "Dictionary", {"sex", "Missing Values"}), "9");
  EXPECT_EQ(cellOf(results, "Dictionary", {"sex", "Level"}), "Nominal");
  EXPECT_EQ(cellOf(results, "Dictionary", {"sex", "Role"}), "Input");
  EXPECT_TRUE(hasTable(results, "Value Labels"));
  EXPECT_FALSE(hasTable(results, "Attributes"));
  const auto other = files.folder.results({"describe", "b.csv"});
  EXPECT_EQ(cellOf(other, "Dictionary", {"sex", "Role"}), "Target");
  EXPECT_TRUE(hasTable(other, "Attributes"));
}

TEST(DictionaryFiles, AreWrittenBesideSavedCasesAndCompareEqualToWhereTheyCameFrom) {
  const TwoDescribedFiles files;
  files.folder.run({"compare", "a.csv", "b.csv", "--id", "id", "--matched", "m.csv", "--save-active", "s.csv"});
  EXPECT_TRUE(std::filesystem::exists(files.folder.path("m.schema.json")));
  const auto results = files.folder.results({"compare", "a.csv", "s.csv", "--id", "id"});
  EXPECT_EQ(results["verdict"], "same") << messagesOf(results);
  EXPECT_FALSE(hasTable(results, "CD_DictCompTableName"));
}

TEST(DictionaryFiles, OfAnOpenDatasetAreNotReplacedByAnotherOutput) {
  const TwoDescribedFiles files;
  const ProgramResult result = files.folder.run({"compare", "a.csv", "b.csv", "--id", "id", "--matched", "a.csv.gz"});
  EXPECT_EQ(result.status, 1) << result.err;
  EXPECT_EQ(files.folder.read("a.schema.json"), answers);
  EXPECT_TRUE(std::filesystem::exists(files.folder.path("a.csv.gz.schema.json")));
}

TEST(DictionaryFiles, OfTwoOutputsMayNotBeOneFile) {
  const TwoDescribedFiles files;
  const ProgramResult result =
      files.folder.run({"compare", "a.csv", "b.csv", "--id", "id", "--matched", "out.csv", "--mismatched", "out.tsv"});
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("out.schema.json"), std::string::npos) << result.err;
  EXPECT_FALSE(std::filesystem::exists(files.folder.path("out.csv")));
}

TEST(DictionaryFiles, ThatAreNotSoundAreNamedWithPlaceAndRemedy) {
  const TwoDescribedFiles files;
  files.folder.write("b.schema.json", R"({"fields": [{"name": "id", "type": "integer"}, {"name": "sex", "typ": 3,
    "statistics:variable": {"level": "nominel"}}]})");
  const ProgramResult result = files.folder.run({"compare", "a.csv", "b.csv", "--id", "id"});
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("b.schema.json"), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("/fields/1/statistics:variable/level"), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("nominal"), std::string::npos) << result.err;
}

TEST(Demo, ShowsAllEightKindsOfTable) {
  const ProgramFolder folder;
  const std::string examples = EXAMPLES;
  const auto results = folder.results({"compare", examples + "/entry1.csv", examples + "/entry2.csv", "--id", "id"});
  std::string keys;
  for (const auto& item : results["commands"].back()["items"]) {
    if (item["item"] == "table" && !item["cells"].empty()) keys += item["key"].get<std::string>() + "\n";
  }
  // The first summary is of the datasets, the last one of their cases.
  EXPECT_EQ(keys,
            "CD_CompSummaryTableName\nCD_DictCompTableName\nCD_ValueLabelsCompTableName\nCD_MatchedSummaryTableName\n"
            "CD_MismatchedByCasesTableName\nCD_MismatchedByVarsTableName\nCD_CaseByCaseComparisonTableName\n"
            "CD_CompSummaryTableName\n");
}

}  // namespace workbench::tests::dictionary_files_test
