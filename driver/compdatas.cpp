// The entry point, and the run of one COMPARE DATASETS command from start to end.
#include <cstdint>
#include <string>

#include "driver/comparison_summary.h"
#include "driver/dataset_resolution.h"
#include "driver/flag_variable.h"
#include "engine/case_id.h"
#include "engine/case_walk.h"
#include "engine/dataset_comparer.h"
#include "engine/variable_matching.h"
#include "host/data.h"
#include "host/messages.h"
#include "host/output.h"
#include "host/parser.h"
#include "syntax/command_grammar.h"
#include "syntax/command_syntax.h"
#include "tables/dictionary_table.h"
#include "tables/summary_tables.h"

namespace compdatas {

namespace {

constexpr std::int32_t procedureCode = 7;

// The options stay where they are when the run ends, on every path: nobody destroys them.
[[gnu::noinline]] CompareOptions& makeOptionsThatStay() { return *new CompareOptions; }

BpPivotTable openTable(BpProcedure& procedure, const char* key, const char* defaultTitle) {
  return procedure.PivotTable(BpString(key, true), BpString(defaultTitle, true), true);
}

// Everything from the matching of the variables to the last table. Closes the comparison data before the tables are
// finished.
void compare(DatasetComparer& comparer, ComparisonData& comparison) {
  matchVariables(comparer);
  WriteDictionaryTables(comparer);

  BpPivotTable matched = openTable(comparer.procedure, "CD_MatchedSummaryTableName", "Matched Summary");
  BpPivotTable mismatchedByCases =
      openTable(comparer.procedure, "CD_MismatchedByCasesTableName", "Mismatched By Cases");
  BpPivotTable mismatchedByVariables =
      openTable(comparer.procedure, "CD_MismatchedByVarsTableName", "Mismatched By Variables");
  BpPivotTable caseByCase =
      openTable(comparer.procedure, "CD_CaseByCaseComparisonTableName", "Case By Case Comparison");

  if (!walkCases(comparer, caseByCase)) {
    matched.Destroy();
    mismatchedByCases.Destroy();
    mismatchedByVariables.Destroy();
    caseByCase.Destroy();
    comparison.close();
    throw VrixGoToCaller();
  }

  WriteSummaryTables(comparer, matched, mismatchedByCases, mismatchedByVariables);
  writeCaseCounts(comparer.procedure, static_cast<std::int64_t>(comparer.readers[activeSide].casesRead),
                  static_cast<std::int64_t>(comparer.readers[compareSide].casesRead));
  comparison.close();
}

void compareWith(const CompareOptions& options, BpProcedure& procedure, ProcedureDataSource& activeSource,
                 const std::string& flagName) {
  // Released in the reverse order: the reference to the open dataset first.
  RunNames names;
  UserCaseFileSpec matchedSpec;
  UserCaseFileSpec mismatchedSpec;
  if (!checkNames(options, matchedSpec, mismatchedSpec, names)) return;

  const SvrDMItemPtr managed = findManagedDataset(options.compDataset(), names.comparison);
  ComparisonData comparison;
  if (!openComparison(options, managed, comparison)) return;

  DatasetComparer comparer(options, procedure, activeSource, comparison.source(), flagName, matchedSpec,
                           mismatchedSpec);
  if (!validateCaseIds(comparer)) {
    comparison.leaveOpen();  // the comparison data is not closed on this path; the host frees what stands behind it
    return;
  }
  writeDatasetSummary(procedure, activeSource,
                      {comparer.compareSource, managed.IsValid() ? comparison.displayText : std::string()});
  compare(comparer, comparison);
}

// The whole run. Each stage reports its own faults; whoever returns early only releases what was made.
void runCommand() {
  BpProcedure procedure(procedureTitle, procedureCode);
  const VRIX_TokenSequence tokens(true);
  ProcedureDataSource activeSource;
  CompareOptions& options = makeOptionsThatStay();

  CommandSyntax syntax(tokens, options, activeSource);
  if (!syntax.parse()) return;
  if (pvGetCmnGlb()->pendingError != 0) return;

  // The flag variable is made before the comparison dataset is even looked for.
  std::string flagName;
  if (options.flagMismatches()) flagName = makeFlagVariable(options, activeSource);

  compareWith(options, procedure, activeSource, flagName);
}

}  // namespace

}  // namespace compdatas

extern "C" __attribute__((visibility("default"))) void COMPDATAS() { compdatas::runCommand(); }
