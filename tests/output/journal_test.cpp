// What the journal says of the output service's calls.
#include "workbench/runtime/journal.h"

#include <gtest/gtest.h>

#include "tests/output/fakes.h"

namespace workbench::output {
namespace {

class OutputJournal : public testing::Test {
 protected:
  OutputJournal() {
    journal().beginCommand("TEST");
    journal().sendTo([this](std::string_view line) { lines_ += std::string(line) + "\n"; });
  }
  ~OutputJournal() override { journal().sendTo({}); }

  std::string taken() { return std::exchange(lines_, {}); }

  std::string lines_;
  RunningCommand command_;
};

TEST_F(OutputJournal, HasEveryCallOfATableWithItsObjects) {
  {
    BpProcedure procedure("Test Procedure", 7);
    const BpString title("Sizes", true);
    const BpString text("a", false);
    taken();
    BpPivotTable table = procedure.PivotTable(title, title, true);
    BpDimension rows = table.Dimension(title, BpSort::asMade);
    rows.Position(BpPlace::rows, 1, false, true);
    BpGroup group = rows.Group(text, true, BpSort::asMade);
    BpCategory category = group.Category(text);
    group.Category(text);
    category.Cell(text);
    table.Caption(title);
    table.MinDataColumnWidth(70);
    BpPivotTable moved(std::move(table));
    moved.Destroy();
    EXPECT_EQ(taken(),
              "BpPivotTable#1 = BpProcedure#1.PivotTable(\"Sizes\", \"Sizes\", true)\n"
              "BpDimension#1 = BpPivotTable#1.Dimension(\"Sizes\", 2)\n"
              "BpDimension#1.Position(0, 1, false, true)\n"
              "BpGroup#1 = BpDimension#1.Group(BpString(\"a\", false), true, 2)\n"
              "BpCategory#1 = BpGroup#1.Category(BpString(\"a\", false))\n"
              "BpCategory#1 = BpGroup#1.Category(BpString(\"a\", false))\n"
              "BpCategory#1.Cell(BpString(\"a\", false))\n"
              "BpPivotTable#1.Caption(\"Sizes\")\n"
              "BpPivotTable#1.MinDataColumnWidth(70)\n"
              "BpPivotTable#1.Destroy()\n");
  }
  EXPECT_EQ(taken(), "~BpPivotTable#1\n~BpString#2\n~BpString#1\n~BpProcedure#1\n");
}

TEST_F(OutputJournal, HasTextsFromTheirMakingToTheirEnd) {
  FakeVariable age("age");
  {
    const BpVariable variable(age, BpVariableShow::nameAndLabel);
    const BpDataValue number(age, 41.5, BpValueShow::inPrintFormat);
    const BpNumber share = percent(12.5);
  }
  EXPECT_EQ(taken(),
            "BpVariable#1 = BpVariable(\"age\", 2)\n"
            "BpDataValue#1 = BpDataValue(\"age\", 41.5, 0)\n"
            "BpNumber#1 = BpNumber(12.5, Percent)\n"
            "~BpNumber#1\n~BpDataValue#1\n~BpVariable#1\n");
  {
    const BpString item("x", false);
    BpComposite composite("^1 [%1:, ^1:]2", true);
    composite.Add(item);
    composite.Sublist();
    composite.Add(item);
    composite.EndSublist();
    composite.Finish();
    const BpAnnotation annotation(composite.Replicate());
  }
  EXPECT_EQ(taken(),
            "BpString#1 = BpString(\"x\", false)\n"
            "BpComposite#1 = BpComposite(\"^1 [%1:, ^1:]2\", true)\n"
            "BpComposite#1.Add(BpString(\"x\", false))\n"
            "BpComposite#1.Sublist()\n"
            "BpComposite#1.Add(BpString(\"x\", false))\n"
            "BpComposite#1.EndSublist()\n"
            "BpComposite#1.Finish()\n"
            "BpComposite#1.Replicate()\n"
            "BpComposite#2 = BpComposite(BpComposite#1)\n"
            "BpAnnotation#1 = BpAnnotation(BpComposite#2)\n"
            "~BpAnnotation#1\n~BpComposite#2\n~BpComposite#1\n~BpString#1\n");
}

}  // namespace
}  // namespace workbench::output
