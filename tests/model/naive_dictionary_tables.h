// The tables about dictionaries, as they are to be: Dictionary Comparison and Value Labels Comparison.
#pragma once

#include <string>

#include "tests/model/naive_dictionary.h"

namespace workbench::tests::model {

std::string dictionaryTable(const World& world, const ComparedDictionaries& compared);
// Whether the value labels of some variable differ.
bool valueLabelsDiffer(const ComparedDictionaries& compared);
std::string valueLabelsTable(const World& world, const ComparedDictionaries& compared);

}  // namespace workbench::tests::model
