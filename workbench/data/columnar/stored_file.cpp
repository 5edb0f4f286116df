#include "workbench/data/columnar/stored_file.h"

#include <utility>
#include <vector>

#include "workbench/data/cells/cell_reader.h"
#include "workbench/data/columnar/stored_case_reader.h"
#include "workbench/data/columnar/stored_table.h"
#include "workbench/data/descriptors/find_description.h"
#include "workbench/data/files/column_names.h"
#include "workbench/data/files/dataset_description.h"
#include "workbench/data/files/field_matching.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

class StoredFile final : public DataFile {
 public:
  StoredFile(std::shared_ptr<const StoredDataset> dataset, std::string descriptorPath,
             std::vector<std::string> warnings)
      : dataset_(std::move(dataset)), descriptorPath_(std::move(descriptorPath)), warnings_(std::move(warnings)) {}

  const Dictionary& dictionary() const override { return dataset_->dictionary; }
  const std::string& path() const override { return source().path(); }
  std::string dictionaryFile() const override { return descriptorPath_; }
  std::vector<std::string> furtherFiles() const override { return source().files(); }
  std::optional<std::int64_t> caseCount() const override { return dataset_->table->cases; }
  std::unique_ptr<CaseReader> openReader(const VariableSubset& wanted) const override {
    return std::make_unique<StoredCaseReader>(dataset_, wanted);
  }
  // Texts that stand for no value are some of those that rise.
  bool isKnownIncreasing(std::int32_t variable) const override {
    const auto column = static_cast<std::size_t>(variable);
    const bool isAsStored = dictionary().at(variable).isNumeric() != dataset_->table->columns[column].isText();
    return isAsStored && dataset_->table->rises[column] && dataset_->noValueTexts[column].empty();
  }
  const std::vector<std::string>& warnings() const override { return warnings_; }

 private:
  const StoredSource& source() const { return *dataset_->table->source; }

  std::shared_ptr<const StoredDataset> dataset_;
  std::string descriptorPath_;  // empty: nothing describes the table
  std::vector<std::string> warnings_;
};

// The kind of values that a field of that type has.
CellKind kindOf(CellType type) {
  switch (type) {
    case CellType::text:
      return CellKind::text;
    case CellType::date:
      return CellKind::date;
    case CellType::time:
      return CellKind::time;
    case CellType::dateTime:
      return CellKind::dateTime;
    default:
      return CellKind::number;
  }
}

std::optional<Problem> problemOfField(const StoredColumn& column, const ColumnEvidence& evidence,
                                      const DescribedField& field, const std::string& path) {
  const CellKind declared = kindOf(field.reading.type);
  const CellKind found = evidence.kind();
  if (declared == CellKind::text || found == CellKind::empty || found == declared) return std::nullopt;
  return Problem{
      text::sentence("Column \"^1\" is declared as ^2, and its values, stored as ^3, are not all of that kind.",
                     {column.name, nameOf(field.reading.type), column.type}),
      path, text::sentence("Correct the description or the data.")};
}

class ExaminedStoredTable final : public ExaminedTable {
 public:
  ExaminedStoredTable(std::shared_ptr<const StoredTable> table, std::optional<DescribedTable> description)
      : table_(std::move(table)), evidence_(table_->evidence) {
    if (description) description_ = std::make_shared<const DescribedTable>(std::move(*description));
  }

  Outcome<Done> matchDescription() {
    std::vector<std::string> header;
    for (const StoredColumn& column : table_->columns) {
      header.push_back(column.name);
      if (std::string warning = warningOf(column); !warning.empty()) warnings_.push_back(std::move(warning));
    }
    const DescribedTable undescribed;
    Outcome<MatchedFields> matched = matchFields(description_ ? *description_ : undescribed, header, path());
    if (!matched) return matched.problem();
    matched_ = std::move(*matched);
    if (description_) warnings_.insert(warnings_.end(), description_->warnings.begin(), description_->warnings.end());
    warnings_.insert(warnings_.end(), matched_.warnings.begin(), matched_.warnings.end());
    for (std::size_t column = 0; column < header.size(); ++column) {
      const DescribedField* const field = fieldOf(column);
      if (field != nullptr) header[column] = field->variable.name;
    }
    ColumnNames names = columnNames(header);
    names_ = std::move(names.names);
    warnings_.insert(warnings_.end(), names.warnings.begin(), names.warnings.end());
    return Done{};
  }

  bool isWhollyDescribed() const override { return isOutline_; }

  Outcome<Done> lookAtValues() override {
    Outcome<std::shared_ptr<const StoredTable>> table = lookAt(*table_);
    if (!table) return table.problem();
    table_ = std::move(*table);
    evidence_ = table_->evidence;
    isOutline_ = false;
    for (std::size_t column = 0; column < evidence_.size(); ++column) {
      const DescribedField* const field = fieldOf(column);
      if (field == nullptr) continue;
      if (auto problem = problemOfField(table_->columns[column], evidence_[column], *field, path())) return *problem;
    }
    return Done{};
  }

  // Whether what the description leaves open is nothing that the values tell.
  bool saysAllOfValues() const {
    for (std::size_t column = 0; column < names_.size(); ++column) {
      const DescribedField* const field = fieldOf(column);
      const bool isAsStored = field != nullptr && kindOf(table_->columns[column]) == kindOf(field->reading.type) &&
                              field->format && (field->width || field->reading.type != CellType::text);
      if (!isAsStored) return false;
    }
    return true;
  }

  ScannedTable scanned() const override {
    ScannedTable scanned{path(), "row", names_, evidence_, {}};
    for (std::size_t column = 0; column < names_.size(); ++column) scanned.fields.push_back(fieldOf(column));
    return scanned;
  }

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
    for (std::string& warning : types.warnings) warnings_.push_back(std::move(warning));
    Dictionary dictionary;
    std::vector<std::vector<std::string>> noValueTexts;
    for (Variable& variable : types.variables) dictionary.add(std::move(variable));
    for (std::size_t column = 0; column < names_.size(); ++column) {
      const DescribedField* const field = fieldOf(column);
      const bool isText = field != nullptr && field->reading.type == CellType::text;
      noValueTexts.push_back(isText ? field->reading.noValueTexts : std::vector<std::string>());
      std::erase(noValueTexts.back(), "");  // which is blank anyway
    }
    if (description_) describeDataset(dictionary, *description_, warnings_);
    auto dataset = std::make_shared<const StoredDataset>(table_, std::move(noValueTexts), std::move(dictionary));
    return std::shared_ptr<const DataFile>(std::make_shared<StoredFile>(
        std::move(dataset), description_ ? description_->descriptorPath : std::string(), std::move(warnings_)));
  }

 private:
  const std::string& path() const { return table_->source->path(); }
  const DescribedField* fieldOf(std::size_t column) const {
    const std::optional<std::size_t> field = matched_.fieldOfColumn[column];
    return field ? &description_->fields[*field] : nullptr;
  }

  std::shared_ptr<const StoredTable> table_;
  std::vector<ColumnEvidence> evidence_;
  bool isOutline_ = true;
  std::shared_ptr<const DescribedTable> description_;  // null: there is none
  MatchedFields matched_;
  std::vector<std::string> names_;
  std::vector<std::string> warnings_;
};

}  // namespace

Outcome<std::unique_ptr<ExaminedTable>> examineStored(std::shared_ptr<const StoredSource> source) {
  const Outcome<std::optional<std::string>> resource = source->resource();
  if (!resource) return storedProblem(resource.problem(), *source);
  std::optional<DescribedTable> description;
  if (*resource) {
    Outcome<DescribedTable> described = describedByResource(**resource, source->path());
    if (!described) return described.problem();
    description = std::move(*described);
  }
  Outcome<std::shared_ptr<const StoredTable>> table = outlineOf(std::move(source));
  if (!table) return table.problem();
  auto examined = std::make_unique<ExaminedStoredTable>(std::move(*table), std::move(description));
  if (const Outcome<Done> matched = examined->matchDescription(); !matched) return matched.problem();
  if (!examined->saysAllOfValues()) {
    if (const Outcome<Done> looked = examined->lookAtValues(); !looked) return looked.problem();
  }
  return std::unique_ptr<ExaminedTable>(std::move(examined));
}

}  // namespace workbench::data
