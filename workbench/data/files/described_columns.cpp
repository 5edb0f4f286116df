#include "workbench/data/files/described_columns.h"

#include <utility>

#include "workbench/data/cells/cell_reader.h"
#include "workbench/data/files/column_names.h"
#include "workbench/data/files/dataset_description.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// The kind of values that a field of that type has.
CellKind kindOfField(CellType type) {
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

}  // namespace

DescribedColumns::DescribedColumns(std::string path, std::vector<KnownColumn> columns)
    : path_(std::move(path)), columns_(std::move(columns)) {}

Outcome<DescribedColumns> DescribedColumns::match(std::string path, std::vector<KnownColumn> columns,
                                                  std::optional<DescribedTable> description) {
  DescribedColumns described(std::move(path), std::move(columns));
  if (description) described.description_ = std::make_shared<const DescribedTable>(std::move(*description));
  const DescribedTable* const table = described.description_.get();
  std::vector<std::string>& warnings = described.warnings_;

  // 1. Which field is of which column.
  std::vector<std::string> header;
  for (const KnownColumn& column : described.columns_) {
    header.push_back(column.name);
    if (!column.warning.empty()) warnings.push_back(column.warning);
  }
  Outcome<MatchedFields> matched = matchFields(table != nullptr ? *table : DescribedTable(), header, described.path_);
  if (!matched) return matched.problem();
  described.matched_ = std::move(*matched);
  if (table != nullptr) warnings.insert(warnings.end(), table->warnings.begin(), table->warnings.end());
  warnings.insert(warnings.end(), described.matched_.warnings.begin(), described.matched_.warnings.end());

  // 2. What the variables are called.
  for (std::size_t column = 0; column < header.size(); ++column) {
    if (const DescribedField* const field = described.fieldOf(column)) header[column] = field->variable.name;
  }
  ColumnNames names = columnNames(header);
  described.names_ = std::move(names.names);
  warnings.insert(warnings.end(), names.warnings.begin(), names.warnings.end());
  return described;
}

bool DescribedColumns::saysAllOfValues() const {
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    const DescribedField* const field = fieldOf(column);
    const bool isAsStored = field != nullptr && columns_[column].kind == kindOfField(field->reading.type) &&
                            field->format && (field->width || field->reading.type != CellType::text);
    if (!isAsStored) return false;
  }
  return true;
}

std::optional<Problem> DescribedColumns::problemOf(const std::vector<ColumnEvidence>& evidence) const {
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    const DescribedField* const field = fieldOf(column);
    if (field == nullptr) continue;
    const CellKind declared = kindOfField(field->reading.type);
    const CellKind found = evidence[column].kind();
    if (declared == CellKind::text || found == CellKind::empty || found == declared) continue;
    return Problem{
        text::sentence("Column \"^1\" is declared as ^2, and its values, stored as ^3, are not all of that kind.",
                       {columns_[column].name, nameOf(field->reading.type), columns_[column].type}),
        path_, text::sentence("Correct the description or the data.")};
  }
  return std::nullopt;
}

ScannedTable DescribedColumns::scanned(const std::vector<ColumnEvidence>& evidence) const {
  ScannedTable scanned{path_, "row", names_, evidence, {}};
  for (std::size_t column = 0; column < names_.size(); ++column) scanned.fields.push_back(fieldOf(column));
  return scanned;
}

Dictionary DescribedColumns::dictionaryOf(InferredTypes types) {
  for (std::string& warning : types.warnings) warnings_.push_back(std::move(warning));
  Dictionary dictionary;
  for (std::size_t column = 0; column < types.variables.size(); ++column) {
    Variable& variable = types.variables[column];
    if (fieldOf(column) == nullptr) variable.label = columns_[column].label;
    dictionary.add(std::move(variable));
  }
  if (description_) describeDataset(dictionary, *description_, warnings_);
  return dictionary;
}

std::vector<std::vector<std::string>> DescribedColumns::noValueTexts() const {
  std::vector<std::vector<std::string>> texts;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    const DescribedField* const field = fieldOf(column);
    const bool isText = field != nullptr && field->reading.type == CellType::text;
    texts.push_back(isText ? field->reading.noValueTexts : std::vector<std::string>());
    std::erase(texts.back(), "");
  }
  return texts;
}

const DescribedField* DescribedColumns::fieldOf(std::size_t column) const {
  const std::optional<std::size_t> field = matched_.fieldOfColumn[column];
  return field ? &description_->fields[*field] : nullptr;
}

}  // namespace workbench::data
