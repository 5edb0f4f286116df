// Procedures and their tables: which category a title is, where a cell lands, what a footnote is.
#include <gtest/gtest.h>

#include <cmath>
#include <new>

#include "host/messages.h"
#include "tests/output/fakes.h"
#include "workbench/output/text_rendering.h"

namespace workbench::output {
namespace {

// The cells of a table in the order written: "row|column=content" by the titles of their categories.
std::string cellsOf(const Table& table) {
  std::string all;
  for (std::size_t cell = 0; cell < table.cells.size(); ++cell) {
    std::string one;
    for (std::size_t number = 0; number < table.dimensions.size(); ++number) {
      const Category& category = table.dimensions[number].nodes[static_cast<std::size_t>(table.at(cell)[number])];
      one += one.empty() ? "" : "|";
      one += shown(category.title, english());
    }
    all += all.empty() ? "" : " ";
    all += one + "=" + shown(*table.cells[cell].content, english());
  }
  return all;
}

std::string leavesOf(const Dimension& dimension) {
  std::string all;
  for (const std::int32_t leaf : dimension.leaves()) {
    all += all.empty() ? "" : " ";
    all += shown(dimension.nodes[static_cast<std::size_t>(leaf)].title, english());
  }
  return all;
}

class Tables : public testing::Test {
 protected:
  BpPivotTable open(std::string_view title = "Table") { return procedure_.PivotTable(key(title), plain(title), true); }
  const Table& kept(std::size_t item = 0) const { return command_.table(item); }

  RunningCommand command_;
  BpProcedure procedure_{"Test Procedure", 42};
};

TEST_F(Tables, StandUnderTheTitleAndCodeOfTheirProcedure) {
  EXPECT_EQ(command_->procedureTitle, "Test Procedure");
  EXPECT_EQ(command_->procedureCode, 42);
  EXPECT_FALSE(command_->openedTable());
  const BpPivotTable table = open();
  EXPECT_TRUE(command_->openedTable());
  EXPECT_EQ(std::get<StringText>(kept().title.held).key, "Table");
  EXPECT_TRUE(kept().flag);
  EXPECT_TRUE(kept().cells.empty());
}

TEST_F(Tables, WriteACellAtTheCurrentCategoriesOfTheOtherDimensions) {
  BpPivotTable table = open();
  BpDimension rows = table.Dimension(plain("rows"), BpSort::asMade);
  BpDimension columns = table.Dimension(plain("columns"), BpSort::asMade);
  BpCategory a = rows.Category(plain("a"));
  BpCategory x = columns.Category(plain("x"));
  x.Cell(count(1));
  BpCategory b = rows.Category(plain("b"));
  x.Cell(count(2));
  columns.Category(plain("y"));
  a.Cell(count(3));  // at its own category, not at its dimension's current one
  rows.Category(plain("a"));
  x.Cell(count(4));
  b.Cell(count(5));
  EXPECT_EQ(cellsOf(kept()), "a|x=4 b|x=2 a|y=3 b|y=5");
}

TEST_F(Tables, ReplaceACellThatIsWrittenAgain) {
  BpPivotTable table = open();
  BpCategory only = table.Dimension(plain("rows"), BpSort::asMade).Category(plain("a"));
  only.Cell(count(1));
  only.Cell(plain("again"));
  EXPECT_EQ(cellsOf(kept()), "a=again");
}

TEST_F(Tables, KeepTheOrderInWhichCategoriesWereMade) {
  BpPivotTable table = open();
  BpDimension dimension = table.Dimension(plain("rows"), BpSort::asMade);
  BpGroup first = dimension.Group(plain("G"), true, BpSort::asMade);
  BpGroup second = dimension.Group(plain("H"), true, BpSort::asMade);
  dimension.Category(plain("z"));
  second.Category(plain("c"));
  first.Category(plain("b"));
  first.Category(plain("a"));
  second.Category(plain("b"));
  EXPECT_EQ(leavesOf(kept().dimensions[0]), "b a c b z");
}

TEST_F(Tables, AreTheSameCategoryOnlyForTheSameText) {
  FakeVariable age("age");
  FakeVariable sameName("age");
  sameName.labelled("another label");
  FakeVariable other("other");
  BpPivotTable table = open();
  BpDimension dimension = table.Dimension(plain("rows"), BpSort::asMade);
  const auto leafCount = [&] { return kept().dimensions[0].leaves().size(); };
  const auto isNew = [&](const BpCellText& title) {
    const std::size_t before = leafCount();
    dimension.Category(title);
    return leafCount() == before + 1;
  };
  const auto value = [&](const FakeVariable& variable, double number) {
    return BpDataValue(variable, number, BpValueShow::inPrintFormat);
  };

  EXPECT_TRUE(isNew(plain("5")));
  EXPECT_FALSE(isNew(plain("5")));
  EXPECT_TRUE(isNew(key("5")));
  EXPECT_TRUE(isNew(count(5)));
  EXPECT_FALSE(isNew(count(5)));
  EXPECT_TRUE(isNew(value(age, 5)));
  EXPECT_FALSE(isNew(value(age, 5)));
  EXPECT_TRUE(isNew(value(other, 5)));
  EXPECT_TRUE(isNew(value(age, std::nextafter(5.0, 6.0))));
  EXPECT_TRUE(isNew(value(age, 0.0)));
  EXPECT_TRUE(isNew(value(age, -0.0)));
  EXPECT_TRUE(isNew(BpDataValue(age, "5", BpValueShow::inPrintFormat)));
  EXPECT_FALSE(isNew(BpDataValue(age, "5  ", BpValueShow::inPrintFormat)));
  EXPECT_TRUE(isNew(BpVariable(age, BpVariableShow::name)));
  EXPECT_FALSE(isNew(BpVariable(sameName, BpVariableShow::nameAndLabel)));
  EXPECT_TRUE(isNew(BpVariable(other, BpVariableShow::name)));
  EXPECT_TRUE(isNew(both(count(1), count(2))));
  EXPECT_FALSE(isNew(both(count(1), count(2))));
  EXPECT_TRUE(isNew(both(count(1), count(3))));
}

TEST_F(Tables, AreOneCategoryPerGroupAndTellGroupsFromCategories) {
  BpPivotTable table = open();
  BpDimension dimension = table.Dimension(plain("rows"), BpSort::asMade);
  dimension.Group(plain("G"), true, BpSort::asMade).Category(plain("a"));
  dimension.Group(plain("G"), true, BpSort::asMade).Category(plain("a"));
  dimension.Group(plain("H"), true, BpSort::asMade).Category(plain("a"));
  dimension.Category(plain("a"));
  dimension.Category(plain("G"));
  EXPECT_EQ(leavesOf(kept().dimensions[0]), "a a a G");
  EXPECT_EQ(kept().dimensions[0].nodes[0].children.size(), 4U);
}

TEST_F(Tables, CannotBeAddressedWhileADimensionHasNoCategory) {
  BpPivotTable table = open();
  BpCategory a = table.Dimension(plain("rows"), BpSort::asMade).Category(plain("a"));
  table.Dimension(key("Columns"), BpSort::asMade);
  EXPECT_EQ(refusal([&] { a.Cell(count(1)); }),
            "A cell of the table \"Table\" was written while its dimension \"Columns\" had no category: make one in "
            "every dimension first.");
  EXPECT_TRUE(kept().cells.empty());
}

TEST_F(Tables, TakeNoDimensionAfterTheFirstCell) {
  BpPivotTable table = open();
  table.Dimension(plain("rows"), BpSort::asMade).Category(plain("a")).Cell(count(1));
  EXPECT_THROW(table.Dimension(plain("late"), BpSort::asMade), ErrorText);
  EXPECT_EQ(kept().dimensions.size(), 1U);
}

TEST_F(Tables, HaveOneFootnotePerAnnotationHoweverOftenItIsAttached) {
  BpPivotTable table = open();
  BpDimension rows = table.Dimension(plain("rows"), BpSort::asMade);
  const BpAnnotation first(plain("note").Replicate());
  const BpAnnotation second(plain("note").Replicate());
  BpCategory a = rows.Category(plain("a"));
  a.Cell(count(1));
  a.CellNote(first);
  a.CellNote(first);
  rows.Category(plain("b")).CellNote(first);
  a.Note(second);
  ASSERT_EQ(kept().footnotes.size(), 2U);
  EXPECT_EQ(kept().cells[0].notes, std::vector<std::int32_t>{0});
  EXPECT_EQ(kept().cells[1].notes, std::vector<std::int32_t>{0});
  EXPECT_EQ(kept().dimensions[0].nodes[1].notes, std::vector<std::int32_t>{1});
}

TEST_F(Tables, TellAnAnnotationFromALaterOneAtTheSameAddress) {
  BpPivotTable table = open();
  BpCategory a = table.Dimension(plain("rows"), BpSort::asMade).Category(plain("a"));
  alignas(BpAnnotation) std::byte place[sizeof(BpAnnotation)];
  for (const char* text : {"first", "second"}) {
    auto* annotation = new (place) BpAnnotation(plain(text).Replicate());
    a.CellNote(*annotation);
    annotation->~BpAnnotation();
  }
  ASSERT_EQ(kept().footnotes.size(), 2U);
  EXPECT_EQ(shown(kept().footnotes[1], english()), "second");
}

TEST_F(Tables, KeepTheFootnotesOfACellThatIsWrittenAfterwards) {
  BpPivotTable table = open();
  BpCategory a = table.Dimension(plain("rows"), BpSort::asMade).Category(plain("a"));
  a.CellNote(BpAnnotation(plain("note").Replicate()));
  a.Cell(count(1));
  ASSERT_EQ(kept().cells.size(), 1U);
  EXPECT_EQ(cellsOf(kept()), "a=1");
  EXPECT_EQ(kept().cells[0].notes.size(), 1U);
}

TEST_F(Tables, StayFilledThroughHandlesWhenTheyAreMoved) {
  BpPivotTable table = open();
  BpCategory a = table.Dimension(plain("rows"), BpSort::asMade).Category(plain("a"));
  BpPivotTable moved(std::move(table));
  a.Cell(count(1));
  moved.Caption(plain("caption"));
  EXPECT_EQ(cellsOf(kept()), "a=1");
  EXPECT_TRUE(kept().caption.has_value());
}

TEST_F(Tables, AreTakenOutByDestroyAndRefuseToBeUsedThen) {
  BpPivotTable table = open();
  BpCategory a = table.Dimension(plain("rows"), BpSort::asMade).Category(plain("a"));
  a.Cell(count(1));
  table.Destroy();
  EXPECT_TRUE(kept().destroyed);
  EXPECT_TRUE(kept().cells.empty());
  EXPECT_TRUE(command_->openedTable());
  EXPECT_EQ(refusal([&] { a.Cell(count(1)); }), "The table \"Table\" was used after it had been destroyed.");
  EXPECT_THROW(table.Destroy(), ErrorText);
}

TEST_F(Tables, KeepTheLastPosition) {
  BpPivotTable table = open();
  BpDimension dimension = table.Dimension(plain("rows"), BpSort::asMade);
  EXPECT_FALSE(kept().dimensions[0].position.has_value());
  dimension.Position(BpPlace::rows, 1, false, false);
  dimension.Position(BpPlace::columns, 2, true, false);
  EXPECT_EQ(kept().dimensions[0].position->place, 1);
  EXPECT_EQ(kept().dimensions[0].position->index, 2);
  EXPECT_TRUE(kept().dimensions[0].position->flags[0]);
}

TEST(Procedures, OpenNoTableOnceTheyAreClosed) {
  const RunningCommand command;
  alignas(BpProcedure) std::byte place[sizeof(BpProcedure)];
  auto* procedure = new (place) BpProcedure("Test", 1);
  procedure->~BpProcedure();
  BpHeading& heading = *procedure;
  EXPECT_EQ(refusal([&] { heading.PivotTable(key("Table"), plain("Table"), true); }),
            "The table \"Table\" cannot be opened: its heading is already closed.");
}

TEST(Procedures, NeedARunningCommand) { EXPECT_THROW(BpProcedure("Test", 1), ErrorText); }

}  // namespace
}  // namespace workbench::output
