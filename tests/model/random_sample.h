// Random samples: two datasets, how they are open, the host's settings, and a command.
#pragma once

#include <rapidcheck.h>

#include <iosfwd>

#include "tests/model/command.h"
#include "tests/model/world.h"

namespace workbench::tests::model {

struct Sample {
  World world;
  Command command;
};
void showValue(const Sample& sample, std::ostream& stream);

// Any pair and any command. The datasets may come from data files, which are written to the scratch folder.
Sample anySample();

// What a function chooses at random, as one choice: a failure shows its result only.
template <class Make>
auto chosen(Make make) {
  return *rc::gen::exec(make);
}

}  // namespace workbench::tests::model
