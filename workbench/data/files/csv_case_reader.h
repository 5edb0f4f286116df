// CsvCaseReader: the cases of a table in plain dialects, read by DuckDB.
//
// DuckDB delivers texts only, in the order of the lines. At the end of a file the number of cases and of bytes must be
// what the scan found: no case is lost or read otherwise in silence.
#pragma once

#include <cstdint>
#include <memory>

#include "workbench/data/case_reader.h"
#include "workbench/data/files/cell_decoder.h"
#include "workbench/data/files/csv_table.h"
#include "workbench/data/files/duckdb_query.h"
#include "workbench/data/files/input_file.h"

namespace workbench::data {

class CsvCaseReader final : public CaseReader {
 public:
  // Throws ErrorText when a file is not any more what it was when it was scanned. Requires: the table's dialect is for
  // DuckDB.
  explicit CsvCaseReader(std::shared_ptr<const CsvTable> table, const VariableSubset& wanted = {});

  std::optional<std::int64_t> caseCount() const override { return table_->cases(); }
  void fill(CaseBlock& block) override;

 private:
  // One file that is being read. The query reads through the file, so it goes before it.
  struct OpenPart {
    InputFile file;
    std::unique_ptr<DuckDbQuery> query;
  };

  const CsvPart& part() const { return table_->parts[partIndex_]; }
  const DuckDbQuery& query() const { return *open_->query; }
  void openPart();
  bool nextChunk();
  void endPart();
  void skipHeader();
  void decode(OBS* cases, std::size_t caseSlots, std::size_t rows);

  std::shared_ptr<const CsvTable> table_;
  CellDecoder decoder_;
  std::size_t partIndex_ = 0;
  std::unique_ptr<OpenPart> open_;  // null: all parts have been read
  std::size_t row_ = 0;             // of the current chunk, the next to be decoded
  std::uint64_t casesOfPart_ = 0;
  std::uint64_t bytesOfPart_ = 0;
  bool headerIsRead_ = false;
};

}  // namespace workbench::data
