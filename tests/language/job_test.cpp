#include "workbench/language/job.h"

#include <gtest/gtest.h>

namespace workbench::language {
namespace {

const std::vector<std::string> names = {"OPEN", "OPEN DATA", "COMPARE DATASETS", "SORT CASES"};

TEST(Job, TakesTheLongestKnownNameForTheCommands) {
  const std::vector<JobCommand> commands = readJob("Open  Data FILE='a'.\nopen DATAX.\nOPEN data.", names);
  ASSERT_EQ(commands.size(), 3U);
  EXPECT_EQ(commands[0].name, "OPEN DATA");
  EXPECT_EQ(commands[0].tokens.size(), 3U);
  EXPECT_EQ(commands[1].name, "OPEN");
  EXPECT_EQ(commands[1].tokens.at(0).getString(), "DATAX");
  EXPECT_EQ(commands[2].name, "OPEN DATA");
  EXPECT_TRUE(commands[2].tokens.empty());
}

TEST(Job, SaysWhereACommandStarts) {
  const std::vector<JobCommand> commands = readJob("* note.\n\n  SORT CASES BY=a.", names);
  ASSERT_EQ(commands.size(), 1U);
  EXPECT_EQ(commands[0].line, 3);
  EXPECT_EQ(commands[0].column, 3);
}

TEST(Job, NamesTheNearestCommandForOneThatIsNotKnown) {
  const auto sentenceOf = [](std::string_view job) { return readJob(job, names).at(0).error.value().sentence; };
  EXPECT_EQ(sentenceOf("COMPARE DATASET /X=1."), "There is no command COMPARE DATASET. Did you mean COMPARE DATASETS?");
  EXPECT_EQ(sentenceOf("SROT CASES BY=a."), "There is no command SROT CASES. Did you mean SORT CASES?");
  EXPECT_EQ(sentenceOf("COMPARE /X=1."), "There is no command COMPARE. Did you mean COMPARE DATASETS?");
  EXPECT_EQ(sentenceOf("FOO."),
            "There is no command FOO. The commands are: OPEN, OPEN DATA, COMPARE DATASETS, SORT CASES.");
  EXPECT_EQ(sentenceOf("/SAVE."), "A command starts with its name; found /.");
}

TEST(Job, KeepsTheCommandsAfterOneThatIsWrong) {
  const std::vector<JobCommand> commands =
      readJob("SORT CASES BY='a.\nSORT \xFF CASES.\nFOO.\nSORT CASES BY=b.", names);
  ASSERT_EQ(commands.size(), 4U);
  EXPECT_TRUE(commands[0].error);
  EXPECT_TRUE(commands[1].error);
  EXPECT_TRUE(commands[2].error);
  EXPECT_FALSE(commands[3].error);
  EXPECT_EQ(commands[3].line, 4);
}

}  // namespace
}  // namespace workbench::language
