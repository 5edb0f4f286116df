#include "workbench/data/databases/database_file.h"

#include <utility>

#include "workbench/data/databases/database_case_reader.h"
#include "workbench/data/databases/database_table.h"
#include "workbench/data/descriptors/find_description.h"
#include "workbench/data/files/dataset_file.h"

namespace workbench::data {
namespace {

class DatabaseFile final : public DatasetFile<DatabaseDataset, DatabaseCaseReader> {
 public:
  using DatasetFile::DatasetFile;

  // Texts that stand for no value are some of those that rise.
  bool isKnownIncreasing(std::int32_t variable) const override {
    const auto column = static_cast<std::size_t>(variable);
    const ColumnEvidence& evidence = dataset().table->evidence[column];
    if (!dataset().table->isLookedAt || !dataset().orderedBy.empty()) return false;
    if (!dictionary().at(variable).isNumeric()) return evidence.textsRise() && !dataset().columns[column].reading;
    return evidence.numbersRise() || (evidence.kind() == CellKind::date && evidence.textsRise());
  }
  std::shared_ptr<const DataFile> broughtIntoOrder(const std::vector<std::int32_t>& variables) const override {
    if (!dataset().table->source->bringsIntoOrder()) return nullptr;
    auto ordered = std::make_shared<DatabaseDataset>(dataset());
    ordered->orderedBy.assign(variables.begin(), variables.end());
    return std::make_shared<DatabaseFile>(*this, std::move(ordered));
  }
};

// Values are what they are stored as; only texts have some that stand for none.
std::vector<CsvColumn> columnsOf(const DescribedColumns& described) {
  std::vector<CsvColumn> columns;
  for (std::vector<std::string>& texts : described.noValueTexts()) {
    CsvColumn& column = columns.emplace_back();
    column.variable = static_cast<std::int32_t>(columns.size() - 1);
    if (texts.empty()) continue;
    texts.emplace_back();
    column.reading.emplace();
    column.reading->type = CellType::text;
    column.reading->noValueTexts = std::move(texts);
  }
  return columns;
}

class ExaminedDatabaseTable final : public ExaminedTable {
 public:
  ExaminedDatabaseTable(SharedDatabaseTable table, DescribedColumns columns)
      : table_(std::move(table)), columns_(std::move(columns)) {}

  bool isWhollyDescribed() const override { return !table_->isLookedAt; }

  Outcome<Done> lookAtValues() override {
    Outcome<SharedDatabaseTable> table = lookAt(table_);
    if (!table) return table.problem();
    table_ = std::move(*table);
    if (const std::optional<Problem> problem = columns_.problemOf(table_->evidence)) return *problem;
    return Done{};
  }

  ScannedTable scanned() const override { return columns_.scanned(table_->evidence); }

  Outcome<std::shared_ptr<const DataFile>> open(InferredTypes types) override {
    if (!table_->isLookedAt) {
      const Outcome<std::int64_t> rows = table_->source->countRows();
      if (!rows) return rows.problem();
      auto counted = std::make_shared<DatabaseTable>(*table_);
      counted->cases = *rows;
      table_ = std::move(counted);
    }
    Dictionary dictionary = columns_.dictionaryOf(std::move(types));
    auto dataset = std::make_shared<const DatabaseDataset>(table_, columnsOf(columns_), std::move(dictionary));
    return std::shared_ptr<const DataFile>(
        std::make_shared<DatabaseFile>(std::move(dataset), columns_, table_->warnings));
  }

 private:
  SharedDatabaseTable table_;
  DescribedColumns columns_;
};

}  // namespace

Outcome<std::unique_ptr<ExaminedTable>> examineDatabase(std::shared_ptr<const RowSource> source) {
  Outcome<std::optional<DescribedTable>> description = describedByStored(source->resource(), source->path());
  if (!description) return description.problem();
  Outcome<DescribedColumns> columns =
      DescribedColumns::match(source->path(), source->columns(), std::move(*description));
  if (!columns) return columns.problem();
  SharedDatabaseTable table = outlineOf(std::move(source));
  const bool leavesNothingOpen = columns->saysAllOfValues();
  return examinedTable(std::make_unique<ExaminedDatabaseTable>(std::move(table), std::move(*columns)),
                       leavesNothingOpen);
}

}  // namespace workbench::data
