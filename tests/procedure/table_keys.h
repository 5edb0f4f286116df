// The keys of the procedure's tables.
#pragma once

#include <string>

namespace workbench::tests::keys {

inline const std::string comparisonSummary = "CD_CompSummaryTableName";
inline const std::string dictionary = "CD_DictCompTableName";
inline const std::string valueLabels = "CD_ValueLabelsCompTableName";
inline const std::string matchedSummary = "CD_MatchedSummaryTableName";
inline const std::string byCases = "CD_MismatchedByCasesTableName";
inline const std::string byVariables = "CD_MismatchedByVarsTableName";
inline const std::string caseByCase = "CD_CaseByCaseComparisonTableName";

}  // namespace workbench::tests::keys
