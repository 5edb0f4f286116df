// ScannedCaseReader: the cases of a table by our own scanners, for every dialect and encoding.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "workbench/data/case_reader.h"
#include "workbench/data/files/byte_source.h"
#include "workbench/data/files/cell_decoder.h"
#include "workbench/data/files/csv_table.h"
#include "workbench/data/files/input_file.h"
#include "workbench/data/files/table_scanner.h"

namespace workbench::data {

class ScannedCaseReader final : public CaseReader {
 public:
  // Throws ErrorText when a file is not any more what it was when it was scanned.
  explicit ScannedCaseReader(std::shared_ptr<const CsvTable> table, const VariableSubset& wanted = {});

  std::optional<std::int64_t> caseCount() const override { return table_->cases(); }
  void fill(CaseBlock& block) override;

 private:
  // One file that is being read. Members go in the opposite order: the scanner reads from the source, that from the
  // file.
  struct OpenPart {
    InputFile file;
    std::unique_ptr<ByteSource> source;
    std::unique_ptr<TableScanner> scanner;
  };

  const CsvPart& part() const { return table_->parts[partIndex_]; }
  void openPart();
  bool nextRecords();
  void decode(OBS* cases, std::size_t caseSlots, std::size_t count);
  void endPart();
  void checkUnchanged() const;

  std::shared_ptr<const CsvTable> table_;
  CellDecoder decoder_;
  std::size_t partIndex_ = 0;
  std::unique_ptr<OpenPart> open_;  // null: all parts have been read
  CellBatch records_;
  std::size_t record_ = 0;  // the next one to be decoded
  std::uint64_t casesOfPart_ = 0;
  std::uint64_t bytesOfPart_ = 0;
};

}  // namespace workbench::data
