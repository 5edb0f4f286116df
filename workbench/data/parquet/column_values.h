// ColumnValues: the values of one Parquet column, some at a time, laid down as DuckDB's vectors are.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "workbench/data/files/duckdb_library.h"
#include "workbench/data/parquet/page_reader.h"
#include "workbench/data/parquet/run_reader.h"
#include "workbench/data/parquet/value_form.h"

namespace workbench::data {

class ColumnValues {
 public:
  static constexpr std::size_t mostAtOnce = 2048;

  // The pages that are kept outlive it; those that it unpacks are added to them if they are to be read once more.
  ColumnValues(int descriptor, const ParquetColumn& column, const ValueForm& form, KeptPages& kept, bool isFirstLook);

  void begin(const ColumnPart& part);
  // How many values lie ready, the next page being opened when none do; 0: nothing that makes sense does.
  std::size_t ready();
  // Requires: so many lie ready, and no more than mostAtOnce. False when they make no sense.
  bool read(std::size_t count);

  // What was read last: numbers as the form hands them out, or duckdb_string_t, whose texts last until a page is
  // opened.
  const void* values() const { return values_.data(); }
  const std::uint64_t* present() const { return areAllPresent_ ? nullptr : present_.data(); }

 private:
  bool openPage();
  bool openDictionary(const Page& page);
  std::size_t readPresent(std::size_t count);  // how many are there, or more than were asked for when it makes no sense
  bool readPlain(std::size_t count, void* to);
  bool readFromDictionary(std::size_t count, void* to);
  bool readTruths(std::size_t count, std::int32_t* to);
  bool readFixed(std::size_t count, std::int64_t* to);
  bool readTexts(std::size_t count, duckdb_string_t* to);
  template <class Stored, class Number>
  bool readNumbers(std::size_t count, Number* to);
  template <class Number>
  bool finished(Number* numbers, std::size_t count) const;
  std::size_t valueBytes() const;
  void spread(std::size_t count);

  PageReader pages_;
  ValueForm form_;
  std::size_t fixedLength_;
  bool mayBeMissing_;

  bool isDamaged_ = false;  // nothing more is read of the part
  std::size_t left_ = 0;    // of the page
  RunReader levels_;
  bool isOfDictionary_ = false;
  RunReader indices_;
  const char* at_ = nullptr;  // the next plain value
  const char* end_ = nullptr;
  std::size_t bit_ = 0;    // the next truth value, from `at_` on
  bool isAscii_ = false;   // all bytes of the page or the dictionary are
  bool isInRuns_ = false;  // truth values are stored as runs of bits
  PageBytes dictionaryBytes_;
  PageBytes dictionary_;  // values as they are handed out
  std::size_t dictionaryValues_ = 0;

  bool areAllPresent_ = true;
  std::array<std::uint64_t, mostAtOnce / 64 + 1> present_{};
  std::array<std::uint32_t, mostAtOnce> chosen_;
  // The values by row, and before they are spread over the rows those that are there.
  alignas(duckdb_string_t) std::array<char, mostAtOnce * sizeof(duckdb_string_t)> values_;
  alignas(duckdb_string_t) std::array<char, mostAtOnce * sizeof(duckdb_string_t)> there_;
};

}  // namespace workbench::data
