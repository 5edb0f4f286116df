#include "engine/dataset_comparer.h"

namespace compdatas {

DatasetComparer::DatasetComparer(const CompareOptions& comparisonOptions, BpProcedure& outputProcedure,
                                 ProcedureDataSource& activeDataSource, VRIX_DataSource* compareDataSource,
                                 const std::string& flagVariableName, const UserCaseFileSpec& matchedCasesSpec,
                                 const UserCaseFileSpec& mismatchedCasesSpec)
    : options(comparisonOptions),
      procedure(outputProcedure),
      activeSource(activeDataSource),
      compareSource(compareDataSource),
      matchedSpec(matchedCasesSpec),
      mismatchedSpec(mismatchedCasesSpec),
      flagVarName(flagVariableName) {
  if (!flagVarName.empty()) flagVarIndex = activeSource.FindVarIndex(flagVarName, FindOptions::standard);
}

std::int32_t DatasetComparer::findInCompare(const std::string& name) const {
  return compareSource == nullptr ? -1 : compareSource->FindVarIndex(name, FindOptions::standard);
}

}  // namespace compdatas
