// Random pairs of small datasets in which everything that the comparison looks at happens often: equal, near and
// differing values, cases without partner, all kinds of case IDs, dictionaries that differ in any property.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tests/model/dataset.h"

namespace workbench::tests::model {

// A variable with any properties. Its width is one of those given.
Variable anyVariable(const std::string& name, const std::vector<int>& widths = {0, 0, 0, 1, 2, 9, 12});
// The variable with some property changed: never its storage type, nor its name but for its case.
Variable withOtherProperty(Variable variable);
Value anyValue(const Variable& variable);
Case anyCase(const Dataset& dataset);

// Variables with different names, and cases.
Dataset anyDataset(std::size_t mostVariables, std::size_t mostCases);
enum class Variables { same, maybeOthers };
// A dataset that has most of another one's cases and the same variables, or most of them.
Dataset likenessOf(const Dataset& dataset, Variables variables = Variables::maybeOthers);
// Filter, weight, split variables, attributes: some of them or none.
void addRoles(Dataset& dataset);

// Brings cases into the order of these variables, as far as the bytes of `widths` go (0: a number).
void sortCases(Dataset& dataset, const std::vector<std::string>& names, const std::vector<int>& widths);

}  // namespace workbench::tests::model
