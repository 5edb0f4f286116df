// Datasets and commands for laws: pairs that keep the premises of a law, whatever else they are.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tests/model/command.h"
#include "tests/model/random_dataset.h"
#include "tests/model/world.h"

namespace workbench::tests::model {

// With one variable at least, each of which a list can name; without a filter.
Dataset lawDataset(std::size_t mostVariables = 4, std::size_t mostCases = 12);
// The same with a number "id" in front, which counts the cases from 1.
Dataset numberedDataset(std::size_t mostVariables = 3, std::size_t mostCases = 12);

World worldOf(const Dataset& active, const Dataset& compared);

// Up to `most` names of variables that are of the same type in both datasets.
std::vector<std::string> anyIds(const World& world, std::size_t most);
// Both datasets into the order of these variables.
void sortByIds(World& world, const std::vector<std::string>& ids);
// Takes the sign from the zeros of these variables.
void withoutMinusZero(Dataset& dataset, const std::vector<std::string>& ids);

// Compares all variables and all properties, shows every case and adds a flag variable.
Command comparingAll(const std::vector<std::string>& ids = {});

}  // namespace workbench::tests::model
