#include "procedures/profile/profile_tables.h"

#include <algorithm>
#include <string_view>

#include "procedures/profile/shown_number.h"

namespace profile {

namespace {

constexpr std::int32_t decimalsOfMean = 2;  // beyond those of the variable

BpNumber count(std::uint64_t number) { return {static_cast<double>(number), BpProcedure::Count()}; }

BpNumber percent(std::uint64_t part, std::uint64_t whole) {
  const double share = whole == 0 ? 0.0 : static_cast<double>(part) * 100.0 / static_cast<double>(whole);
  return {share, BpProcedure::Percent()};
}

BpPivotTable openTable(BpProcedure& procedure, const char* key, const char* defaultTitle) {
  return procedure.PivotTable(BpString(key, true), BpString(defaultTitle, false), true);
}

BpDimension makeDimension(BpPivotTable& table, const char* key, BpPlace place, bool hidesTitle) {
  BpDimension dimension = table.Dimension(BpString(key, true), BpSort::asMade);
  dimension.Position(place, 1, hidesTitle, false);
  return dimension;
}

BpVariable nameOf(const VariableProfile& variable) {
  return {*variable.variables.active, BpVariableShow::nameAndLabel};
}

void writePairedCases(BpProcedure& procedure, const Profile& profile) {
  BpPivotTable table = openTable(procedure, "PD_PairedCases", "Paired Cases");
  BpDimension rows = makeDimension(table, "PD_Cases", BpPlace::rows, false);
  BpDimension columns = makeDimension(table, "PD_Statistics", BpPlace::columns, true);
  const auto write = [&](const char* key, std::uint64_t cases) {
    rows.Category(BpString(key, true));
    columns.Category(BpString("PD_Count", true)).Cell(count(cases));
  };
  const auto writeShare = [&](const char* key, std::uint64_t cases) {
    write(key, cases);
    columns.Category(BpString("PD_Percent", true)).Cell(percent(cases, profile.pairs));
  };
  write("PD_CasesPaired", profile.pairs);
  writeShare("PD_CasesAgreeing", profile.pairs - profile.differentPairs);
  writeShare("PD_CasesDiffering", profile.differentPairs);
  write("PD_OnlyInActive", profile.onlyInActive);
  write("PD_OnlyInComparison", profile.onlyInComparison);
}

void writeAgreement(BpProcedure& procedure, const Profile& profile) {
  BpPivotTable table = openTable(procedure, "PD_AgreementTable", "Agreement");
  BpDimension rows = makeDimension(table, "PD_Variable", BpPlace::rows, false);
  BpDimension columns = makeDimension(table, "PD_Statistics", BpPlace::columns, true);
  const auto write = [&](const BpCellText& title, std::uint64_t values, std::uint64_t different) {
    rows.Category(title);
    columns.Category(BpString("PD_ValuesCompared", true)).Cell(count(values));
    columns.Category(BpString("PD_ValuesAgreeing", true)).Cell(count(values - different));
    columns.Category(BpString("PD_ValuesDiffering", true)).Cell(count(different));
    if (values > 0) columns.Category(BpString("PD_Agreement", true)).Cell(percent(values - different, values));
  };
  std::uint64_t different = 0;
  for (const VariableProfile& variable : profile.variables) different += variable.different;
  write(BpString("PD_AllVariables", true), profile.pairs * profile.variables.size(), different);
  for (const VariableProfile& variable : profile.variables) write(nameOf(variable), profile.pairs, variable.different);
}

bool isOfCalendar(const VariableProfile& variable) {
  return variable.variables.unit == DifferenceUnit::days || variable.variables.unit == DifferenceUnit::seconds;
}

void writeDifferenceCaption(BpPivotTable& table, const Profile& profile) {
  const BpString base(
      "Differences are comparison minus active, where both values are valid. Values that count as equal differ by 0.",
      true);
  if (std::none_of(profile.variables.begin(), profile.variables.end(), isOfCalendar)) {
    table.Caption(base);
    return;
  }
  BpComposite caption("^1\n^2", false);
  caption.Add(base);
  caption.Add(BpString("Differences of dates are in days, those of times in seconds.", true));
  caption.Finish();
  table.Caption(caption);
}

// The case where the largest difference stands, by its IDs or, without any, by its row.
void writeLargestCase(BpGroup& group, const DifferenceStatistics& differences, const PairedCases& cases) {
  if (cases.ids().empty()) {
    group.Category(BpString("PD_Row", true)).Cell(count(differences.largestRow));
    return;
  }
  for (std::size_t id = 0; id < cases.ids().size(); ++id) {
    const CaseIdVariable& variable = cases.ids()[id];
    const CaseIdValue& value = differences.largestCaseIds[id];
    BpCategory category = group.Category(BpVariable(*variable.active, BpVariableShow::name));
    if (variable.isText) {
      category.Cell(BpDataValue(*variable.active, std::string_view(value.text), BpValueShow::inPrintFormat));
    } else {
      category.Cell(BpDataValue(*variable.active, value.number, BpValueShow::inPrintFormat));
    }
  }
}

void writeDifferencesOf(const VariableProfile& variable, const PairedCases& cases, BpDimension& columns) {
  const DifferenceStatistics& differences = variable.differences;
  const VRIX_Variable& shown = *variable.variables.active;
  const std::int32_t decimals = variable.variables.decimals;
  columns.Category(BpString("PD_PairsCompared", true)).Cell(count(differences.pairs));
  columns.Category(BpString("PD_PairsDiffering", true)).Cell(count(differences.different));
  if (differences.pairs > 0) {
    const ShownNumber mean(shown, differences.mean(), decimals + decimalsOfMean);
    const ShownNumber meanAbsolute(shown, differences.meanAbsolute(), decimals + decimalsOfMean);
    columns.Category(BpString("PD_Mean", true)).Cell(mean.text());
    columns.Category(BpString("PD_MeanAbsolute", true)).Cell(meanAbsolute.text());
  }
  if (differences.different > 0) {
    BpGroup largest = columns.Group(BpString("PD_LargestDifference", true), true, BpSort::asMade);
    const ShownNumber difference(shown, differences.largest, decimals);
    largest.Category(BpString("PD_Difference", true)).Cell(difference.text());
    writeLargestCase(largest, differences, cases);
  }
  BpGroup missing = columns.Group(BpString("PD_MissingValues", true), true, BpSort::asMade);
  missing.Category(BpString("PD_MissingInActive", true)).Cell(count(differences.missingInActive));
  missing.Category(BpString("PD_MissingInComparison", true)).Cell(count(differences.missingInComparison));
  missing.Category(BpString("PD_MissingInBoth", true)).Cell(count(differences.missingInBoth));
}

// The columns in their order, whichever of them the first variable has.
void makeDifferenceColumns(BpDimension& columns) {
  for (const char* key : {"PD_PairsCompared", "PD_PairsDiffering", "PD_Mean", "PD_MeanAbsolute"}) {
    columns.Category(BpString(key, true));
  }
  columns.Group(BpString("PD_LargestDifference", true), true, BpSort::asMade);
}

void writeDifferences(BpProcedure& procedure, const Profile& profile, const PairedCases& cases) {
  BpPivotTable table = openTable(procedure, "PD_DifferencesTable", "Differences of Numbers");
  BpDimension rows = makeDimension(table, "PD_Variable", BpPlace::rows, false);
  BpDimension columns = makeDimension(table, "PD_Statistics", BpPlace::columns, true);
  makeDifferenceColumns(columns);
  for (const VariableProfile& variable : profile.variables) {
    if (variable.variables.unit == DifferenceUnit::none) continue;
    rows.Category(nameOf(variable));
    writeDifferencesOf(variable, cases, columns);
  }
  writeDifferenceCaption(table, profile);
}

const std::string* labelOf(const VRIX_Variable& variable, bool isText, const std::string& bytes) {
  const RefCountPtr<VRIX_ValueLabelMap> labels = variable.GetValueLabels();
  if (!labels.IsValid()) return nullptr;
  return isText ? labels->GetLabel(std::string_view(bytes)) : labels->GetLabel(numberOf(bytes));
}

// A value as its variable shows it, with its label; a word for a text without a character.
void addValue(BpComposite& change, const VRIX_Variable& variable, bool isText, const std::string& bytes) {
  if (isText && bytes.empty()) {
    change.Add(BpString("PD_Blank", true));
    return;
  }
  const BpDataValue value = isText ? BpDataValue(variable, std::string_view(bytes), BpValueShow::inPrintFormat)
                                   : BpDataValue(variable, numberOf(bytes), BpValueShow::inPrintFormat);
  const std::string* label = labelOf(variable, isText, bytes);
  if (label == nullptr) {
    change.Add(value);
    return;
  }
  BpComposite labelled("^1 (^2)", false);
  labelled.Add(value);
  labelled.Add(BpString(*label, false));
  labelled.Finish();
  change.Add(labelled);
}

BpComposite changeText(const VariablePair& variables, const Change& change) {
  BpComposite text("^1 \xE2\x86\x92 ^2", false);
  addValue(text, *variables.active, variables.isText, change.from);
  addValue(text, *variables.comparison, variables.isText, change.to);
  text.Finish();
  return text;
}

void noteUnkept(BpCategory others, std::uint64_t unkept) {
  BpComposite text(
      "The variable has more different changes than are kept; of ^1 values it is not known how often their "
      "change occurred.",
      true);
  text.Add(count(unkept));
  text.Finish();
  const BpAnnotation note(text.Replicate());
  others.Note(note);
}

void writeChangesOf(const VariableProfile& variable, std::size_t most, BpDimension& rows, BpDimension& columns) {
  BpGroup group = rows.Group(nameOf(variable), true, BpSort::asMade);
  const auto write = [&](const BpCellText& title, std::uint64_t times) {
    const BpCategory category = group.Category(title);
    columns.Category(BpString("PD_Count", true)).Cell(count(times));
    columns.Category(BpString("PD_PercentOfChanges", true)).Cell(percent(times, variable.different));
    return category;
  };
  std::uint64_t others = variable.different;
  for (const Change& change : variable.changes.mostFrequent(most)) {
    write(changeText(variable.variables, change), change.count);
    others -= change.count;
  }
  if (others == 0) return;
  const BpCategory category = write(BpString("PD_OtherChanges", true), others);
  if (variable.changes.unkept() > 0) noteUnkept(category, variable.changes.unkept());
}

void writeChanges(BpProcedure& procedure, const Profile& profile, std::size_t most) {
  if (most == 0) return;
  BpPivotTable table = openTable(procedure, "PD_ChangesTable", "Most Frequent Changes");
  BpDimension rows = makeDimension(table, "PD_Change", BpPlace::rows, false);
  BpDimension columns = makeDimension(table, "PD_Statistics", BpPlace::columns, true);
  for (const VariableProfile& variable : profile.variables) {
    if (variable.different > 0) writeChangesOf(variable, most, rows, columns);
  }
}

}  // namespace

void writeTables(BpProcedure& procedure, const Profile& profile, const PairedCases& cases, std::size_t changesShown) {
  writePairedCases(procedure, profile);
  writeAgreement(procedure, profile);
  writeDifferences(procedure, profile, cases);
  writeChanges(procedure, profile, changesShown);
}

}  // namespace profile
