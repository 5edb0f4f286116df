// Dictionary comparison: which of the selected properties of two paired variables agree.
#pragma once

#include <string>

#include "engine/dataset_comparer.h"

namespace compdatas {

// The values of an attribute as one text, in their order, with a comma and a blank between them.
std::string attributeValueText(const std::vector<std::string>& values);

// Sets the property flags and dictEqual of a pair. A property that is not selected counts as equal.
void compareProperties(const DatasetComparer& comparer, const VRIX_Variable& active, const VRIX_Variable& compared,
                       VariablePair& pair);

// Collects the custom attributes of both variables into the pair and into the comparer's names; the host's own
// attributes ("$...") are passed over. Done whether or not attributes are among the selected properties.
void collectAttributes(DatasetComparer& comparer, const VRIX_Variable& active, const VRIX_Variable& compared,
                       VariablePair& pair);

}  // namespace compdatas
