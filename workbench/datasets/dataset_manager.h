// DatasetManager: the datasets that are open, by their handles, and the active one.
//
// Handles are matched without regard to case. The active dataset may have no handle; then it is closed as soon as
// another one becomes active. One manager serves all commands of a job; it is used on the procedure's thread only.
//
// What users should know (a dataset that was replaced, added variables that were lost) is added to the messages of the
// command that is running.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/datasets.h"
#include "workbench/data/output_set.h"
#include "workbench/data/working/active_source.h"
#include "workbench/data/working/dataset.h"
#include "workbench/datasets/managed_dataset.h"
#include "workbench/runtime/outcome.h"

namespace workbench::datasets {

class DatasetManager final : public ServerDataManager, public HostAdapter, public data::OutputDatasets {
 public:
  DatasetManager() = default;
  DatasetManager(const DatasetManager&) = delete;
  DatasetManager& operator=(const DatasetManager&) = delete;
  ~DatasetManager() override;

  // Opens a dataset, under a handle or without one, and makes it the active one. Another one of that handle is closed.
  Outcome<Done> open(std::shared_ptr<data::Dataset> dataset, const std::optional<std::string>& handle);
  Outcome<Done> activate(std::string_view handle);
  // When it is the active one, none is active afterwards.
  Outcome<Done> close(std::string_view handle);

  // Null when none is active.
  const std::shared_ptr<data::Dataset>& active() const { return active_; }
  std::optional<std::string> activeHandle() const;
  // Null when none of that handle is open.
  std::shared_ptr<data::Dataset> find(std::string_view handle) const;
  // In alphabetical order, as they were written when they were opened.
  std::vector<std::string> handles() const;

  // For a command: what its ProcedureDataSource shows. Null when no dataset is active.
  std::unique_ptr<data::ActiveSource> makeActiveSource() const;

  SvrDMItemPtr GetDataSet(std::string_view name) override;
  SvrDMDataset* GetActiveDataset() override;
  // Another dataset of that handle is replaced. Requires: the active dataset has another handle.
  void openOutput(const std::string& handle, std::shared_ptr<data::Dataset> dataset) override;

 private:
  using Entry = RefCountPtr<ManagedDataset>;
  using Entries = std::map<std::string, Entry, std::less<>>;  // by folded handle

  Entries::const_iterator entryOf(std::string_view handle) const;
  Entries::const_iterator activeEntry() const;
  void put(const std::string& handle, std::shared_ptr<data::Dataset> dataset);
  void remove(Entries::const_iterator entry);
  void makeActive(std::shared_ptr<data::Dataset> dataset);

  Entries entries_;
  std::shared_ptr<data::Dataset> active_;
};

}  // namespace workbench::datasets
