// JsonLinesScanner: the records of a text with a JSON object in each line.
//
// Columns are the keys, in the order in which they first appear behind those that were known beforehand: what a batch
// holds beyond them is new. A key that a line lacks, and null, are cells without a value. A text that looks like a
// number is marked as a text. Lines without an object, or with a key that stands twice, are problems; lines of blanks
// are skipped.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "workbench/data/files/json_line.h"
#include "workbench/data/files/table_scanner.h"

namespace workbench::data {

class JsonLinesScanner final : public TableScanner {
 public:
  // Requires: the keys are all different.
  JsonLinesScanner(ByteSource& source, const std::vector<std::string>& keys, std::string path);

  // The keys that are known beforehand. There is nothing to step over.
  Step readHeader(std::vector<std::string>& names) override;
  Step next(CsvField& field) override;
  Step nextRecords(CellBatch& batch) override;
  std::vector<std::string> keys() const override;
  std::vector<std::string> unseenKeys() const override;
  std::vector<std::string> remarks() const override;

 private:
  struct Column {
    std::string key;
    std::uint64_t lastLine = 0;     // where it was seen last; 0: nowhere
    std::uint64_t firstNested = 0;  // the first line where it holds an object or a list; 0: none
  };
  struct KeyHash : std::hash<std::string_view> {
    using is_transparent = void;
  };

  // Those that return a truth value give false at a problem.
  bool holdLine(bool& isLast);
  bool takeLines(CellBatch& batch, bool isLast);
  bool takeLine(CellBatch& batch, std::size_t length);
  bool takeMembers(CellBatch& batch);
  void skipLine();
  std::size_t columnOf(std::string_view key, std::size_t likely) const;
  void addColumn(std::string key);
  bool failAtLine(std::size_t length, const JsonFault& fault);
  bool failAtLength(std::uint64_t line) override;

  JsonLine json_;
  std::vector<Column> found_;
  std::unordered_map<std::string, std::size_t, KeyHash, std::equal_to<>> columnOfKey_;
  std::uint64_t blankLines_ = 0;  // since the last record
  std::uint64_t firstBlank_ = 0;
  CellBatch fieldwise_;  // for those who take field by field
  std::size_t nextField_ = 0;
};

}  // namespace workbench::data
