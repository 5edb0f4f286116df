// Tables such as procedures make, opened in the running command and finished.
#pragma once

#include "tests/output/fakes.h"

namespace workbench::output {

// Two nested row dimensions, a hidden column dimension with a group, counts and percentages.
void openMatchedSummary(BpProcedure& procedure);
// One row per variable, a column with a footnote, a minimal column width.
void openMismatchesByVariable(BpProcedure& procedure);
// A hidden row dimension of numbered cases, and columns partly in groups: as many columns of variables as asked for.
void openCaseTable(BpProcedure& procedure, int variables, int cases);
// The same for people who write Japanese, Korean and Chinese: two texts as case IDs, names, labels and values of wide
// characters, and numbers of many digits.
void openEastAsianCases(BpProcedure& procedure);
// As many rows of value labels as asked for under one variable, then one more variable.
void openManyValueLabels(BpProcedure& procedure, int rows);
// Rows of values nested in variables, where a dimension was never placed.
void openValueLabels(BpProcedure& procedure);
// Long texts, a footnote on a cell, and columns without any cell.
void openDictionary(BpProcedure& procedure);
// One dimension in the layers.
void openLayers(BpProcedure& procedure);
// Texts that try to act on the terminal or on the drawing.
void openHostileTexts(BpProcedure& procedure);

}  // namespace workbench::output
