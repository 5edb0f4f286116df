#include "workbench/data/working/save.h"

#include <gtest/gtest.h>

#include "host/messages.h"
#include "tests/data/working/outputs_fixture.h"
#include "workbench/data/working/open_dataset.h"

namespace workbench::data {
namespace {

using testing::casesOf;
using testing::data;
using testing::keptDataset;

class SavedDataset : public testing::Outputs {};

TEST_F(SavedDataset, HasAllItsCasesAndAddedVariablesWhateverItsFilter) {
  const auto dataset = keptDataset(data().numeric("x", {1, 2, 3}).numeric("keep", {1, 0, 1}).filter("keep"));
  DatasetSource active(dataset, SourceKind::active);
  active.setMaxObsAdded(1);
  active.MakeVariable(0, nullptr).SetName("flag");
  const auto saved = saveDataset(dataset, folder_.file("saved.csv"), "", outputs_);
  ASSERT_TRUE(saved) << saved.problem().text();
  EXPECT_EQ(*saved, 3);
  EXPECT_TRUE(dataset->hasUnsavedVariables()) << "nothing is in place yet";
  ASSERT_TRUE(outputs_.commit());
  EXPECT_FALSE(dataset->hasUnsavedVariables());
  EXPECT_EQ(folder_.read("saved.csv"), "x,keep,flag\n1,1,\n2,0,\n3,1,\n");
}

TEST_F(SavedDataset, MayTakeThePlaceOfItsOwnFile) {
  const std::string path = folder_.write("in.csv", "x\n1\n2\n");
  const auto dataset = *openDataset(path, {});
  DatasetSource active(dataset, SourceKind::active);
  active.setMaxObsAdded(1);
  std::int32_t flag = -1;
  active.MakeVariable(0, &flag).SetName("flag");
  {
    const auto cases = active.CreateCaseIterator(IteratorOptions::standard);
    while (cases->NextCase()) cases->GetObsPointer(flag)->number = 5;
  }
  ASSERT_TRUE(saveDataset(dataset, folder_.file("./in.csv"), "", outputs_));
  EXPECT_EQ(folder_.read("in.csv"), "x\n1\n2\n");
  ASSERT_TRUE(outputs_.commit());
  EXPECT_EQ(folder_.read("in.csv"), "x,flag\n1,5\n2,5\n");
  EXPECT_EQ(casesOf(*dataset), "1,5 2,5") << "the dataset can be read on";
  ASSERT_TRUE(saveDataset(dataset, path, "", outputs_)) << "and saved once more";
}

TEST_F(SavedDataset, StaysAsItWasWhenItIsAbandoned) {
  const std::string path = folder_.write("in.csv", "x\n1\n2\n");
  const auto dataset = *openDataset(path, {});
  ASSERT_TRUE(saveDataset(dataset, path, "", outputs_));
  outputs_.abandon();
  EXPECT_EQ(folder_.listing(), "in.csv");
  EXPECT_FALSE(dataset->isKept());
  EXPECT_EQ(casesOf(*dataset), "1 2");
}

TEST_F(SavedDataset, CannotReplaceTheFileOfAnotherOne) {
  const auto first = *openDataset(folder_.write("a.csv", "x\n1\n"), {});
  const auto second = *openDataset(folder_.write("b.csv", "x\n2\n"), {});
  EXPECT_FALSE(saveDataset(first, folder_.file("b.csv"), "", outputs_));
  const auto again = *openDataset(folder_.file("a.csv"), {});
  EXPECT_FALSE(saveDataset(first, folder_.file("a.csv"), "", outputs_)) << "another dataset reads the same file";
}

TEST_F(SavedDataset, ThatCannotBeReadLeavesNothing) {
  auto file = std::make_shared<testing::MemoryFile>(data().numeric("x", {1, 2}));
  file->beforeBlock = [](std::size_t) { throw ErrorText("Line 2 cannot be read."); };
  const auto saved = saveDataset(std::make_shared<Dataset>(file), folder_.file("out.csv"), "", outputs_);
  ASSERT_FALSE(saved);
  EXPECT_EQ(saved.problem().text(), "Line 2 cannot be read.");
  ASSERT_TRUE(outputs_.commit());
  EXPECT_EQ(folder_.listing(), "");
}

}  // namespace
}  // namespace workbench::data
