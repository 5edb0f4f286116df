#include "workbench/data/parquet/parquet_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

std::optional<ValueForm> formOf(const ParquetLayout& layout, const ParquetRows::Column& wanted) {
  const std::optional<ParquetColumn>& column = layout.columns[wanted.index];
  if (!column) return std::nullopt;
  const std::optional<ValueForm> form = valueFormOf(*column, wanted.type);
  return form && form->handedOut == wanted.handedOut ? form : std::nullopt;
}

bool isRead(const ParquetLayout& layout, const ParquetRows::Column& wanted) {
  return formOf(layout, wanted) && std::all_of(layout.groups.begin(), layout.groups.end(), [&](const RowGroup& group) {
           return group.parts[layout.columns[wanted.index]->leaf].isKnown;
         });
}

}  // namespace

std::unique_ptr<ParquetRows> ParquetRows::open(std::vector<File> files, std::size_t columns, std::vector<Column> wanted,
                                               bool isFirstLook) {
  std::unique_ptr<ParquetRows> rows(new ParquetRows);
  rows->isFirstLook_ = isFirstLook;
  for (const File& file : files) {
    if (file.layout->columns.size() != columns) return nullptr;
    if (!std::all_of(wanted.begin(), wanted.end(), [&](const Column& column) { return isRead(*file.layout, column); }))
      return nullptr;
  }
  rows->files_ = std::move(files);
  rows->wanted_ = std::move(wanted);
  rows->beginFile();
  return rows;
}

Outcome<bool> ParquetRows::next() {
  rows_ = 0;
  while (leftInGroup_ == 0) {
    if (file_ == files_.size()) return false;
    if (group_ < files_[file_].layout->groups.size()) {
      beginGroup();
    } else {
      cursors_.clear();
      if (!isFirstLook_ && wanted_.size() == files_[file_].layout->columns.size()) files_[file_].kept->clear();
      ++file_;
      beginFile();
    }
  }
  // As far as no page ends: the texts of a vector lie in one page.
  std::size_t rows = std::min<std::size_t>(ColumnValues::mostAtOnce, static_cast<std::size_t>(leftInGroup_));
  for (const std::unique_ptr<ColumnValues>& cursor : cursors_) rows = std::min(rows, cursor->ready());
  for (std::size_t column = 0; column < cursors_.size(); ++column) {
    if (cursors_[column]->ready() == 0 || !cursors_[column]->read(rows)) return damaged(wanted_[column]);
  }
  rows_ = rows;
  leftInGroup_ -= static_cast<std::int64_t>(rows);
  return true;
}

void ParquetRows::beginFile() {
  group_ = 0;
  if (file_ == files_.size()) return;
  cursors_.reserve(wanted_.size());
  for (const Column& column : wanted_) {
    cursors_.push_back(
        std::make_unique<ColumnValues>(files_[file_].descriptor, *files_[file_].layout->columns[column.index],
                                       *formOf(*files_[file_].layout, column), *files_[file_].kept, isFirstLook_));
  }
}

void ParquetRows::beginGroup() {
  const ParquetLayout& layout = *files_[file_].layout;
  const RowGroup& group = layout.groups[group_++];
  leftInGroup_ = group.rows;
  for (std::size_t column = 0; column < cursors_.size(); ++column) {
    cursors_[column]->begin(group.parts[layout.columns[wanted_[column].index]->leaf]);
  }
}

Problem ParquetRows::damaged(const Column& column) const {
  return Problem{
      text::sentence("The file is damaged: what is stored of column \"^1\" in group of rows ^2 makes no sense.",
                     {column.name, fmt::to_string(group_)}),
      files_[file_].name, text::sentence("Write the file once more, or take it from where it came from.")};
}

}  // namespace workbench::data
