#include "tests/model/random_sample.h"

#include <algorithm>
#include <ostream>

#include "tests/model/host_dataset.h"
#include "tests/model/observed_run.h"
#include "tests/model/random_choice.h"
#include "tests/model/random_command.h"
#include "tests/model/random_dataset.h"

namespace workbench::tests::model {

namespace {

// The dataset as it is read back from a data file: what the file cannot hold is as the host infers it.
Dataset throughFile(const Dataset& dataset, const std::string& path) {
  writeFile(dataset, path);
  return fromHost(*openFile(path));
}

bool isUnwritable(char byte) { return byte < ' ' || static_cast<unsigned char>(byte) >= 0x80; }

// A data file takes only such dates and times as can be shown, while any number can be written plainly; and no control
// characters, nor texts that were cut in the middle of a character.
void makeWritable(Dataset& dataset) {
  for (Case& one : dataset.cases) {
    for (Value& value : one) {
      if (auto* text = std::get_if<std::string>(&value)) {
        std::replace_if(text->begin(), text->end(), isUnwritable, 'e');
      }
    }
  }
  for (Variable& variable : dataset.variables) {
    if (variable.format.type >= 41) variable.format.type = 3;
  }
}

World anyWorld(bool usesFiles) {
  World world;
  const bool isLarge = oneIn(60);  // enough for a case table that reaches its usual limit
  world.active = isLarge ? anyDataset(2, 200) : anyDataset(4, 9);
  world.compared = likenessOf(world.active);
  if (isLarge && oneIn(2)) {
    for (Case& one : world.compared.cases) one = anyCase(world.compared);
  }
  addRoles(world.active);
  addRoles(world.compared);
  if (oneIn(30)) world.activeHandle.reset();
  if (oneIn(5)) world.tolerance = anyOf<double>({0, 1e-6, 0.5, 1});
  if (oneIn(8)) world.collation = anyOf<std::string>({"de", "sv"});
  world.unusablePaths = {outputFile("none/o.csv"), outputFile("o.unknown")};
  equip(world);
  if (!usesFiles) return world;
  makeWritable(world.active);
  makeWritable(world.compared);
  const auto canBeFile = [](const Dataset& dataset) { return !dataset.variables.empty() && !dataset.cases.empty(); };
  if (canBeFile(world.compared) && oneIn(2)) world.compared = throughFile(world.compared, scratchFile("b.csv"));
  if (canBeFile(world.active) && oneIn(4)) world.active = throughFile(world.active, scratchFile("a.csv"));
  return world;
}

// Brings the cases into the order of the case IDs that the command names; not always.
void sortForCommand(World& world, const Command& command) {
  std::vector<std::string> ids = caseIdsOf(command);
  std::vector<int> widths;
  for (const std::string& id : ids) {
    const auto place = placeOf(world.active, id);
    widths.push_back(place ? world.active.variables[*place].width : 0);
  }
  if (!oneIn(6) && world.active.path.empty()) sortCases(world.active, ids, widths);
  if (!oneIn(6) && world.compared.path.empty()) sortCases(world.compared, ids, widths);
}

}  // namespace

void showValue(const Sample& sample, std::ostream& stream) {
  stream << written(sample.command) << "\nactive dataset\n"
         << describe(sample.world.active) << "comparison dataset\n"
         << describe(sample.world.compared);
}

Sample anySample() {
  Sample sample;
  const bool usesFiles = oneIn(10);
  sample.world = anyWorld(usesFiles);
  sample.command = rewritten(anyCommand(sample.world, usesFiles));
  sortForCommand(sample.world, sample.command);
  return sample;
}

}  // namespace workbench::tests::model
