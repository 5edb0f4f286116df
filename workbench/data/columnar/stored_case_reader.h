// StoredCaseReader: the cases of a stored table.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "workbench/data/case_reader.h"
#include "workbench/data/cells/cell_reader.h"
#include "workbench/data/columnar/stored_rows.h"
#include "workbench/data/columnar/stored_table.h"
#include "workbench/data/columnar/vector_cells.h"

namespace workbench::data {

// A stored table and the dictionary of the dataset that it becomes: column and variable have the same index.
struct StoredDataset {
  StoredDataset(std::shared_ptr<const StoredTable> storedTable, std::vector<std::vector<std::string>> textsWithoutValue,
                Dictionary itsDictionary)
      : table(std::move(storedTable)),
        noValueTexts(std::move(textsWithoutValue)),
        dictionary(std::move(itsDictionary)),
        layout(dictionary) {}

  std::shared_ptr<const StoredTable> table;
  std::vector<std::vector<std::string>> noValueTexts;  // per column the texts that stand for no value
  Dictionary dictionary;
  CaseLayout layout;
};

class StoredCaseReader final : public CaseReader {
 public:
  // Throws ErrorText when the data are not any more what they were.
  StoredCaseReader(std::shared_ptr<const StoredDataset> dataset, const VariableSubset& wanted);

  std::optional<std::int64_t> caseCount() const override { return dataset_->table->cases; }
  void fill(CaseBlock& block) override;

 private:
  bool nextChunk();
  void decode(OBS* cases, std::size_t caseSlots, std::size_t rows);
  void decodeColumn(std::int32_t variable, const VectorCells& cells, std::size_t rows, OBS* values,
                    std::size_t caseSlots);
  void decodeTexts(std::int32_t variable, const VectorCells& cells, std::size_t rows, OBS* values,
                   std::size_t caseSlots) const;
  void decodeTextsOrNone(std::int32_t variable, const VectorCells& cells, std::size_t rows, OBS* values,
                         std::size_t caseSlots) const;
  [[noreturn]] void refuseLongText(std::int32_t variable, std::size_t row) const;
  [[noreturn]] void refuse(std::int32_t variable, std::size_t row, std::string_view why) const;
  void checkUnchanged() const;

  std::shared_ptr<const StoredDataset> dataset_;
  std::vector<std::int32_t> variables_;  // that are fetched, in their order
  std::unique_ptr<StoredRows> rows_;     // null: all has been read
  std::size_t row_ = 0;                  // of the current chunk, the next to be decoded
  std::int64_t cases_ = 0;               // before the current chunk's next row
};

}  // namespace workbench::data
