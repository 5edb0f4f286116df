// Parquet files read twice: by the program itself, and by DuckDB.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/data/columnar/stored_fixture.h"
#include "workbench/data/columnar/parquet_file.h"
#include "workbench/data/columnar/stored_column.h"
#include "workbench/data/columnar/stored_rows.h"
#include "workbench/data/columnar/stored_source.h"

namespace workbench::data {

using ParquetFiles = std::vector<std::unique_ptr<const ParquetFile>>;

inline ParquetFiles openedParquet(const std::vector<std::string>& paths) {
  ParquetFiles files;
  for (const std::string& path : paths) {
    Outcome<std::unique_ptr<const ParquetFile>> file = ParquetFile::open(path);
    if (!file) throw std::runtime_error(file.problem().text());
    files.push_back(std::move(*file));
  }
  return files;
}

inline std::string relationOf(const std::string& path) {
  return fmt::format("read_parquet({}, hive_partitioning = false)", sqlText(path));
}

// What DuckDB says of a file.
inline StoredOutline duckDbOutline(const std::string& path) {
  StoredOutline outline;
  auto columns = DuckDbQuery::start(
      fmt::format("SELECT column_name, column_type FROM (DESCRIBE SELECT * FROM {})", relationOf(path)));
  if (!columns) throw std::runtime_error(columns.problem().text());
  const Outcome<Done> read = (*columns)->eachChunk([&](const DuckDbQuery& chunk) {
    for (std::size_t row = 0; row < chunk.rows(); ++row)
      outline.columns.emplace_back(chunk.column(0)[row], chunk.column(1)[row]);
  });
  if (!read) throw std::runtime_error(read.problem().text());
  auto cases = DuckDbQuery::start("SELECT count(*) FROM " + relationOf(path));
  if (!cases || !(*cases)->nextChunk()) throw std::runtime_error("no count");
  outline.cases = *static_cast<const std::int64_t*>((*cases)->values(0).first);
  return outline;
}

inline std::vector<StoredColumn> columnsOf(const StoredOutline& outline) {
  std::vector<StoredColumn> columns;
  for (const auto& [name, type] : outline.columns) columns.push_back(storedColumn(name, type));
  return columns;
}

inline WantedRows allOf(const std::vector<StoredColumn>& columns, bool isFirstLook = false) {
  WantedRows wanted{columns.size(), {}, isFirstLook};
  for (std::size_t index = 0; index < columns.size(); ++index) wanted.columns.push_back({index, &columns[index]});
  return wanted;
}

// A value as it is handed out, to the bit.
inline std::string cellText(const VectorCells& cells, std::size_t row, Carrier carrier) {
  if (!cells.has(row)) return "-";
  switch (carrier) {
    case Carrier::int32:
    case Carrier::date:
      return fmt::format("{}", cells.as<std::int32_t>()[row]);
    case Carrier::int64:
    case Carrier::decimal:
    case Carrier::time:
    case Carrier::dateTime:
      return fmt::format("{}", cells.as<std::int64_t>()[row]);
    case Carrier::real: {
      std::uint64_t bits = 0;
      std::memcpy(&bits, &cells.as<double>()[row], sizeof bits);
      return fmt::format("{:x}", bits);
    }
    case Carrier::cellText:
    case Carrier::text:
      break;
  }
  return fmt::format("'{}'", cells.text(row));
}

// All values of all rows, by wanted column; what stopped the reading stands behind them.
using ReadValues = std::vector<std::vector<std::string>>;

inline ReadValues valuesOf(StoredRows& rows, const WantedRows& wanted) {
  ReadValues values(wanted.columns.size() + 1);
  while (true) {
    const Outcome<bool> isThere = rows.next();
    if (!isThere) values.back().push_back(isThere.problem().text());
    if (!isThere || !*isThere) return values;
    for (std::size_t column = 0; column < wanted.columns.size(); ++column) {
      const VectorCells cells = rows.values(column);
      for (std::size_t row = 0; row < rows.rows(); ++row)
        values[column].push_back(cellText(cells, row, wanted.columns[column].column->carrier));
    }
    if (wanted.columns.empty()) values.back().push_back(fmt::format("{}", rows.rows()));
  }
}

// As the program itself reads them; nothing when it leaves them to DuckDB.
inline std::optional<ReadValues> decodedValues(const ParquetFiles& files, const WantedRows& wanted) {
  const std::unique_ptr<StoredRows> rows = ParquetFile::rows(files, wanted);
  if (rows == nullptr) return std::nullopt;
  return valuesOf(*rows, wanted);
}

inline ReadValues duckDbValues(const std::string& path, const WantedRows& wanted) {
  Outcome<std::unique_ptr<StoredRows>> rows = queriedRows(relationOf(path), wanted.columns);
  if (!rows) throw std::runtime_error(rows.problem().text());
  return valuesOf(**rows, wanted);
}

// Holds all that the program reads of the file against what DuckDB reads of it.
inline void expectReadAsByDuckDb(const std::string& path) {
  const ParquetFiles files = openedParquet({path});
  const StoredOutline outline = duckDbOutline(path);
  const std::optional<StoredOutline> own = files.front()->outline();
  ASSERT_TRUE(own) << path;
  EXPECT_EQ(own->columns, outline.columns);
  EXPECT_EQ(own->cases, outline.cases);
  const std::vector<StoredColumn> columns = columnsOf(outline);
  const WantedRows wanted = allOf(columns);
  const std::optional<ReadValues> values = decodedValues(files, wanted);
  ASSERT_TRUE(values) << path;
  EXPECT_EQ(*values, duckDbValues(path, wanted));
}

}  // namespace workbench::data
