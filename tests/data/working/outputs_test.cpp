#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "host/messages.h"
#include "tests/data/working/outputs_fixture.h"
#include "workbench/data/working/save.h"

namespace workbench::data {
namespace {

using testing::casesOf;
using testing::data;
using testing::keptDataset;
using testing::Outputs;

TEST_F(Outputs, StandInTheirPlaceOnlyAfterTheCommit) {
  {
    const auto file = open(folder_.file("out.csv"));
    write(file->GetDataSource());
    file->GetDataSource().Close();
    const auto dataset = open("agreed");
    write(dataset->GetDataSource());
    dataset->GetDataSource().Close();
  }
  EXPECT_FALSE(std::filesystem::exists(folder_.file("out.csv")));
  EXPECT_TRUE(opened_.opened.empty());
  ASSERT_TRUE(outputs_.commit());
  EXPECT_EQ(folder_.read("out.csv"), "x\n1\n2\n");
  ASSERT_EQ(opened_.opened.size(), 1U);
  EXPECT_EQ(casesOf(*opened_.opened["agreed"]), "1 2");
}

TEST_F(Outputs, LeaveNothingBehindWhenTheyAreAbandoned) {
  {
    const auto file = open(folder_.file("out.csv"));
    write(file->GetDataSource());
    file->GetDataSource().Close();
    open("agreed");
  }
  outputs_.abandon();
  EXPECT_EQ(folder_.listing(), "");
  EXPECT_TRUE(opened_.opened.empty());
}

TEST_F(Outputs, AreAbandonedWhenTheyAreDestroyedWithoutAClose) {
  {
    const auto file = open(folder_.file("out.csv"));
    write(file->GetDataSource());
    const auto dataset = open("agreed");
    write(dataset->GetDataSource());
  }
  ASSERT_TRUE(outputs_.commit());
  EXPECT_EQ(folder_.listing(), "");
  EXPECT_TRUE(opened_.opened.empty());
}

TEST_F(Outputs, LeftBehindByAProcedureAreLetGo) {
  const auto leaked = open(folder_.file("out.csv"));
  write(leaked->GetDataSource());
  letGoOfAllHandedOut();
  EXPECT_EQ(folder_.listing(), "");
  OBS slot{};
  EXPECT_THROW(leaked->GetDataSource().WriteCase(&slot), ErrorText);
}

TEST_F(Outputs, AreWrittenInTheOrderDictionaryCasesClose) {
  const auto output = open("agreed");
  VRIX_DataSource& source = output->GetDataSource();
  OBS slot{};
  EXPECT_THROW(source.WriteCase(&slot), ErrorText);
  EXPECT_THROW(source.Close(), ErrorText);
  write(source);
  EXPECT_THROW(source.MakeVariable(0, nullptr), ErrorText);
  EXPECT_THROW(source.CommitDictionary(), ErrorText);
  EXPECT_THROW(source.CreateCaseIterator(IteratorOptions::standard), ErrorText);
  source.Close();
  EXPECT_THROW(source.WriteCase(&slot), ErrorText);
  EXPECT_THROW(source.Close(), ErrorText);
}

// A case as large as a block, so that every case written is passed on.
TEST_F(Outputs, TakeTheNextCaseAfterOneThatCannotBeWritten) {
  constexpr std::int32_t widest = 32767;
  constexpr int variables = 33;
  const auto output = open(folder_.file("out.csv"));
  VRIX_DataSource& source = output->GetDataSource();
  for (int variable = 0; variable < variables; ++variable) source.MakeVariable(widest, nullptr);
  source.CommitDictionary();
  std::vector<OBS> slots(source.GetCaseSize());
  EXPECT_THROW(source.WriteCase(slots.data()), ErrorText) << "it holds NUL bytes";
  EXPECT_THROW(source.WriteCase(slots.data()), ErrorText);
}

TEST_F(Outputs, HoldVariablesLikeThoseOfTheActiveDataset) {
  auto content = data().numeric("x", {1}).text("town", 12, {"Ghent"});
  content.dictionary.at(1).label = "Town";
  const auto active = makeActiveSource(keptDataset(content));
  {
    const auto output = open("agreed");
    VRIX_DataSource& source = output->GetDataSource();
    std::int32_t index = -1;
    source.MakeVariable(active->GetVariable(1), &index);
    EXPECT_EQ(index, 0);
    source.MakeVariable(active->GetVariable(0), &index);
    EXPECT_EQ(source.ObsIndex(1), 2U);
    EXPECT_EQ(source.GetCaseSize(), 3U);
    EXPECT_EQ(source.FindVarIndex("X", FindOptions::standard), 1);
    DatasourceAttributes attributes;
    attributes.Add("Source", {"survey"});
    source.SetAttributes(attributes);
    source.CommitDictionary();
    source.Close();
  }
  ASSERT_TRUE(outputs_.commit());
  const Dataset& agreed = *opened_.opened["agreed"];
  EXPECT_EQ(agreed.dictionary().at(0).label, "Town");
  EXPECT_EQ(agreed.dictionary().attributes.Name(0), "Source");
  EXPECT_EQ(agreed.caseCount(), 0);
}

TEST_F(Outputs, CannotReplaceTheActiveDataset) {
  UserCaseFileSpec spec;
  ASSERT_TRUE(spec.Init("FIRST", false, true, "", false)) << "that is found out when it is opened";
  EXPECT_THROW(UserOutputCaseFile{spec}, ErrorText);
}

TEST_F(Outputs, CannotBeOpenedOverASpecificationThatIsNotValid) {
  const UserCaseFileSpec spec;
  EXPECT_THROW(UserOutputCaseFile{spec}, ErrorText);
}

TEST_F(Outputs, CannotTakeThePlaceOfAnInput) {
  const std::string path = folder_.write("in.csv", "x\n1\n");
  std::filesystem::create_hard_link(path, folder_.file("link.csv"));
  std::filesystem::create_symlink(path, folder_.file("pointer.csv"));
  {
    const std::unique_ptr<VRIX_DataSource> input(SystemFileDataSource::GetSystemFile(path, "", true, nullptr));
    EXPECT_THROW(open(path), ErrorText);
    EXPECT_THROW(open(folder_.file("./in.csv")), ErrorText);
    EXPECT_THROW(open(folder_.file("link.csv")), ErrorText);
    EXPECT_THROW(open(folder_.file("pointer.csv")), ErrorText);
  }
  EXPECT_NO_THROW(open(path)) << "nobody reads it any more";
}

TEST_F(Outputs, CannotTakeThePlaceOfAnotherOutput) {
  const auto first = open(folder_.file("out.csv"));
  EXPECT_THROW(open(folder_.file("sub/../out.csv")), ErrorText);
  EXPECT_NO_THROW(open(folder_.file("OUT.csv")));
  const auto second = open("agreed");
  EXPECT_THROW(open("AGREED"), ErrorText);
}

TEST_F(Outputs, MayTakeThePlaceOfOneThatWasAbandoned) {
  open(folder_.file("out.csv"));
  EXPECT_NO_THROW(open(folder_.file("out.csv")));
}

// A writer that can fail at its last step.
class FailingWriter final : public CaseWriter {
 public:
  explicit FailingWriter(bool fails, int& committed) : fails_(fails), committed_(committed) {}
  void append(const OBS*, std::size_t, std::size_t) override {}
  void complete() override {}
  void commit() override {
    if (fails_) throw ErrorText("The disk is full.");
    ++committed_;
  }

 private:
  bool fails_;
  int& committed_;
};

TEST_F(Outputs, SayWhatStandsAlreadyWhenOneCannotBePutIntoPlace) {
  int committed = 0;
  for (const char* name : {"a.csv", "b.csv", "c.csv"}) {
    auto output = outputs_.addFile(folder_.file(name));
    ASSERT_TRUE(output);
    (*output)->complete(std::make_unique<FailingWriter>(std::string_view(name) == "b.csv", committed));
  }
  auto dataset = outputs_.addDataset("agreed");
  (*dataset)->complete(keptDataset(data().numeric("x", {1})));
  const auto outcome = outputs_.commit();
  ASSERT_FALSE(outcome);
  EXPECT_EQ(outcome.problem().text(),
            "The disk is full. These files had been put into place before: " + folder_.file("a.csv") + ".");
  EXPECT_EQ(committed, 1);
  EXPECT_TRUE(opened_.opened.empty());
}

TEST_F(Outputs, OfManyCasesHoldThemAll) {
  const int count = 300000;
  {
    const auto output = open("agreed");
    VRIX_DataSource& source = output->GetDataSource();
    source.MakeVariable(0, nullptr);
    source.CommitDictionary();
    for (int row = 0; row < count; ++row) {
      OBS slot{};
      slot.number = row;
      source.WriteCase(&slot);
    }
    source.Close();
  }
  ASSERT_TRUE(outputs_.commit());
  DatasetPass pass(*opened_.opened["agreed"], CaseUse::onlyRead);
  int row = 0;
  while (const CaseSpan span = pass.next()) {
    for (std::size_t index = 0; index < span.count; ++index) ASSERT_EQ(span.cases[index].number, row++);
  }
  EXPECT_EQ(row, count);
}

TEST_F(Outputs, WriteTheirCallsToTheJournal) {
  testing::JournalLines journalLines;
  {
    const auto output = open("agreed");
    journalLines.lines.clear();
    VRIX_DataSource& source = output->GetDataSource();
    source.MakeVariable(0, nullptr);
    source.CommitDictionary();
    const OBS slot{};
    source.WriteCase(&slot);
    source.Close();
  }
  EXPECT_EQ(journalLines.lines,
            "UserOutputCaseFile#1.GetDataSource() -> VRIX_DataSource#1\n"
            "VRIX_DataSource#1.MakeVariable(0, null) -> VRIX_Variable(Variable)\n"
            "VRIX_DataSource#1.CommitDictionary()\n"
            "VRIX_DataSource#1.WriteCase(case)\n"
            "VRIX_DataSource#1.Close()\n"
            "~UserOutputCaseFile#1\n"
            "~VRIX_DataSource#1\n");
}

TEST_F(Outputs, SystemFileIsRefusedWithOneSentence) {
  EXPECT_THROW(SystemFileDataSource::GetSystemFile(folder_.file("none.csv"), "", true, nullptr), ErrorText);
  const std::string plain = folder_.write("in.csv", "x\n1\n");
  EXPECT_THROW(SystemFileDataSource::GetSystemFile(plain, "secret", true, nullptr), ErrorText)
      << "a password that protects nothing is not passed over";
  EXPECT_THROW(SystemFileDataSource::GetSystemFile(plain, "", false, nullptr), ErrorText);
}

TEST_F(Outputs, SystemFileShowsItsCleanedPath) {
  folder_.write("in.csv", "x\n1\n");
  const std::unique_ptr<VRIX_DataSource> source(
      SystemFileDataSource::GetSystemFile(folder_.file("./in.csv"), "", true, nullptr));
  EXPECT_EQ(source->GetFileSpecExt().GetGeneric(), folder_.file("in.csv"));
  EXPECT_EQ(source->GetNVars(), 1);
}

TEST_F(Outputs, CannotTakeThePlaceOfAFileThatWasReadByTheNameOfAnother) {
  auto file = std::make_shared<testing::MemoryFile>(data().numeric("x", {1}), folder_.file("package.json#people"));
  file->further = {folder_.write("people.csv", "x\n1\n")};
  const auto dataset = std::make_shared<Dataset>(file);
  EXPECT_THROW(open(folder_.file("people.csv")), ErrorText);
  EXPECT_TRUE(saveDataset(dataset, folder_.file("people.csv"), "", outputs_))
      << "but it may be saved over its own file";
}

}  // namespace
}  // namespace workbench::data
