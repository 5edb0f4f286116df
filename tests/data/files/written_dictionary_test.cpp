// The dictionary that is written with a data file.
#include <gtest/gtest.h>

#include <cstring>

#include "host/messages.h"
#include "tests/data/files/file_fixture.h"

namespace workbench::data {
namespace {

Dictionary answers() {
  Dictionary dictionary;
  Variable sex;
  sex.name = "sex";
  sex.label = "Sex";
  sex.numberLabels = {{1, "male"}, {2, "female"}};
  sex.missing.code = 1;
  sex.missing.values[0].number = 9;
  dictionary.add(sex);
  return dictionary;
}

// Writes one case and puts it into place.
void write(const std::string& path, const Dictionary& dictionary, double value) {
  auto writer = createDataFile(path, dictionary, "");
  ASSERT_TRUE(writer) << writer.problem().text();
  OBS cases[1];
  cases[0].number = value;
  (*writer)->append(cases, 1, 1);
  (*writer)->complete();
  (*writer)->commit();
}

TEST(WrittenDictionary, StandsBesideTheDataAndIsReadBack) {
  const TestFolder folder;
  write(folder.path("out.csv"), answers(), 9);
  EXPECT_EQ(folder.names(), (std::vector<std::string>{"out.csv", "out.schema.json"}));
  const SharedFile file = opened(folder.path("out.csv"));
  const Variable& sex = file->dictionary().at(0);
  EXPECT_EQ(sex.label, "Sex");
  EXPECT_EQ(sex.numberLabels, answers().at(0).numberLabels);
  EXPECT_EQ(sex.missing.code, 1);
  EXPECT_EQ(shown(file), "9");
}

TEST(WrittenDictionary, IsNotThereBeforeTheDataAre) {
  const TestFolder folder;
  auto writer = createDataFile(folder.path("out.csv"), answers(), "");
  ASSERT_TRUE(writer);
  (*writer)->complete();
  for (const std::string& name : folder.names()) EXPECT_TRUE(name != "out.csv" && name != "out.schema.json") << name;
  *writer = nullptr;
  EXPECT_TRUE(folder.names().empty());
}

TEST(WrittenDictionary, GoesIntoThePackageThatNamesTheFile) {
  const TestFolder folder;
  folder.write("datapackage.json", R"({"title": "kept", "resources": [
    {"name": "other", "path": "other.csv", "schema": {"fields": [{"name": "x", "title": "kept, too"}]}},
    {"name": "out", "path": "out.csv", "description": "kept as well",
     "dialect": {"delimiter": ";"}, "schema": {"fields": [{"name": "old"}]}}]})");
  write(folder.path("out.csv"), answers(), 1);
  EXPECT_EQ(folder.names(), (std::vector<std::string>{"datapackage.json", "out.csv"}));
  const std::string package = folder.read("datapackage.json");
  for (const char* kept : {"\"kept\"", "kept, too", "kept as well"}) {
    EXPECT_NE(package.find(kept), std::string::npos) << kept;
  }
  EXPECT_EQ(opened(folder.path("out.csv"))->dictionary().at(0).label, "Sex");
}

TEST(WrittenDictionary, OfTwoOutputsGoesIntoOnePackage) {
  const TestFolder folder;
  folder.write("datapackage.json",
               R"({"resources": [{"name": "a", "path": "a.csv"}, {"name": "b", "path": "b.csv"}]})");
  auto first = createDataFile(folder.path("a.csv"), answers(), "");
  auto second = createDataFile(folder.path("b.csv"), answers(), "");
  ASSERT_TRUE(first && second);
  (*first)->complete();
  (*second)->complete();
  (*first)->commit();
  (*second)->commit();
  for (const char* name : {"a.csv", "b.csv"}) {
    EXPECT_EQ(opened(folder.path(name))->dictionary().at(0).label, "Sex") << name;
  }
}

TEST(WrittenDictionary, GetsALongerNameWhereAnotherDataFileWouldTakeItForItsOwn) {
  const TestFolder folder;
  write(folder.path("out.csv"), answers(), 1);
  Dictionary other = answers();
  other.at(0).label = "Other";
  write(folder.path("out.tsv"), other, 2);
  EXPECT_EQ(folder.names(), (std::vector<std::string>{"out.csv", "out.schema.json", "out.tsv", "out.tsv.schema.json"}));
  EXPECT_EQ(opened(folder.path("out.csv"))->dictionary().at(0).label, "Sex");
  EXPECT_EQ(opened(folder.path("out.tsv"))->dictionary().at(0).label, "Other");
}

TEST(WrittenDictionary, LacksOnlyWhatCannotBeWrittenAndSaysSo) {
  const TestFolder folder;
  Dictionary dictionary = answers();
  dictionary.at(0).numberLabels = {{1, "\xFF"}};
  dictionary.at(0).level = static_cast<VRIX_Variable_Enumerations::MeasurementLevel>(17);
  auto writer = createDataFile(folder.path("out.csv"), dictionary, "");
  ASSERT_TRUE(writer) << writer.problem().text();
  EXPECT_EQ(
      (*writer)->warnings(),
      (std::vector<std::string>{
          "Its dictionary is written without a part: of variable \"sex\" the measurement level has no name.",
          "Its dictionary is written without a part: of variable \"sex\" the label of the value 1 is no UTF-8."}));
  (*writer)->complete();
  (*writer)->commit();
  EXPECT_EQ(opened(folder.path("out.csv"))->dictionary().at(0).label, "Sex");
}

TEST(WrittenDictionary, LeavesTheWidthOfAVeryLongTextToBeInferred) {
  const TestFolder folder;
  Dictionary dictionary;
  Variable text;
  text.name = "text";
  text.width = 40'000;
  text.format = {FormatType::text, 40'000, 0};
  text.label = "Long";
  dictionary.add(text);
  auto writer = createDataFile(folder.path("out.csv"), dictionary, "");
  ASSERT_TRUE(writer) << writer.problem().text();
  EXPECT_EQ((*writer)->warnings().size(), 2U);
  std::vector<OBS> slots(5'000);
  std::memset(slots.data(), 'x', 40'000);
  (*writer)->append(slots.data(), 1, slots.size());
  (*writer)->complete();
  (*writer)->commit();
  const SharedFile file = opened(folder.path("out.csv"));
  EXPECT_EQ(file->dictionary().at(0).width, 40'000);
  EXPECT_EQ(file->dictionary().at(0).label, "Long");
}

TEST(WrittenDictionary, OfAPackageThatIsNotSoundIsAProblemBeforeAnythingIsWritten) {
  const TestFolder folder;
  folder.write("datapackage.json", "{");
  const auto writer = createDataFile(folder.path("out.csv"), answers(), "");
  ASSERT_FALSE(writer);
  EXPECT_NE(writer.problem().text().find("datapackage.json"), std::string::npos);
  EXPECT_EQ(folder.names(), std::vector<std::string>{"datapackage.json"});
}

}  // namespace
}  // namespace workbench::data
