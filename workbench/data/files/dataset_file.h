// DatasetFile: a table that is read from where it is stored as a data file, its columns being the variables.
//
// A Dataset has a `dictionary` and a `table` with the number of `cases` and a `source` of a path() and files(). A
// Reader reads the cases of a dataset that it shares.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "workbench/data/data_file.h"
#include "workbench/data/files/described_columns.h"

namespace workbench::data {

template <class Dataset, class Reader>
class DatasetFile : public DataFile {
 public:
  // Its warnings are those about the columns, and then these.
  DatasetFile(std::shared_ptr<const Dataset> dataset, const DescribedColumns& columns,
              const std::vector<std::string>& furtherWarnings)
      : dataset_(std::move(dataset)), descriptorPath_(columns.descriptorPath()), warnings_(columns.warnings()) {
    warnings_.insert(warnings_.end(), furtherWarnings.begin(), furtherWarnings.end());
  }
  // The same file with another dataset over its table.
  DatasetFile(const DatasetFile& file, std::shared_ptr<const Dataset> dataset) : DatasetFile(file) {
    dataset_ = std::move(dataset);
  }

  const Dictionary& dictionary() const override { return dataset_->dictionary; }
  const std::string& path() const override { return dataset_->table->source->path(); }
  std::string dictionaryFile() const override { return descriptorPath_; }
  std::vector<std::string> furtherFiles() const override { return dataset_->table->source->files(); }
  std::optional<std::int64_t> caseCount() const override { return dataset_->table->cases; }
  std::unique_ptr<CaseReader> openReader(const VariableSubset& wanted) const override {
    return std::make_unique<Reader>(dataset_, wanted);
  }
  const std::vector<std::string>& warnings() const override { return warnings_; }

 protected:
  const Dataset& dataset() const { return *dataset_; }

 private:
  std::shared_ptr<const Dataset> dataset_;
  std::string descriptorPath_;  // empty: nothing describes the table
  std::vector<std::string> warnings_;
};

}  // namespace workbench::data
