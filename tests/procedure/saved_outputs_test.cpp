// The saved cases: which variables and cases are saved, in which order all is made and released, and what is noted.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/procedure/procedure_run.h"

namespace workbench::tests::saved_outputs_test {

const std::string byId = "/COMPDATASET=b /VARIABLES=ALL /CASEID=id";
const std::string both = " /SAVE MATCHDATASET=YES MATCHNAME=agreed MISMATCHDATASET=YES MISMATCHNAME=differing";

DatasetBuilder active() {
  return dataset()
      .numeric("id", {1, 2, 3, 4, 5})
      .text("name", 12, {"one", "two", "three", "four", "five and more"})
      .numeric("x", {10, 20, 30, 40, 50});
}
DatasetBuilder compared() {
  return dataset()
      .numeric("x", {10, 21, 40, 51, 60})
      .numeric("id", {1, 2, 4, 5, 6})
      .text("name", 20, {"one", "two", "FOUR", "five and mor", "six"});
}

std::string variablesOf(const ProcedureRun& run, const std::string& handle) {
  const std::shared_ptr<data::Dataset> found =
      const_cast<ProcedureRun&>(run).manager().find(handle);  // looking changes nothing
  if (found == nullptr) return "no dataset";
  std::string all;
  for (const data::Variable& variable : found->dictionary().variables()) {
    all += (all.empty() ? "" : " ") + variable.name + ':' + std::to_string(variable.width);
  }
  return all;
}

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file);
  std::stringstream content;
  content << stream.rdbuf();
  return content.str();
}

// A folder of its own for one test.
class Folder {
 public:
  explicit Folder(const std::string& name)
      : path_(std::filesystem::temp_directory_path() / ("compare-datasets-" + name + std::to_string(::getpid()))) {
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  std::filesystem::path file(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

TEST(SavedOutputs, HoldTheActiveValuesOfComparedPairsAndNoCaseWithoutPartner) {
  ProcedureRun run(active(), compared());
  run.run(byId + both);
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.values("CasesCompare"), "0 1 -1 1 1");
  EXPECT_EQ(run.valuesOf("agreed", "id"), "1");
  EXPECT_EQ(run.valuesOf("agreed", "name"), "one         ");
  EXPECT_EQ(run.valuesOf("agreed", "x"), "10");
  EXPECT_EQ(run.valuesOf("differing", "id"), "2 4 5");
  EXPECT_EQ(run.valuesOf("differing", "name"), "two          four         five and mor");
  EXPECT_EQ(run.valuesOf("differing", "x"), "20 40 50");
}

TEST(SavedOutputs, HoldTheComparedVariablesInTheOrderOfTheActiveDictionaryButNoFlag) {
  ProcedureRun run(dataset().numeric("only", {1}).text("t", 9, {"a"}).numeric("id", {1}).text("kind", 3, {"b"}),
                   dataset().numeric("kind", {1}).numeric("id", {1}).text("t", 2, {"a"}).numeric("more", {1}));
  run.run(byId + both);
  EXPECT_EQ(variablesOf(run, "agreed"), "t:9 id:0");
  EXPECT_EQ(variablesOf(run, "differing"), "t:9 id:0");
}

TEST(SavedOutputs, LeaveOutWhatLiesBetweenTheComparedVariables) {
  const DatasetBuilder same = dataset()
                                  .numeric("a", {1, 2})
                                  .numeric("b", {3, 4})
                                  .text("between", 20, {"no", "no"})
                                  .text("c", 9, {"nine byte", "s"})
                                  .numeric("also", {8, 8})
                                  .numeric("d", {5, 6});
  ProcedureRun run(same, same);
  run.run("/COMPDATASET=b /VARIABLES=a b c d /SAVE MATCHDATASET=YES MATCHNAME=agreed");
  EXPECT_EQ(variablesOf(run, "agreed"), "a:0 b:0 c:9 d:0");
  EXPECT_EQ(run.valuesOf("agreed", "a"), "1 2");
  EXPECT_EQ(run.valuesOf("agreed", "b"), "3 4");
  EXPECT_EQ(run.valuesOf("agreed", "c"), "nine byte s        ");
  EXPECT_EQ(run.valuesOf("agreed", "d"), "5 6");
}

TEST(SavedOutputs, HoldACaseIdThatWasNotNamed) {
  ProcedureRun run(active(), compared());
  run.run("/COMPDATASET=b /VARIABLES=x /CASEID=id" + both);
  EXPECT_EQ(variablesOf(run, "agreed"), "id:0 x:0");
}

TEST(SavedOutputs, HoldAFlagVariableOfAnEarlierRunWhenItIsCompared) {
  ProcedureRun run(dataset().numeric("id", {1, 2}).numeric("CasesCompare", {7, 7}),
                   dataset().numeric("id", {1, 2}).numeric("CasesCompare", {7, 8}));
  run.run(byId + both);
  EXPECT_EQ(run.values("CasesCompare_1"), "0 1");
  EXPECT_EQ(variablesOf(run, "agreed"), "id:0 CasesCompare:0");
  EXPECT_EQ(run.valuesOf("differing", "CasesCompare"), "7");
}

TEST(SavedOutputs, HoldVariablesLikeTheActiveOnesAndTheActiveDatasetsAttributes) {
  const auto describe = [](data::Variable& x) {
    x.label = "A number";
    x.format = {FormatType::comma, 12, 3};
    x.level = VRIX_Variable_Enumerations::MeasurementLevel::ordinal;
    x.role = VRIX_Variable_Enumerations::Role::both;
    x.numberLabels = {{1, "one"}};
    x.attributes.Add("Unit", {"EUR"});
  };
  ProcedureRun run(dataset().numeric("x", {1}, describe).with([](data::Dictionary& dictionary) {
    dictionary.attributes.Add("Survey", {"2026", "spring"});
    dictionary.attributes.Add("$Host", {"1"});
  }),
                   dataset().numeric("x", {2}).with(
                       [](data::Dictionary& dictionary) { dictionary.attributes.Add("Other", {"1"}); }));
  run.run("/COMPDATASET=b /VARIABLES=ALL" + both);
  for (const char* handle : {"agreed", "differing"}) {
    const data::Dictionary& saved = run.manager().find(handle)->dictionary();
    EXPECT_EQ(saved.attributes, run.active()->dictionary().attributes) << handle;
    const data::Variable& x = saved.at(0);
    EXPECT_EQ(x.label, "A number");
    EXPECT_EQ(x.format.type, FormatType::comma);
    EXPECT_EQ(x.format.width, 12);
    EXPECT_EQ(x.format.decimals, 3);
    EXPECT_EQ(x.level, VRIX_Variable_Enumerations::MeasurementLevel::ordinal);
    EXPECT_EQ(x.role, VRIX_Variable_Enumerations::Role::both);
    EXPECT_EQ(x.numberLabels.size(), 1U);
    EXPECT_EQ(x.attributes.Size(), 1);
  }
  EXPECT_EQ(run.valuesOf("agreed", "x"), "");
  EXPECT_EQ(run.valuesOf("differing", "x"), "1");
}

TEST(SavedOutputs, AreEmptyDatasetsWhenNoCaseBelongsThere) {
  ProcedureRun run(active(), active());
  run.run(byId + both);
  EXPECT_EQ(run.valuesOf("agreed", "id"), "1 2 3 4 5");
  EXPECT_EQ(variablesOf(run, "differing"), "id:0 name:12 x:0");
  EXPECT_EQ(run.valuesOf("differing", "id"), "");
}

TEST(SavedOutputs, AreOpenedAndFilledSingly) {
  ProcedureRun matched(active(), compared());
  matched.run(byId + " /SAVE MATCHDATASET=YES MATCHNAME=agreed");
  EXPECT_EQ(matched.valuesOf("agreed", "id"), "1");
  EXPECT_EQ(matched.journalLines({"= UserOutputCaseFile("}).size(), 1U);
  ProcedureRun mismatched(active(), compared());
  mismatched.run(byId + " /SAVE MISMATCHDATASET=YES MISMATCHNAME=differing");
  EXPECT_EQ(mismatched.valuesOf("differing", "name"), "two          four         five and mor");
  EXPECT_EQ(mismatched.journalLines({"= UserOutputCaseFile("}).size(), 1U);
}

TEST(SavedOutputs, AreNotOpenedWhenNoneIsAskedFor) {
  ProcedureRun run(active(), compared());
  run.run(byId + " /SAVE MATCHDATASET=NO MATCHNAME=agreed");
  EXPECT_EQ(run.journalLine("UserOutputCaseFile("), -1);
  EXPECT_EQ(run.valuesOf("agreed", "id"), "no dataset");
  EXPECT_EQ(run.messages(), "");
}

TEST(SavedOutputs, AreOpenedBeforeTheIteratorsAndDescribedAfterThem) {
  ProcedureRun run(dataset().numeric("id", {1}).numeric("x", {1}), dataset().numeric("id", {1}).numeric("x", {1}));
  run.run(byId + both);
  EXPECT_EQ(run.journalLines({"= UserOutputCaseFile(", "CreateCaseIterator(", ".MakeVariable(VRIX", ".ObsIndex(",
                              "ProcedureDataSource#1.GetAttributes()", "SetAttributes(", "CommitDictionary()",
                              "Dimension(\"CD_Cases\"", "NextCase() -> true"}),
            (std::vector<std::string>{
                "UserOutputCaseFile#1 = UserOutputCaseFile(UserCaseFileSpec#2)",
                "UserOutputCaseFile#2 = UserOutputCaseFile(UserCaseFileSpec#3)",
                "VRIX_DataSource#1.CreateCaseIterator(0) -> VRIX_InputCaseIterator#1",
                "ProcedureDataSource#1.CreateCaseIterator(0) -> VRIX_InputCaseIterator#2",
                "VRIX_DataSource#2.MakeVariable(VRIX_Variable(id), index) -> VRIX_Variable(id)",
                "VRIX_DataSource#2.ObsIndex(0) -> 0",
                "VRIX_DataSource#3.MakeVariable(VRIX_Variable(id), index) -> VRIX_Variable(id)",
                "VRIX_DataSource#3.ObsIndex(0) -> 0",
                "VRIX_DataSource#2.MakeVariable(VRIX_Variable(x), index) -> VRIX_Variable(x)",
                "VRIX_DataSource#2.ObsIndex(1) -> 1",
                "VRIX_DataSource#3.MakeVariable(VRIX_Variable(x), index) -> VRIX_Variable(x)",
                "VRIX_DataSource#3.ObsIndex(1) -> 1",
                "ProcedureDataSource#1.GetAttributes() -> DatasourceAttributes(0)",
                "VRIX_DataSource#2.SetAttributes(DatasourceAttributes(0))",
                "VRIX_DataSource#3.SetAttributes(DatasourceAttributes(0))",
                "VRIX_DataSource#2.CommitDictionary()",
                "VRIX_DataSource#3.CommitDictionary()",
                "BpDimension#3 = BpPivotTable#5.Dimension(\"CD_Cases\", 2)",
                "VRIX_InputCaseIterator#2.NextCase() -> true",
                "VRIX_InputCaseIterator#1.NextCase() -> true",
            }));
}

TEST(SavedOutputs, AreNotedThenClosedThenOutlivedByTheIteratorsThenReleasedBeforeTheCaption) {
  const Folder folder("release-order");
  ProcedureRun run(active(), compared());
  run.run(byId + " /SAVE MATCHDATASET=YES MATCHNAME='" + folder.file("agreed.csv").string() +
          "' MISMATCHDATASET=YES MISMATCHNAME=differing");
  std::string order;
  for (const std::string& line : run.journalLines({"AddNotesWithGroup(", ".Close()", "~VRIX_InputCaseIterator",
                                                   "~UserOutputCaseFile", "BpPivotTable#5.Caption("})) {
    order += line.substr(0, line.find_first_of("#(")) + ' ';
  }
  EXPECT_EQ(order,
            "AddNotesWithGroup AddNotesWithGroup VRIX_DataSource VRIX_DataSource ~VRIX_InputCaseIterator "
            "~VRIX_InputCaseIterator ~UserOutputCaseFile ~UserOutputCaseFile BpPivotTable ");
}

TEST(SavedOutputs, AreNotedWhenTheyAreFiles) {
  const Folder folder("notes");
  const std::string agreed = folder.file("agreed.csv").string();
  const std::string differing = folder.file("differing.csv").string();
  ProcedureRun run(active(), compared());
  run.run(byId + " /SAVE MATCHDATASET=YES MATCHNAME='" + agreed + "' MISMATCHDATASET=YES MISMATCHNAME='" + differing +
          "'");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.notes(), "3: ||CasesCompare\n2: CD_Matched||" + agreed + "\n2: CD_Mismatched||" + differing + "\n");
  EXPECT_TRUE(run.journalLine("AddNotesWithGroup(2, \"CD_Matched\", BpString(\"\", false), BpString(") >= 0);
  EXPECT_EQ(contentOf(agreed), "id,name,x\n1,one,10\n");
  EXPECT_EQ(contentOf(differing), "id,name,x\n2,two,20\n4,four,40\n5,five and mor,50\n");
}

TEST(SavedOutputs, AreNotNotedWhenTheyAreDatasets) {
  ProcedureRun run(active(), compared());
  run.run(byId + both + " FLAGMISMATCHES=NO");
  EXPECT_EQ(run.notes(), "");
  EXPECT_EQ(run.valuesOf("agreed", "id"), "1");
}

TEST(SavedOutputs, AreNotedSinglyAndWithoutAFlag) {
  const Folder folder("single-note");
  const std::string differing = folder.file("differing.csv").string();
  ProcedureRun run(active(), compared());
  run.run(byId + " /SAVE FLAGMISMATCHES=NO MATCHDATASET=YES MATCHNAME=agreed MISMATCHDATASET=YES MISMATCHNAME='" +
          differing + "'");
  EXPECT_EQ(run.notes(), "2: CD_Mismatched||" + differing + "\n");
}

TEST(SavedOutputs, HoldWideTextsSideBySideWithNumbers) {
  const std::string wide(31, 'w');
  ProcedureRun run(dataset().text("t", 1, {"a"}).numeric("n", {1}).text("w", 31, {wide}).text("e", 8, {"eight888"}),
                   dataset().text("t", 1, {"a"}).numeric("n", {2}).text("w", 31, {wide}).text("e", 8, {"eight888"}));
  run.run("/COMPDATASET=b /VARIABLES=ALL" + both);
  EXPECT_EQ(run.valuesOf("differing", "t"), "a");
  EXPECT_EQ(run.valuesOf("differing", "n"), "1");
  EXPECT_EQ(run.valuesOf("differing", "w"), wide);
  EXPECT_EQ(run.valuesOf("differing", "e"), "eight888");
}

TEST(SavedOutputs, HaveCasesWithoutValuesWhenNoVariableCanBeCompared) {
  ProcedureRun run(dataset().numeric("x", {1, 2, 3}), dataset().numeric("y", {1, 2}));
  run.run("/COMPDATASET=b /VARIABLES=ALL" + both);
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(variablesOf(run, "agreed"), "");
  EXPECT_EQ(run.journalLines({".WriteCase("}).size(), 2U);
}

TEST(SavedOutputs, TakeTheSizeOfTheirCasesOnceFromTheMatchedOutputElseFromTheMismatchedOne) {
  const auto asked = [](const std::string& save) {
    ProcedureRun run(active(), compared());
    return run.run(byId + save).journalLines({"GetCaseSize()"});
  };
  EXPECT_EQ(asked(both), (std::vector<std::string>{"VRIX_DataSource#2.GetCaseSize() -> 4"}));
  EXPECT_EQ(asked(" /SAVE MISMATCHDATASET=YES MISMATCHNAME=differing"),
            (std::vector<std::string>{"VRIX_DataSource#2.GetCaseSize() -> 4"}));
  EXPECT_TRUE(asked("").empty());
}

TEST(SavedOutputs, GetTheirBufferWhenTheFirstCasesHaveBeenRead) {
  ProcedureRun run(active(), compared());
  run.run(byId + both);
  EXPECT_EQ(run.missingInOrder({"VRIX_InputCaseIterator#2.NextCase()", "VRIX_InputCaseIterator#1.NextCase()",
                                "GetCaseSize()", "WriteCase(", "VRIX_InputCaseIterator#1.NextCase()"}),
            "");
}

TEST(SavedOutputs, TakeACaseWhenItHasBeenShownAndBeforeTheNextOneIsRead) {
  ProcedureRun run(dataset().numeric("x", {1, 2}), dataset().numeric("x", {9, 2}));
  run.run("/COMPDATASET=b /VARIABLES=ALL" + both);
  EXPECT_EQ(
      run.missingInOrder({"NextCase() -> true", "NextCase() -> true", ".Category(BpNumber(0, Count))",
                          ".Category(BpVariable(\"x\", 2))", "VRIX_DataSource#3.WriteCase(",
                          "VRIX_InputCaseIterator#1.NextCase() -> true", "VRIX_InputCaseIterator#2.NextCase() -> true",
                          "VRIX_DataSource#2.WriteCase(", "VRIX_InputCaseIterator#1.NextCase() -> false"}),
      "");
  EXPECT_EQ(run.journalLines({".WriteCase("}).size(), 2U);
}

TEST(SavedOutputs, AreWrittenAlsoWhenTheCaseTableIsNotWanted) {
  ProcedureRun run(active(), compared());
  run.run(byId + both + " /OUTPUT CASETABLE=NO TABLELIMIT=1");
  EXPECT_EQ(run.valuesOf("differing", "id"), "2 4 5");
}

}  // namespace workbench::tests::saved_outputs_test
