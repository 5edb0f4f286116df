// Where cases are to be saved: which names are refused, which cannot be opened, and what a saved dataset holds.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tests/model/naive_dictionary.h"
#include "tests/model/options.h"
#include "tests/model/world.h"

namespace workbench::tests::model {

// A letter, then letters, digits and "_": an output of that name is an open dataset, any other a data file.
bool isHandle(const std::string& name);

class OutputNames {
 public:
  OutputNames(const World& world, const Options& options) : world_(world), options_(options) {}

  // The message that refuses the names before anything is compared; empty when they are taken.
  std::string refusal() const;
  // Whether the host will refuse to open it, although its name was taken.
  bool cannotBeOpened(const SavedCases& saved) const;
  // The handle, or the path without detours.
  std::string shownName(const SavedCases& saved) const;

 private:
  bool isUsable(const SavedCases& saved) const;

  const World& world_;
  const Options& options_;
};

// Variables like those of the active dataset that are compared, with the active values of some cases.
Dataset savedDataset(const Dataset& active, const std::vector<ComparedVariable>& variables,
                     const std::vector<std::size_t>& cases);

}  // namespace workbench::tests::model
