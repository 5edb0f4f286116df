#include "workbench/data/columnar/parquet_list.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "workbench/data/columnar/parquet_footer.h"
#include "workbench/data/files/sql_text.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr auto wholeNumbers = std::to_array<std::string_view>(
    {"TINYINT", "SMALLINT", "INTEGER", "BIGINT", "UTINYINT", "USMALLINT", "UINTEGER", "UBIGINT"});

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
  FooterColumn first;
  std::string firstFile;
  std::size_t files = 0;    // that have it
  std::string lackingFile;  // the first that does not
};

class TableColumns {
 public:
  Outcome<Done> add(const std::vector<FooterColumn>& columns, const std::string& file) {
    for (std::size_t index = 0; index < columns.size(); ++index) {
      const FooterColumn& column = columns[index];
      if (column.isNamedByDuckDb && !unnamed_) unnamed_ = {column.name, file};
      const auto [place, isNew] = places_.emplace(joinedBy(column.name), columns_.size());
      if (isNew) columns_.push_back({column, file, 0, firstFile_});
      TableColumn& known = columns_[place->second];
      ++known.files;
      hasSame_ = hasSame_ && place->second == index && known.first == column;
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
      hasSame_ = false;
      if (column.lackingFile.empty()) column.lackingFile = file;
    }
    return Done{};
  }

  // Whether all files have the same ones in the same order.
  bool hasSame() const { return hasSame_; }

  std::optional<Problem> problem() const {
    if (hasSame_ || !unnamed_) return std::nullopt;
    return Problem{text::sentence("Column \"^1\" has no name of its own here (none, or that of another column but "
                                  "for upper and lower case), and the files do not all have the same columns in "
                                  "the same order, so that names do not tell which belong together.",
                                  {unnamed_->column}),
                   unnamed_->file, text::sentence("Give each column a name of its own.")};
  }

  std::vector<std::string> warnings() const {
    std::vector<std::string> warnings;
    for (const TableColumn& column : columns_) {
      if (column.files == files_) continue;
      warnings.push_back(text::sentence(
          "Column \"^1\" is missing from ^2 of ^3 files, the first of them ^4; it has no values there.",
          {column.first.name, fmt::to_string(files_ - column.files), fmt::to_string(files_), column.lackingFile}));
    }
    return warnings;
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
  bool hasSame_ = true;
  std::optional<Unnamed> unnamed_;  // the first column without a name of its own
};

Outcome<TableColumns> columnsOfAll(const std::vector<std::string>& opened, const std::vector<std::string>& shown) {
  TableColumns columns;
  for (std::size_t file = 0; file < opened.size(); ++file) {
    const Outcome<std::vector<FooterColumn>> ofFile = columnsInFooter(opened[file]);
    if (!ofFile) {
      Problem problem = ofFile.problem();
      problem.where = shown[file];
      return problem;
    }
    if (const Outcome<Done> added = columns.add(*ofFile, shown[file]); !added) return added.problem();
  }
  if (const std::optional<Problem> problem = columns.problem()) return *problem;
  return columns;
}

}  // namespace

Outcome<ParquetList> ParquetList::of(const std::vector<std::string>& opened, const std::vector<std::string>& shown) {
  const Outcome<TableColumns> columns = opened.size() > 1 ? columnsOfAll(opened, shown) : TableColumns();
  if (!columns) return columns.problem();
  std::vector<std::string> texts;
  for (const std::string& file : opened) texts.push_back(sqlText(file));
  return ParquetList(fmt::format("[{}]", fmt::join(texts, ", ")), columns->hasSame(), columns->warnings());
}

std::string ParquetList::relation(std::string_view options) const {
  return fmt::format("read_parquet({}, {}{})", files_, options, hasSameColumns_ ? "" : ", union_by_name = true");
}

}  // namespace workbench::data
