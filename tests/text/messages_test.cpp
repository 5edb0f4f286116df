#include "host/messages.h"

#include <gtest/gtest.h>

#include "host/output.h"
#include "workbench/output/document.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/diagnostics.h"

namespace workbench::text {
namespace {

class Messages : public testing::Test {
 protected:
  Messages() { currentRun().command = &command; }
  ~Messages() override {
    journal().sendTo({});
    diagnostics().sendTo({});
    currentRun().command = nullptr;
    pvGetCmnGlb()->pendingError = 0;
  }

  const output::Message& message(std::size_t index) { return std::get<output::Message>(command.items.at(index)); }
  static std::string keyOf(const output::Text& text) { return std::get<output::StringText>(text.held).key; }

  output::Command command;
};

TEST_F(Messages, AreKeptWithTheirKeyAndCodes) {
  BpError(BpString("All values in the tw...", true), BpErrorShow::results, BpErrorLevel::note);
  ASSERT_EQ(command.items.size(), 1U);
  EXPECT_EQ(keyOf(message(0).text), "All values in the tw...");
  EXPECT_EQ(message(0).show, 4);
  EXPECT_EQ(message(0).level, 1);
  EXPECT_EQ(message(0).source, output::Message::Source::procedure);
  EXPECT_FALSE(message(0).number);
}

TEST_F(Messages, StandInTheOrderInWhichTheyWereIssued) {
  BpError(BpString("first", false), BpErrorShow::log, BpErrorLevel::error);
  AddNotesWithGroup(BpNoteKind::addedVariable, BpString("", false), BpString("", false), BpString("flag", false));
  BpError(BpString("second", false), BpErrorShow::log, BpErrorLevel::error);
  ASSERT_EQ(command.items.size(), 3U);
  EXPECT_EQ(keyOf(message(0).text), "first");
  const auto& note = std::get<output::Note>(command.items[1]);
  EXPECT_EQ(note.group, 3);
  EXPECT_EQ(keyOf(note.texts[2]), "flag");
  EXPECT_EQ(keyOf(message(2).text), "second");
}

TEST_F(Messages, OfTheHostCarryTheirNumberAndSetThePendingErrorWord) {
  BACKENDERROR(7414, 2, 2);
  EXPECT_EQ(message(0).number, 7414);
  EXPECT_EQ(message(0).show, 2);
  EXPECT_EQ(message(0).level, 2);
  EXPECT_EQ(keyOf(message(0).text), "The VARIABLES subcommand is required.");
  EXPECT_NE(pvGetCmnGlb()->pendingError, 0);
}

TEST_F(Messages, OfAnUnknownNumberShowTheNumber) {
  BACKENDERROR(99, 2, 2);
  EXPECT_EQ(keyOf(message(0).text), "99");
}

TEST_F(Messages, CannotBeIssuedWhileNoCommandIsRunning) {
  currentRun().command = nullptr;
  EXPECT_THROW(BpError(BpString("x", false), BpErrorShow::log, BpErrorLevel::error), ErrorText);
}

TEST_F(Messages, ForPeopleWhoLookIntoARunAreNoPartOfTheResults) {
  std::string line;
  diagnostics().sendTo([&](std::string_view written) { line = written; });
  BP_ToFront(0, BP_Character("caught an exception here"));
  EXPECT_EQ(line, "caught an exception here");
  EXPECT_TRUE(command.items.empty());
}

TEST_F(Messages, AreWrittenToTheJournal) {
  std::vector<std::string> lines;
  journal().sendTo([&](std::string_view line) { lines.emplace_back(line); });
  BACKENDERROR(7414, 2, 2);
  BP_ToFront(0, BP_Character("a\nb"));
  EXPECT_EQ(lines, (std::vector<std::string>{"BACKENDERROR(7414, 2, 2)", "BP_ToFront(0, \"a\\nb\")"}));
}

TEST(ErrorTextException, CarriesOneSentence) {
  try {
    throw ErrorText("The dataset does not exist.");
  } catch (const std::exception& error) {
    EXPECT_STREQ(error.what(), "The dataset does not exist.");
  }
}

}  // namespace
}  // namespace workbench::text
