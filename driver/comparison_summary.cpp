#include "driver/comparison_summary.h"

#include "host/datasets.h"

namespace compdatas {

namespace {

constexpr const char* tableKey = "CD_CompSummaryTableName";

BpString key(const char* text) { return BpString(text, true); }
BpString plain(const std::string& text) { return BpString(text, false); }

BpPivotTable openTable(BpProcedure& procedure, const char* defaultTitle) {
  return procedure.PivotTable(key(tableKey), key(defaultTitle), true);
}

void writeDataFile(BpCategory& column, const VRIX_DataSource* source) {
  column.Cell(plain(source == nullptr ? std::string() : source->GetFileSpecExt().GetGeneric()));
}

// A filter or a weight; no variable is an empty text.
void writeVariable(BpCategory& column, const VRIX_DataSource* source, std::int32_t index) {
  if (index < 0) {
    column.Cell(plain(""));
  } else {
    column.Cell(BpVariable(source->GetVariable(index), BpVariableShow::nameAndLabel));
  }
}

void writeSplit(BpCategory& column, const VRIX_DataSource* source) {
  const std::int32_t count = source == nullptr ? 0 : source->GetNSplitVars();
  if (count < 1) {
    column.Cell(plain(""));
    return;
  }
  BpComposite list("[%1:, ^1:]1", false);
  list.Sublist();
  for (std::int32_t position = 0; position < count; ++position) {
    const std::int32_t index = source->GetSplitVarIndex(position);
    list.Add(BpVariable(source->GetVariable(index), BpVariableShow::nameAndLabel));
  }
  list.EndSublist();
  list.Finish();
  column.Cell(list);
}

}  // namespace

void writeDatasetSummary(BpProcedure& procedure, const ProcedureDataSource& activeSource,
                         const DescribedComparison& comparison) {
  constexpr std::int32_t dataColumnWidth = 180;
  BpPivotTable table = openTable(procedure, "Comparison Summary");
  table.MinDataColumnWidth(dataColumnWidth);
  BpDimension information = table.Dimension(key("CD_Information"), BpSort::asMade);
  information.Position(BpPlace::rows, 1, false, false);
  BpDimension datasets = table.Dimension(key("CD_Datasets"), BpSort::asMade);
  datasets.Position(BpPlace::columns, 1, false, false);
  BpCategory active = datasets.Category(key("CD_Active"));
  BpCategory compared = datasets.Category(key("CD_Comparison"));
  const VRIX_DataSource* source = comparison.source;

  information.Category(key("CD_Data_File"));
  writeDataFile(active, &activeSource);
  writeDataFile(compared, source);

  information.Category(key("CD_Dataset"));
  SvrDMDataset* managed = GetAdapter().GetActiveDataset();
  if (managed != nullptr) active.Cell(plain(managed->GetHandle()));  // else no cell at all
  compared.Cell(plain(comparison.handle));

  information.Category(key("CD_Filter"));
  writeVariable(active, &activeSource, activeSource.GetFilterVarIndex());
  writeVariable(compared, source, source == nullptr ? -1 : source->GetFilterVarIndex());

  information.Category(key("CD_Weight"));
  writeVariable(active, &activeSource, activeSource.GetWeightVarIndex());
  writeVariable(compared, source, source == nullptr ? -1 : source->GetWeightVarIndex());

  information.Category(key("CD_SplitFile"));
  writeSplit(active, &activeSource);
  writeSplit(compared, source);
}

void writeCaseCounts(BpProcedure& procedure, std::int64_t activeCases, std::int64_t comparisonCases) {
  BpPivotTable table = openTable(procedure, "CD_CompSummaryTemplateName");
  BpDimension information = table.Dimension(key("CD_Information"), BpSort::asMade);
  BpDimension datasets = table.Dimension(key("CD_Datasets"), BpSort::asMade);
  datasets.Position(BpPlace::columns, 1, false, false);
  BpCategory active = datasets.Category(key("CD_Active"));
  BpCategory compared = datasets.Category(key("CD_Comparison"));

  information.Category(key("CD_Cases"));
  if (activeCases > 0) active.Cell(BpNumber(static_cast<double>(activeCases), BpProcedure::Count()));
  if (comparisonCases > 0) compared.Cell(BpNumber(static_cast<double>(comparisonCases), BpProcedure::Count()));
}

}  // namespace compdatas
