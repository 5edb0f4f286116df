// OutputSet: all outputs of one command, put into place together when it has ended well, or all abandoned.
//
// An output is announced first, which refuses it when its place is that of an input or of another output; completed
// when all of it is written; and stands where it belongs only after commit(). Nothing of an output that was not
// committed stays behind.
//
// Order: the command ends, what was handed to its procedure is let go of (letGoOfAllHandedOut), then commit() or
// abandon().
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/case_reader.h"
#include "workbench/data/working/dataset.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// Where datasets are opened under their handles.
class OutputDatasets {
 public:
  virtual ~OutputDatasets() = default;
  // Opens the dataset, in the place of another one of that handle where there is one.
  virtual void openOutput(const std::string& handle, std::shared_ptr<Dataset> dataset) = 0;
};

class OutputSet {
 public:
  // One output between its announcement and its end. Shared by the set and by who writes it.
  class Output {
   public:
    const std::string& name() const { return name_; }  // the path or handle as written

    // All of it is written. For a file: its writer, which was completed, and what is to be done once it is in place.
    void complete(std::unique_ptr<CaseWriter> writer, std::function<void()> afterCommit = {});
    void complete(std::shared_ptr<Dataset> dataset);
    // It will not be completed.
    void abandon() noexcept;

   private:
    friend class OutputSet;
    std::string name_;
    std::optional<FilePlace> place_;            // of a file
    std::optional<FilePlace> dictionaryPlace_;  // of the file with its dictionary, where it has one of its own
    bool isAbandoned_ = false;
    std::unique_ptr<CaseWriter> writer_;
    std::function<void()> afterCommit_;
    std::shared_ptr<Dataset> dataset_;
  };

  // Without a place for datasets only files can be put out. It outlives the set.
  explicit OutputSet(OutputDatasets* datasets) : datasets_(datasets) {}
  OutputSet(const OutputSet&) = delete;
  OutputSet& operator=(const OutputSet&) = delete;
  ~OutputSet() { abandon(); }

  // Announces a file, and with it the one that its dictionary is written to. Of the files that data came from, only
  // those named here may be replaced.
  Outcome<std::shared_ptr<Output>> addFile(std::string_view path, const FileInUse* mayReplace = nullptr);
  // Announces a dataset that is to be open under that handle.
  Outcome<std::shared_ptr<Output>> addDataset(std::string_view handle);

  // Puts all completed outputs into place, files first; those that were not completed are abandoned. When a file cannot
  // be put into place, all that come after it are abandoned, and the problem says what stands already. Empty
  // afterwards.
  Outcome<Done> commit();
  void abandon() noexcept;

 private:
  Outcome<Done> claimDictionary(Output& output, const FileInUse* mayReplace) const;
  Outcome<Done> commitFiles(std::vector<std::shared_ptr<Output>>& outputs);

  OutputDatasets* datasets_;
  std::vector<std::shared_ptr<Output>> outputs_;
};

}  // namespace workbench::data
