// DatabaseCaseReader: the cases of a table of a database.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "workbench/data/case_reader.h"
#include "workbench/data/databases/database_table.h"
#include "workbench/data/files/cell_decoder.h"

namespace workbench::data {

// A table and the dictionary of the dataset that it becomes: column and variable have the same index.
struct DatabaseDataset {
  DatabaseDataset(SharedDatabaseTable itsTable, std::vector<CsvColumn> itsColumns, Dictionary itsDictionary)
      : table(std::move(itsTable)),
        columns(std::move(itsColumns)),
        dictionary(std::move(itsDictionary)),
        layout(dictionary) {}

  SharedDatabaseTable table;
  std::vector<CsvColumn> columns;
  Dictionary dictionary;
  CaseLayout layout;
};

class DatabaseCaseReader final : public CaseReader {
 public:
  // Throws ErrorText when the table cannot be read.
  DatabaseCaseReader(std::shared_ptr<const DatabaseDataset> dataset, const VariableSubset& wanted);

  std::optional<std::int64_t> caseCount() const override { return dataset_->table->cases; }
  void fill(CaseBlock& block) override;

 private:
  bool nextRows();
  void decode(OBS* cases, std::size_t caseSlots, std::size_t count);

  std::shared_ptr<const DatabaseDataset> dataset_;
  std::vector<std::size_t> fetched_;   // columns
  CellDecoder decoder_;                // of those
  std::unique_ptr<RowCursor> cursor_;  // null: all has been read
  CellBatch rows_;
  std::size_t row_ = 0;     // the next one to be decoded
  std::int64_t cases_ = 0;  // before it
};

}  // namespace workbench::data
