#include "tests/output/samples.h"

#include <fmt/format.h>

#include <cfloat>

namespace workbench::output {

void openMatchedSummary(BpProcedure& procedure) {
  BpPivotTable table = procedure.PivotTable(key("CD_MatchedSummaryTableName"), key("Matched Summary"), true);
  BpDimension results = table.Dimension(key("CD_Results"), BpSort::asMade);
  results.Position(BpPlace::rows, 1, false, false);
  BpDimension statistics = table.Dimension(key("CD_Statistics"), BpSort::asMade);
  statistics.Position(BpPlace::rows, 1, false, false);
  BpDimension dataset = table.Dimension(key("CD_Dataset"), BpSort::asMade);
  dataset.Position(BpPlace::columns, 2, true, false);
  BpGroup datasets = dataset.Group(key("CD_Datasets"), true, BpSort::asMade);
  const auto row = [&](const char* result, const char* statistic, const BpNumber& active, const BpNumber& comparison) {
    results.Category(key(result));
    statistics.Category(key(statistic));
    datasets.Category(key("CD_Active")).Cell(active);
    datasets.Category(key("CD_Comparison")).Cell(comparison);
  };
  row("CD_Cases", "CD_Count", count(1200), count(1000));
  row("CD_CasesCompared", "CD_Count", count(999), count(999));
  row("CD_CasesCompared", "CD_Percent", percent(83.25), percent(99.9));
  row("CD_CasesNotCompared", "CD_Count", count(201), count(1));
  row("CD_CasesNotCompared", "CD_Percent", percent(16.75), percent(0.1));
}

void openMismatchesByVariable(BpProcedure& procedure) {
  FakeVariable age("age");
  age.labelled("Age in years");
  FakeVariable town("town", 24);
  BpPivotTable table = procedure.PivotTable(key("CD_MismatchedByVarsTableName"), key("Mismatched By Variables"), true);
  table.MinDataColumnWidth(70);
  BpDimension rows = table.Dimension(key("CD_Variables"), BpSort::asMade);
  rows.Position(BpPlace::rows, 1, false, false);
  BpDimension columns = table.Dimension(key("CD_Mismatched"), BpSort::asMade);
  columns.Position(BpPlace::columns, 1, false, false);
  BpCategory counts = columns.Category(key("CD_Count"));
  BpCategory percents = columns.Category(key("CD_Percent"));
  BpComposite note("Based on ^1 cases compa...", true);
  note.Add(count(999));
  note.Finish();
  const BpAnnotation annotation(note.Replicate());
  percents.Note(annotation);
  rows.Category(BpVariable(age, BpVariableShow::nameAndLabel));
  counts.Cell(count(12));
  percents.Cell(percent(12.0 * 100 / 999));
  rows.Category(BpVariable(town, BpVariableShow::nameAndLabel));
  counts.Cell(count(0));
  percents.Cell(percent(0));
}

void openEastAsianCases(BpProcedure& procedure) {
  BpPivotTable table =
      procedure.PivotTable(key("CD_CaseByCaseComparisonTableName"), key("Case By Case Comparison"), true);
  BpDimension columns = table.Dimension(key("CD_Cases"), BpSort::asMade);
  columns.Position(BpPlace::columns, 1, true, false);
  BpDimension rows = table.Dimension(key("CD_Results"), BpSort::asMade);
  rows.Position(BpPlace::rows, 1, true, true);
  FakeVariable prefecture("県", 24);
  FakeVariable number("番号");
  FakeVariable town("市町村", 60);
  town.labelled("現在お住まいの市町村の名前");
  FakeVariable income("소득");
  income.labelled("월평균 가구 소득").formatted(FormatType::comma, 18, 2);
  FakeVariable remark("备注", 200);
  const char* const towns[][2] = {
      {"京都市", "京都府京都市左京区"}, {"大阪市", "大阪市"}, {"ソウル特別市", "釜山広域市"}};
  for (int row = 0; row < 3; ++row) {
    rows.Category(count(row));
    BpGroup ids = columns.Group(key("CD_CaseID"), true, BpSort::asMade);
    ids.Category(plain("県")).Cell(BpDataValue(prefecture, row == 2 ? "ソウル" : "近畿", BpValueShow::inPrintFormat));
    ids.Category(plain("番号")).Cell(BpDataValue(number, 10041 + row, BpValueShow::inPrintFormat));
    BpGroup places = columns.Group(key("CD_Row"), true, BpSort::asMade);
    places.Category(key("CD_Active")).Cell(count(row + 1));
    places.Category(key("CD_Compare")).Cell(count(row + 2));
    const auto write = [&](const FakeVariable& variable, const BpDataValue& active, const BpDataValue& compared,
                           bool isEqual) {
      BpCategory category = columns.Category(BpVariable(variable, BpVariableShow::nameAndLabel));
      if (isEqual) {
        category.Cell(plain(""));
      } else {
        category.Cell(both(active, compared));
      }
    };
    const auto textOf = [](const FakeVariable& variable, const char* text) {
      return BpDataValue(variable, text, BpValueShow::inPrintFormat);
    };
    write(town, textOf(town, towns[row][0]), textOf(town, towns[row][1]), row == 1);
    write(income, BpDataValue(income, 1234567890123.5 + row, BpValueShow::inPrintFormat),
          BpDataValue(income, 1234567890132.5, BpValueShow::inPrintFormat), row == 2);
    write(remark, textOf(remark, "记录员的备注写得很长，一行里放不下，所以在终端上分成几行显示。"),
          textOf(remark, "无"), row == 0);
  }
  table.Caption(key("(1) is the Active Datset an..."));
}

void openManyValueLabels(BpProcedure& procedure, int rows) {
  FakeVariable code("code");
  FakeVariable sex("sex");
  BpPivotTable table = procedure.PivotTable(key("Value Labels"), plain("Value Labels"), true);
  BpDimension variables = table.Dimension(plain("Variable"), BpSort::asMade);
  variables.Position(BpPlace::rows, 1, false, false);
  BpDimension values = table.Dimension(plain("Value"), BpSort::asMade);
  values.Position(BpPlace::rows, 2, false, false);
  BpDimension labels = table.Dimension(plain("Text"), BpSort::asMade);
  labels.Position(BpPlace::columns, 1, true, false);
  const auto write = [&](const FakeVariable& variable, int value) {
    variables.Category(BpVariable(variable, BpVariableShow::nameAndLabel));
    values.Category(BpDataValue(variable, value, BpValueShow::inPrintFormat));
    labels.Category(plain("Label")).Cell(plain(fmt::format("label {}", value)));
  };
  for (int value = 1; value <= rows; ++value) write(code, value);
  write(sex, 1);
}

void openCaseTable(BpProcedure& procedure, int variables, int cases) {
  BpPivotTable table =
      procedure.PivotTable(key("CD_CaseByCaseComparisonTableName"), key("Case By Case Comparison"), true);
  BpDimension columns = table.Dimension(key("CD_Cases"), BpSort::asMade);
  columns.Position(BpPlace::columns, 1, true, false);
  BpDimension rows = table.Dimension(key("CD_Results"), BpSort::asMade);
  rows.Position(BpPlace::rows, 1, true, true);
  FakeVariable id("id");
  for (int number = 0; number < cases; ++number) {
    rows.Category(count(number));
    columns.Group(key("CD_CaseID"), true, BpSort::asMade)
        .Category(plain("id"))
        .Cell(BpDataValue(id, 1000 + number, BpValueShow::inPrintFormat));
    BpGroup row = columns.Group(key("CD_Row"), true, BpSort::asMade);
    row.Category(key("CD_Active")).Cell(count(number + 1));
    row.Category(key("CD_Compare")).Cell(count(number + 2));
    for (int column = 0; column < variables; ++column) {
      FakeVariable variable(fmt::format("income{}", column + 1));
      variable.labelled("Income of the household").formatted(FormatType::comma, 12, 2);
      BpCategory category = columns.Category(BpVariable(variable, BpVariableShow::nameAndLabel));
      const BpDataValue active(variable, 1234.5 * (column + 1), BpValueShow::inPrintFormat);
      const BpDataValue compared(variable, number, BpValueShow::inPrintFormat);
      if ((number + column) % 3 == 0) {
        category.Cell(plain(""));
      } else {
        category.Cell(both(active, compared));
      }
    }
  }
  table.Caption(key("(1) is the Active Datset an..."));
}

void openValueLabels(BpProcedure& procedure) {
  FakeVariable sex("sex");
  sex.labelled("Sex of the respondent");
  FakeVariable region("region");
  BpPivotTable table = procedure.PivotTable(key("CD_ValueLabelsCompTableName"), key("Value Labels Comparison"), true);
  BpDimension variables = table.Dimension(key("CD_Variable"), BpSort::asMade);
  variables.Position(BpPlace::rows, 1, false, false);
  BpDimension values = table.Dimension(key("CD_Value"), BpSort::asMade);
  variables.Position(BpPlace::rows, 2, false, false);
  BpDimension comparison = table.Dimension(key("CD_Comparison"), BpSort::asMade);
  comparison.Position(BpPlace::columns, 1, true, false);
  BpGroup group = comparison.Group(key("CD_Comparison"), true, BpSort::asMade);
  BpCategory active = group.Category(key("CD_Active"));
  BpCategory compared = group.Category(key("CD_Comparison"));
  BpCategory mismatched = group.Category(key("CD_Mismatched"));
  const auto row = [&](const FakeVariable& variable, double value, const char* left, const char* right) {
    variables.Category(BpVariable(variable, BpVariableShow::nameAndLabel));
    values.Category(BpDataValue(variable, value, BpValueShow::inPrintFormat));
    active.Cell(plain(left));
    compared.Cell(plain(right));
    const bool differ = std::string_view(left) != right;
    mismatched.Cell(BpString(differ ? "CD_Mismatch" : "", differ));
  };
  row(sex, 1, "Male", "Man");
  row(sex, 2, "Female", "Woman");
  row(sex, 9, ".", "No answer");
  row(region, 1, "North", "North");
  row(region, 2, "South", ".");
}

void openDictionary(BpProcedure& procedure) {
  BpPivotTable table = procedure.PivotTable(key("CD_DictCompTableName"), key("Dictionary Comparison"), true);
  table.Caption(key("(1) is the Active Datset an..."));
  BpDimension rows = table.Dimension(key("CD_Variable"), BpSort::asMade);
  rows.Position(BpPlace::rows, 1, false, false);
  BpDimension columns = table.Dimension(key("CD_Attributes"), BpSort::asMade);
  columns.Position(BpPlace::columns, 1, false, false);
  columns.Category(key("CD_AttributeWidth"));
  columns.Category(key("CD_AttributeLabel"));
  columns.Category(key("CD_AttributeValueLabels"));
  BpGroup custom =
      columns.Group(key("ID"), true, BpSort::asMade).Group(key("CD_AttributeCustom"), true, BpSort::asMade);
  custom.Category(plain("source"));
  custom.Category(plain("wave"));
  const BpAnnotation note(key("See the Value Labels Com...").Replicate());

  FakeVariable satisfaction("satisfaction");
  satisfaction.labelled("How satisfied are you, all things considered, with your life as a whole these days?");
  rows.Category(BpVariable(satisfaction, BpVariableShow::nameAndLabel));
  columns.Category(key("CD_AttributeWidth")).Cell(both(count(8), count(10)));
  columns.Category(key("CD_AttributeLabel"))
      .Cell(both(plain("How satisfied are you, all things considered, with your life as a whole these days?"),
                 plain("")));
  BpCategory labels = columns.Category(key("CD_AttributeValueLabels"));
  labels.Cell(key("CD_Mismatch"));
  labels.CellNote(note);

  rows.Category(BpVariable(FakeVariable("town", 24), BpVariableShow::nameAndLabel));
  columns.Category(key("CD_AttributeWidth")).Cell(plain(""));
  columns.Category(key("CD_AttributeLabel")).Cell(plain(""));
  columns.Category(key("CD_AttributeValueLabels")).Cell(plain(""));
}

void openLayers(BpProcedure& procedure) {
  BpPivotTable table = procedure.PivotTable(plain("Towns by sex"), plain("Towns"), false);
  BpDimension layers = table.Dimension(plain("Sex"), BpSort::asMade);
  layers.Position(BpPlace::layers, 1, false, false);
  BpDimension rows = table.Dimension(plain("Town"), BpSort::asMade);
  for (const char* sex : {"Female", "Male"}) {
    layers.Category(plain(sex));
    rows.Category(plain("Ghent")).Cell(count(10));
    rows.Category(plain("Delft")).Cell(count(20));
  }
}

void openHostileTexts(BpProcedure& procedure) {
  BpPivotTable table = procedure.PivotTable(plain("Title \x1b[31mred"), plain(""), true);
  BpDimension rows = table.Dimension(plain("Kind"), BpSort::asMade);
  BpDimension columns = table.Dimension(plain("Text"), BpSort::asMade);
  columns.Position(BpPlace::columns, 1, false, false);
  FakeVariable number("number");
  number.formatted(FormatType::number, 8, 2);
  const auto row = [&](const char* kind, const BpCellText& text) {
    rows.Category(plain(kind));
    columns.Category(plain("As shown")).Cell(text);
    columns.Category(plain("Beside")).Cell(plain("|"));
  };
  row("escape", plain("\x1b]0;title\x07"));
  row("line break", plain("two\nlines"));
  row("tab", plain("a\tb"));
  row("not UTF-8", plain("Gr\xFC\xDF"));
  row("wide", plain("日本の町"));
  row("marks", plain("Zoe\u0308"));
  row("direction", plain("abc\u202Ecba"));
  row("pattern", plain("^1 [%1:, ^1:]1"));
  row("missing", BpDataValue(number, -DBL_MAX, BpValueShow::inPrintFormat));
  row("large", BpDataValue(number, 123456789012345680.0, BpValueShow::inPrintFormat));
}

}  // namespace workbench::output
