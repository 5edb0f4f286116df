// Runs the stages of the engine one by one over small datasets, so that what they leave in the comparer can be looked
// at.
//
// The active dataset is open as "a", the comparison dataset as "b". Options are set as the readers of a command would.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/dataset_comparer.h"
#include "tests/support/dataset_builder.h"
#include "workbench/data/output_set.h"
#include "workbench/datasets/dataset_manager.h"
#include "workbench/output/document.h"

namespace workbench::tests {

class EngineRun {
 public:
  EngineRun(const DatasetBuilder& active, const DatasetBuilder& compared);
  EngineRun(const EngineRun&) = delete;
  EngineRun& operator=(const EngineRun&) = delete;
  ~EngineRun();

  // Before comparer() is first called.
  compdatas::CompareOptions options;
  std::string flagName;
  bool withoutComparison = false;

  // Variables of the active dataset by name.
  EngineRun& compare(const std::vector<std::string>& names);
  EngineRun& pairBy(const std::vector<std::string>& names);
  ProcedureDataSource& activeSource() { return *activeSource_; }
  VRIX_DataSource& compareSource() { return *compareSource_; }
  // The open datasets, "a" and "b".
  datasets::DatasetManager& manager() { return manager_; }

  compdatas::DatasetComparer& comparer();
  // Every stage up to the walk; whether all went well.
  bool walk();

  BpProcedure& procedure() { return *procedure_; }
  // All that has been issued.
  const output::Command& command() const { return command_; }
  // Every message on a line: "2/3 The text as it was passed".
  std::string messages() const;

 private:
  std::vector<std::int32_t> indexesOf(const std::vector<std::string>& names) const;

  datasets::DatasetManager manager_;
  output::Command command_;
  data::OutputSet outputs_;
  std::unique_ptr<data::ActiveSource> shownSource_;
  std::optional<BpProcedure> procedure_;
  std::optional<ProcedureDataSource> activeSource_;
  std::unique_ptr<VRIX_DataSource> compareSource_;
  UserCaseFileSpec matched_;
  UserCaseFileSpec mismatched_;
  std::optional<compdatas::DatasetComparer> comparer_;
};

}  // namespace workbench::tests
