#include "workbench/data/columnar/stored_file.h"

#include <utility>
#include <vector>

#include "workbench/data/columnar/stored_case_reader.h"
#include "workbench/data/columnar/stored_table.h"
#include "workbench/data/files/dataset_file.h"
#include "workbench/data/files/described_columns.h"

namespace workbench::data {
namespace {

class StoredFile final : public DatasetFile<StoredDataset, StoredCaseReader> {
 public:
  using DatasetFile::DatasetFile;

  // Texts that stand for no value are some of those that rise.
  bool isKnownIncreasing(std::int32_t variable) const override {
    const auto column = static_cast<std::size_t>(variable);
    const StoredTable& table = *dataset().table;
    const bool isAsStored = dictionary().at(variable).isNumeric() != table.columns[column].isText();
    return isAsStored && table.rises[column] && dataset().noValueTexts[column].empty();
  }
};

std::vector<KnownColumn> knownColumns(const StoredTable& table) {
  std::vector<KnownColumn> known;
  for (const StoredColumn& column : table.columns) {
    const std::string comment = table.source->commentOn(column.name);
    const std::optional<std::string> label = comment.empty() ? std::nullopt : std::optional(comment);
    known.push_back({column.name, column.type, kindOf(column), warningOf(column), label});
  }
  return known;
}

class ExaminedStoredTable final : public ExaminedTable {
 public:
  ExaminedStoredTable(std::shared_ptr<const StoredTable> table, DescribedColumns columns)
      : table_(std::move(table)), evidence_(table_->evidence), columns_(std::move(columns)) {}

  bool isWhollyDescribed() const override { return isOutline_; }

  Outcome<Done> lookAtValues() override {
    Outcome<std::shared_ptr<const StoredTable>> table = lookAt(*table_);
    if (!table) return table.problem();
    table_ = std::move(*table);
    evidence_ = table_->evidence;
    isOutline_ = false;
    if (const std::optional<Problem> problem = columns_.problemOf(evidence_)) return *problem;
    return Done{};
  }

  ScannedTable scanned() const override { return columns_.scanned(evidence_); }

  Outcome<Done> measureTexts(const std::vector<std::size_t>& columns) override {
    std::vector<std::size_t> unknown;
    for (const std::size_t column : columns) {
      if (!table_->columns[column].isText()) unknown.push_back(column);
    }
    if (unknown.empty()) return Done{};
    const Outcome<std::vector<std::size_t>> lengths = longestTexts(*table_, unknown);
    if (!lengths) return lengths.problem();
    for (std::size_t index = 0; index < unknown.size(); ++index) {
      evidence_[unknown[index]].setLongestText((*lengths)[index]);
    }
    return Done{};
  }

  Outcome<std::shared_ptr<const DataFile>> open(InferredTypes types) override {
    Dictionary dictionary = columns_.dictionaryOf(std::move(types));
    auto dataset = std::make_shared<const StoredDataset>(table_, columns_.noValueTexts(), std::move(dictionary));
    return std::shared_ptr<const DataFile>(
        std::make_shared<StoredFile>(std::move(dataset), columns_, table_->source->warnings()));
  }

 private:
  std::shared_ptr<const StoredTable> table_;
  std::vector<ColumnEvidence> evidence_;
  bool isOutline_ = true;
  DescribedColumns columns_;
};

}  // namespace

Outcome<std::unique_ptr<ExaminedTable>> examineStored(std::shared_ptr<const StoredSource> source) {
  Outcome<std::optional<DescribedTable>> description = source->description();
  if (!description) return storedProblem(description.problem(), *source);
  Outcome<std::shared_ptr<const StoredTable>> table = outlineOf(std::move(source));
  if (!table) return table.problem();
  const std::string path = (*table)->source->path();
  Outcome<DescribedColumns> columns = DescribedColumns::match(path, knownColumns(**table), std::move(*description));
  if (!columns) return columns.problem();
  const bool leavesNothingOpen = columns->saysAllOfValues();
  return examinedTable(std::make_unique<ExaminedStoredTable>(std::move(*table), std::move(*columns)),
                       leavesNothingOpen);
}

}  // namespace workbench::data
