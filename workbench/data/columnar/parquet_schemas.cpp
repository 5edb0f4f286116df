#include "workbench/data/columnar/parquet_schemas.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "workbench/data/files/duckdb_query.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr auto wholeNumbers = std::to_array<std::string_view>(
    {"TINYINT", "SMALLINT", "INTEGER", "BIGINT", "UTINYINT", "USMALLINT", "UINTEGER", "UBIGINT"});

struct FileColumn {
  std::string name;
  std::string type;
  bool isNamedByDuckDb;  // because it has no name, or that of another column, ASCII letters without regard to case
};

// As DuckDB reads the file that it opens by this name.
Outcome<std::vector<FileColumn>> columnsOf(const std::string& opened, const std::string& shown) {
  Outcome<std::unique_ptr<DuckDbQuery>> query = DuckDbQuery::start(
      fmt::format("SELECT column_name, column_type, column_name NOT IN (SELECT name FROM parquet_schema({0})) "
                  "FROM (DESCRIBE FROM read_parquet({0}, hive_partitioning = false))",
                  sqlText(opened)));
  const auto inFile = [&](Problem problem) {
    problem.where = shown;
    return problem;
  };
  if (!query) return inFile(query.problem());
  std::vector<FileColumn> columns;
  const Outcome<Done> read = (*query)->eachChunk([&](const DuckDbQuery& chunk) {
    const auto* const isNamedByDuckDb = static_cast<const bool*>(chunk.values(2).first);
    for (std::size_t row = 0; row < chunk.rows(); ++row) {
      columns.push_back({std::string(chunk.column(0)[row]), std::string(chunk.column(1)[row]), isNamedByDuckDb[row]});
    }
  });
  if (!read) return inFile(read.problem());
  return columns;
}

bool isWholeNumber(std::string_view type) {
  return std::find(wholeNumbers.begin(), wholeNumbers.end(), type) != wholeNumbers.end();
}

// What is the same for names that DuckDB takes for one: it knows the cases of ASCII letters only.
std::string joinedBy(std::string name) {
  for (char& letter : name) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return name;
}

// A column of the table, as the first file that has it tells it.
struct TableColumn {
  FileColumn first;
  std::string firstFile;
  std::size_t files = 0;    // that have it
  std::string lackingFile;  // the first that does not
};

class TableColumns {
 public:
  Outcome<Done> add(const std::vector<FileColumn>& columns, const std::string& file) {
    for (const FileColumn& column : columns) {
      if (column.isNamedByDuckDb && !unnamed_) unnamed_ = {column.name, file};
      const auto [place, isNew] = places_.emplace(joinedBy(column.name), columns_.size());
      if (isNew) columns_.push_back({column, file, 0, firstFile_});
      TableColumn& known = columns_[place->second];
      ++known.files;
      areSame_ = areSame_ && known.first.type == column.type && known.first.name == column.name &&
                 known.first.isNamedByDuckDb == column.isNamedByDuckDb;
      const bool canBeJoined =
          known.first.type == column.type || (isWholeNumber(known.first.type) && isWholeNumber(column.type));
      if (canBeJoined) continue;
      return Problem{text::sentence("Column \"^1\" is stored as ^2 here, and as ^3 in ^4.",
                                    {column.name, column.type, known.first.type, known.firstFile}),
                     file, text::sentence("Let all files of a table store it as one type.")};
    }
    ++files_;
    if (firstFile_.empty()) firstFile_ = file;
    for (TableColumn& column : columns_) {
      if (column.files == files_) continue;
      areSame_ = false;
      if (column.lackingFile.empty()) column.lackingFile = file;
    }
    return Done{};
  }

  Outcome<CommonColumns> common() const {
    if (unnamed_ && !areSame_) {
      return Problem{text::sentence("Column \"^1\" has no name of its own here (none, or that of another column but "
                                    "for upper and lower case), and the files do not all have the same columns, so "
                                    "that names do not tell which belong together.",
                                    {unnamed_->column}),
                     unnamed_->file, text::sentence("Give each column a name of its own.")};
    }
    CommonColumns common{areSame_, {}};
    for (const TableColumn& column : columns_) {
      if (column.files == files_) continue;
      common.warnings.push_back(text::sentence(
          "Column \"^1\" is missing from ^2 of ^3 files, the first of them ^4; it has no values there.",
          {column.first.name, fmt::to_string(files_ - column.files), fmt::to_string(files_), column.lackingFile}));
    }
    return common;
  }

 private:
  struct Unnamed {
    std::string column;
    std::string file;
  };

  std::vector<TableColumn> columns_;
  std::unordered_map<std::string, std::size_t> places_;  // by joinedBy()
  std::string firstFile_;
  std::size_t files_ = 0;
  bool areSame_ = true;
  std::optional<Unnamed> unnamed_;  // the first column without a name of its own
};

}  // namespace

Outcome<CommonColumns> commonColumns(const std::vector<std::string>& opened, const std::vector<std::string>& shown) {
  TableColumns columns;
  for (std::size_t file = 0; file < opened.size(); ++file) {
    const Outcome<std::vector<FileColumn>> ofFile = columnsOf(opened[file], shown[file]);
    if (!ofFile) return ofFile.problem();
    if (const Outcome<Done> added = columns.add(*ofFile, shown[file]); !added) return added.problem();
  }
  return columns.common();
}

}  // namespace workbench::data
