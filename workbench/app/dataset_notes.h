// What people should know of datasets that are held against each other: that one was sorted, that its cases are out of
// order, that its keys do not tell all cases apart, that it has variables which the other one lacks.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workbench/data/working/dataset.h"
#include "workbench/data/working/sort.h"
#include "workbench/output/document.h"

namespace workbench::app {

// A dataset under the name by which people know it, and the variables that are its keys. What it refers to outlives it.
struct KeyedDataset {
  const std::string& name;
  const data::Dataset& dataset;
  const std::vector<std::string>& keys;
};

// Requires: the cases were out of order.
output::Text sortNote(const KeyedDataset& sorted, const data::SortResult& result);

// Sentences; none when the cases are in order and every key is there once.
std::vector<output::Text> keyNotes(const KeyedDataset& keyed, const data::KeyFindings& findings);

// The variables of the dataset that the other one has not, by their names; nothing when there is none.
std::optional<output::Text> onlyThereNote(const std::string& name, const data::Dictionary& dictionary,
                                          const data::Dictionary& other);

}  // namespace workbench::app
