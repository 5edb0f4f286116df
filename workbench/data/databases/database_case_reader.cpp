#include "workbench/data/databases/database_case_reader.h"

#include <fmt/format.h>

#include <algorithm>

#include "host/messages.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

std::vector<std::size_t> wantedColumns(const DatabaseDataset& dataset, const VariableSubset& wanted) {
  std::vector<std::size_t> columns;
  for (std::size_t column = 0; column < dataset.columns.size(); ++column) {
    if (wanted.has(static_cast<std::int32_t>(column))) columns.push_back(column);
  }
  if (columns.empty()) columns.push_back(0);  // the rows count, though nobody wants a value of them
  return columns;
}

std::vector<CsvColumn> some(const std::vector<CsvColumn>& columns, const std::vector<std::size_t>& fetched) {
  std::vector<CsvColumn> chosen;
  for (const std::size_t column : fetched) chosen.push_back(columns[column]);
  return chosen;
}

}  // namespace

DatabaseCaseReader::DatabaseCaseReader(std::shared_ptr<const DatabaseDataset> dataset, const VariableSubset& wanted)
    : dataset_(std::move(dataset)),
      fetched_(wantedColumns(*dataset_, wanted)),
      decoder_(some(dataset_->columns, fetched_), dataset_->dictionary, dataset_->layout, wanted) {
  Outcome<std::unique_ptr<RowCursor>> cursor = dataset_->table->source->open(fetched_);
  if (!cursor) throw ErrorText(cursor.problem().text());
  cursor_ = std::move(*cursor);
}

void DatabaseCaseReader::fill(CaseBlock& block) {
  std::size_t filled = 0;
  while (filled < block.capacity() && cursor_ != nullptr) {
    if (row_ == rows_.records() && !nextRows()) continue;
    const std::size_t count = std::min(block.capacity() - filled, rows_.records() - row_);
    decode(block.at(filled), block.caseSlots(), count);
    row_ += count;
    filled += count;
    cases_ += static_cast<std::int64_t>(count);
  }
  block.setCases(filled);
}

// False when the table has ended.
bool DatabaseCaseReader::nextRows() {
  row_ = 0;
  if (const Outcome<Done> read = cursor_->next(rows_); !read) throw ErrorText(read.problem().text());
  if (rows_.records() != 0) return true;
  cursor_.reset();
  const DatabaseTable& table = *dataset_->table;
  if (cases_ == table.cases) return false;
  throw ErrorText(text::sentence("^1: ^2 rows were read, and ^3 were there before; the table does not stay as it is.",
                                 {table.source->path(), fmt::to_string(cases_), fmt::to_string(table.cases)}));
}

void DatabaseCaseReader::decode(OBS* cases, std::size_t caseSlots, std::size_t count) {
  for (std::size_t column = 0; column < fetched_.size(); ++column) {
    const ColumnCells cells = rows_.column(column, row_);
    const std::optional<std::size_t> refused = decoder_.decode(column, cells, count, cases, caseSlots);
    if (!refused) continue;
    const std::int64_t row = cases_ + static_cast<std::int64_t>(*refused) + 1;
    const std::string where = text::sentence("^1, row ^2", {dataset_->table->source->path(), fmt::to_string(row)});
    throw ErrorText(decoder_.refusal(column, cells.text(*refused), where).text());
  }
}

}  // namespace workbench::data
