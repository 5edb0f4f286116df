#include "workbench/data/columnar/parquet_file.h"

#include <unordered_set>
#include <utility>

#include "workbench/data/files/column_names.h"
#include "workbench/data/parquet/parquet_rows.h"
#include "workbench/text/folding.h"
#include "workbench/text/utf8.h"

namespace workbench::data {
namespace {

class DecodedRows final : public StoredRows {
 public:
  explicit DecodedRows(std::unique_ptr<ParquetRows> rows) : rows_(std::move(rows)) {}

  Outcome<bool> next() override { return rows_->next(); }
  std::size_t rows() const override { return rows_->rows(); }
  VectorCells values(std::size_t wanted) const override {
    const auto [values, present] = rows_->values(wanted);
    return {values, {present}};
  }
  bool areColumnsApart() const override { return true; }

 private:
  std::unique_ptr<ParquetRows> rows_;
};

std::optional<HandedOut> handedOutFor(const WantedColumn& wanted) {
  if (wanted.asText && !wanted.column->isText()) return std::nullopt;
  switch (wanted.column->carrier) {
    case Carrier::int32:
    case Carrier::date:
      return HandedOut::int32;
    case Carrier::int64:
    case Carrier::decimal:
    case Carrier::time:
    case Carrier::dateTime:
      return HandedOut::int64;
    case Carrier::real:
      return HandedOut::real;
    case Carrier::text:
      return HandedOut::text;
    case Carrier::cellText:
      break;
  }
  return std::nullopt;
}

}  // namespace

ParquetFile::ParquetFile(std::string name, InputFile file)
    : name_(std::move(name)), file_(std::move(file)), layout_(parquetLayoutOf(file_.descriptor())) {}

Outcome<std::unique_ptr<const ParquetFile>> ParquetFile::open(const std::string& name) {
  Outcome<InputFile> file = InputFile::open(name);
  if (!file) return file.problem();
  return std::unique_ptr<const ParquetFile>(new ParquetFile(name, std::move(*file)));
}

std::optional<StoredOutline> ParquetFile::outline() const {
  if (!layout_ || layout_->columns.empty()) return std::nullopt;
  StoredOutline outline;
  std::unordered_set<std::string> names;  // DuckDB makes those different that differ in case alone
  for (std::size_t index = 0; index < layout_->columns.size(); ++index) {
    const std::optional<ParquetColumn>& column = layout_->columns[index];
    const std::string& name = layout_->names[index];
    if (!column || column->duckDbType.empty() || name.empty() || !text::isUtf8(name) ||
        !names.insert(text::foldedName(name)).second)
      return std::nullopt;
    outline.columns.emplace_back(name, column->duckDbType);
  }
  outline.cases = layout_->rows;
  return outline;
}

std::vector<std::string> ParquetFile::renamings(const StoredOutline& outline) const {
  std::vector<std::string> warnings;
  if (!layout_ || layout_->names.size() != outline.columns.size()) return warnings;
  for (std::size_t column = 0; column < layout_->names.size(); ++column) {
    const std::string& name = layout_->names[column];
    const std::string& given = outline.columns[column].first;
    if (name != given) warnings.push_back(renamingOf(column, name, given));
  }
  return warnings;
}

std::optional<std::string> ParquetFile::metadata(std::string_view key) const {
  for (const auto& [name, value] : layout_->metadata) {
    if (name == key) return value;
  }
  return std::nullopt;
}

std::unique_ptr<StoredRows> ParquetFile::rows(const std::vector<std::unique_ptr<const ParquetFile>>& files,
                                              const WantedRows& wanted) {
  std::vector<ParquetRows::Column> decoded;
  for (const WantedColumn& of : wanted.columns) {
    const std::optional<HandedOut> handedOut = handedOutFor(of);
    if (!handedOut) return nullptr;
    decoded.push_back({of.index, of.column->name, of.column->type, *handedOut});
  }
  std::vector<ParquetRows::File> opened;
  for (const std::unique_ptr<const ParquetFile>& file : files) {
    if (!file->layout_) return nullptr;
    opened.push_back({file->file_.descriptor(), file->name_, &*file->layout_, &file->kept_});
  }
  std::unique_ptr<ParquetRows> rows =
      ParquetRows::open(std::move(opened), wanted.tableColumns, std::move(decoded), wanted.isFirstLook);
  return rows == nullptr ? nullptr : std::make_unique<DecodedRows>(std::move(rows));
}

}  // namespace workbench::data
