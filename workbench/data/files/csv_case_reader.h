// CsvCaseReader: the cases of a CSV file, read by DuckDB and decoded by the types of its table.
//
// DuckDB delivers texts only, in the order of the lines. At the end the number of cases and of bytes must be what the
// scan found: no case is lost or read otherwise in silence.
#pragma once

#include <cstdint>
#include <memory>

#include "workbench/data/case_reader.h"
#include "workbench/data/files/csv_file.h"
#include "workbench/data/files/duckdb_query.h"
#include "workbench/data/files/input_file.h"

namespace workbench::data {

class CsvCaseReader final : public CaseReader {
 public:
  // Throws ErrorText when the file is not any more what it was when it was scanned.
  explicit CsvCaseReader(std::shared_ptr<const CsvTable> table);

  std::optional<std::int64_t> caseCount() const override;
  void fill(CaseBlock& block) override;

 private:
  bool nextChunk();
  void skipHeader();
  void decode(OBS* cases, std::size_t caseSlots, std::size_t firstRow, std::size_t rows);
  void decodeNumbers(std::size_t column, OBS* values, std::size_t caseSlots, std::size_t firstRow, std::size_t rows);
  void decodeTexts(std::size_t column, OBS* values, std::size_t caseSlots, std::size_t firstRow, std::size_t rows);
  void checkUnchanged() const;
  [[noreturn]] void refuseCell(std::size_t column, std::size_t row, std::string_view cell, std::string_view why) const;

  std::shared_ptr<const CsvTable> table_;
  InputFile file_;
  std::unique_ptr<DuckDbQuery> query_;  // reads through file_; so it goes before it
  std::size_t row_ = 0;                 // of the current chunk, the next to be decoded
  std::uint64_t casesRead_ = 0;
  std::uint64_t bytesRead_ = 0;
  bool headerIsRead_ = false;
  bool ended_ = false;
};

}  // namespace workbench::data
