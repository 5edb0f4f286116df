#include "workbench/data/columnar/parquet_schemas.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "workbench/data/files/duckdb_query.h"
#include "workbench/text/folding.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr auto wholeNumbers = std::to_array<std::string_view>(
    {"TINYINT", "SMALLINT", "INTEGER", "BIGINT", "UTINYINT", "USMALLINT", "UINTEGER", "UBIGINT"});

// An element of a file's schema; its children come behind it.
struct Element {
  std::string name;
  std::size_t children = 0;
  std::string type;
};

struct FileColumn {
  std::string name;
  std::string type;
};

struct FileSchema {
  std::string file;
  std::vector<Element> elements;  // the first one is the row
};

Outcome<FileSchema> schemaOf(const std::string& opened, const std::string& shown) {
  Outcome<std::unique_ptr<DuckDbQuery>> query = DuckDbQuery::start(
      fmt::format("SELECT name, coalesce(CAST(num_children AS VARCHAR), '0'), "
                  "coalesce(duckdb_type, concat_ws(' ', converted_type, logical_type)) FROM parquet_schema({})",
                  sqlText(opened)));
  const auto inFile = [&](Problem problem) {
    problem.where = shown;
    return problem;
  };
  if (!query) return inFile(query.problem());
  FileSchema schema{shown, {}};
  const Outcome<Done> read = (*query)->eachChunk([&](const DuckDbQuery& chunk) {
    for (std::size_t row = 0; row < chunk.rows(); ++row) {
      Element& element = schema.elements.emplace_back();
      element.name = chunk.column(0)[row];
      const std::string_view children = chunk.column(1)[row];
      std::from_chars(children.data(), children.data() + children.size(), element.children);
      element.type = chunk.column(2)[row];
    }
  });
  if (!read) return inFile(read.problem());
  return schema;
}

// Of the element at `next`, with all that is inside; `next` is behind it then.
std::string wholeType(const std::vector<Element>& elements, std::size_t& next) {
  const Element& element = elements[next++];
  if (element.children == 0) return element.type;
  std::string inside;
  for (std::size_t child = 0; child < element.children && next < elements.size(); ++child) {
    if (child != 0) inside += ", ";
    inside += elements[next].name + " ";
    inside += wholeType(elements, next);
  }
  return fmt::format("{}({})", element.type, inside);
}

std::vector<FileColumn> columnsOf(const FileSchema& schema) {
  std::vector<FileColumn> columns;
  for (std::size_t next = 1; next < schema.elements.size();) {
    std::string name = schema.elements[next].name;
    columns.push_back({std::move(name), wholeType(schema.elements, next)});
  }
  return columns;
}

bool isWholeNumber(std::string_view type) {
  return std::find(wholeNumbers.begin(), wholeNumbers.end(), type) != wholeNumbers.end();
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
  Outcome<Done> add(const FileSchema& schema) {
    const std::vector<FileColumn> columns = columnsOf(schema);
    for (const FileColumn& column : columns) {
      const auto [place, isNew] = places_.emplace(text::foldedName(column.name), columns_.size());
      if (isNew) columns_.push_back({column, schema.file, 0, firstFile_});
      TableColumn& known = columns_[place->second];
      ++known.files;
      areSame_ = areSame_ && known.first.type == column.type && known.first.name == column.name;
      const bool canBeJoined =
          known.first.type == column.type || (isWholeNumber(known.first.type) && isWholeNumber(column.type));
      if (canBeJoined) continue;
      return Problem{text::sentence("Column \"^1\" is stored as ^2 here, and as ^3 in ^4.",
                                    {column.name, column.type, known.first.type, known.firstFile}),
                     schema.file, text::sentence("Let all files of a table store it as one type.")};
    }
    ++files_;
    if (firstFile_.empty()) firstFile_ = schema.file;
    for (TableColumn& column : columns_) {
      if (column.files < files_ && column.lackingFile.empty()) column.lackingFile = schema.file;
    }
    return Done{};
  }

  CommonColumns common() const {
    CommonColumns common{areSame_, {}};
    for (const TableColumn& column : columns_) {
      if (column.files == files_) continue;
      common.areSame = false;
      common.warnings.push_back(text::sentence(
          "Column \"^1\" is missing from ^2 of ^3 files, the first of them ^4; it has no values there.",
          {column.first.name, fmt::to_string(files_ - column.files), fmt::to_string(files_), column.lackingFile}));
    }
    return common;
  }

 private:
  std::vector<TableColumn> columns_;
  std::unordered_map<std::string, std::size_t> places_;  // by name without regard to case, as DuckDB joins them
  std::string firstFile_;
  std::size_t files_ = 0;
  bool areSame_ = true;
};

}  // namespace

Outcome<CommonColumns> commonColumns(const std::vector<std::string>& opened, const std::vector<std::string>& shown) {
  TableColumns columns;
  for (std::size_t file = 0; file < opened.size(); ++file) {
    const Outcome<FileSchema> schema = schemaOf(opened[file], shown[file]);
    if (!schema) return schema.problem();
    if (const Outcome<Done> added = columns.add(*schema); !added) return added.problem();
  }
  return columns.common();
}

}  // namespace workbench::data
