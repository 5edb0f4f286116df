// ParquetFile: a Parquet file that is open, and what can be said and read of it without DuckDB.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbench/data/columnar/stored_rows.h"
#include "workbench/data/columnar/stored_source.h"
#include "workbench/data/files/input_file.h"
#include "workbench/data/parquet/kept_pages.h"
#include "workbench/data/parquet/parquet_layout.h"

namespace workbench::data {

class ParquetFile {
 public:
  static Outcome<std::unique_ptr<const ParquetFile>> open(const std::string& name);

  const InputFile& file() const { return file_; }
  const std::string& name() const { return name_; }
  // Nothing when something is out of the common: then DuckDB is to be asked.
  std::optional<StoredOutline> outline() const;
  // Sentences about the columns that the outline calls otherwise than the file does.
  std::vector<std::string> renamings(const StoredOutline& outline) const;
  std::optional<std::string> metadata(std::string_view key) const;  // of a file in which each key stands once
  bool hasLayout() const { return layout_.has_value(); }

  // The rows of several files which have the same columns and outlive them. Null when something in the files or of what
  // is wanted is out of the common.
  static std::unique_ptr<StoredRows> rows(const std::vector<std::unique_ptr<const ParquetFile>>& files,
                                          const WantedRows& wanted);

 private:
  ParquetFile(std::string name, InputFile file);

  std::string name_;
  InputFile file_;
  std::optional<ParquetLayout> layout_;
  mutable KeptPages kept_;
};

}  // namespace workbench::data
