#include "tests/model/law_samples.h"

#include "tests/model/observed_run.h"
#include "tests/model/random_choice.h"
#include "tests/model/random_command.h"

namespace workbench::tests::model {

Dataset lawDataset(std::size_t mostVariables, std::size_t mostCases) {
  Dataset dataset = anyDataset(mostVariables, mostCases);
  for (Variable& variable : dataset.variables) {
    if (variable.name == "all") variable.name = "e";
  }
  if (dataset.variables.empty()) {
    dataset.variables.push_back(anyVariable("a"));
    for (Case& one : dataset.cases) one = anyCase(dataset);
  }
  return dataset;
}

Dataset numberedDataset(std::size_t mostVariables, std::size_t mostCases) {
  Dataset dataset = lawDataset(mostVariables, mostCases);
  Variable id;
  id.name = "id";
  dataset.variables.insert(dataset.variables.begin(), id);
  double number = 0;
  for (Case& one : dataset.cases) one.insert(one.begin(), ++number);
  return dataset;
}

World worldOf(const Dataset& active, const Dataset& compared) {
  World world;
  world.active = active;
  world.compared = compared;
  equip(world);
  return world;
}

std::vector<std::string> anyIds(const World& world, std::size_t most) {
  std::vector<std::string> ids;
  for (const Variable& variable : shuffled(world.active.variables)) {
    const auto partner = placeOf(world.compared, variable.name);
    if (!partner || world.compared.variables[*partner].isNumber() != variable.isNumber()) continue;
    if (ids.size() < most && !oneIn(3)) ids.push_back(variable.name);
  }
  return ids;
}

void sortByIds(World& world, const std::vector<std::string>& ids) {
  std::vector<int> widths;
  for (const std::string& id : ids) widths.push_back(world.active.variables[*placeOf(world.active, id)].width);
  sortCases(world.active, ids, widths);
  sortCases(world.compared, ids, widths);
}

void withoutMinusZero(Dataset& dataset, const std::vector<std::string>& ids) {
  for (const std::string& id : ids) {
    const std::size_t place = *placeOf(dataset, id);
    for (Case& one : dataset.cases) {
      if (one[place] == Value(0.0)) one[place] = 0.0;
    }
  }
}

Command comparingAll(const std::vector<std::string>& ids) {
  Command command;
  command.subcommand("COMPDATASET").values = std::vector<Word>{{"b"}};
  command.subcommand("VARIABLES").values = std::vector<Word>{{"ALL"}};
  if (!ids.empty()) {
    std::vector<Word> words;
    for (const std::string& id : ids) words.push_back(nameWord(id));
    command.subcommand("CASEID").values = words;
  }
  command.set("OUTPUT", "VARPROPERTIES", {"ALL"});
  command.set("OUTPUT", "TABLELIMIT", {"NONE"});
  return command;
}

}  // namespace workbench::tests::model
