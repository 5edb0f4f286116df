#include "workbench/data/files/csv_file.h"

#include <utility>

#include "workbench/data/files/case_readers.h"
#include "workbench/data/files/csv_table.h"
#include "workbench/data/files/dataset_description.h"
#include "workbench/data/files/duckdb_library.h"
#include "workbench/data/files/table_source.h"
#include "workbench/data/files/type_inference.h"

namespace workbench::data {
namespace {

class CsvFile final : public DataFile {
 public:
  CsvFile(std::shared_ptr<const CsvTable> table, TableSource source)
      : table_(std::move(table)), source_(std::move(source)) {}

  const Dictionary& dictionary() const override { return table_->dictionary; }
  const std::string& path() const override { return table_->path; }
  std::string dictionaryFile() const override {
    return source_.description == nullptr ? std::string() : source_.description->descriptorPath;
  }
  std::vector<std::string> furtherFiles() const override {
    std::vector<std::string> files = source_.dataPaths;
    if (source_.description != nullptr) files.push_back(source_.description->descriptorPath);
    return files;
  }
  std::optional<std::int64_t> caseCount() const override { return table_->cases(); }
  std::unique_ptr<CaseReader> openReader(const VariableSubset& wanted) const override {
    return openCaseReader(table_, wanted);
  }
  bool isKnownIncreasing(std::int32_t variable) const override;
  const std::vector<std::string>& warnings() const override { return source_.warnings; }

 private:
  std::shared_ptr<const CsvTable> table_;
  TableSource source_;
};

// Column and variable have the same index. ISO dates are in order when their texts are.
bool CsvFile::isKnownIncreasing(std::int32_t variable) const {
  const ColumnEvidence& evidence = source_.evidence.whole->columns[static_cast<std::size_t>(variable)];
  const Variable& type = table_->dictionary.at(variable);
  if (!type.isNumeric()) return evidence.textsRise();
  return evidence.numbersRise() || (evidence.kind() == CellKind::date && evidence.textsRise());
}

ScannedTable scannedTable(const TableSource& source) {
  ScannedTable table{source.path, "line", source.names, source.evidence.whole->columns, {}};
  for (std::size_t column = 0; column < source.names.size(); ++column) table.fields.push_back(source.fieldOf(column));
  return table;
}

std::shared_ptr<const CsvTable> tableOf(const TableSource& source, Dictionary dictionary) {
  std::vector<CsvPart> parts;
  for (std::size_t part = 0; part < source.dataPaths.size(); ++part) {
    parts.push_back({source.dataPaths[part], source.evidence.parts[part]});
  }
  std::vector<CsvColumn> columns;
  for (std::int32_t column = 0; column < dictionary.size(); ++column) {
    const DescribedField* field = source.fieldOf(static_cast<std::size_t>(column));
    columns.push_back({column, field == nullptr ? std::nullopt : std::optional(field->reading)});
  }
  return std::make_shared<const CsvTable>(source.path, std::move(parts), source.kind, std::move(columns),
                                          std::move(dictionary));
}

class ExaminedCsvFile final : public ExaminedTable {
 public:
  explicit ExaminedCsvFile(TableSource source) : source_(std::move(source)) {}

  ScannedTable scanned() const override { return scannedTable(source_); }

  Outcome<std::shared_ptr<const DataFile>> open(InferredTypes types) override {
    for (std::string& warning : types.warnings) source_.warnings.push_back(std::move(warning));
    Dictionary dictionary;
    for (Variable& variable : types.variables) dictionary.add(std::move(variable));
    if (source_.description != nullptr) describeDataset(dictionary, *source_.description, source_.warnings);
    auto table = tableOf(source_, std::move(dictionary));
    return std::shared_ptr<const DataFile>(std::make_shared<CsvFile>(std::move(table), std::move(source_)));
  }

 private:
  TableSource source_;
};

}  // namespace

Outcome<std::unique_ptr<ExaminedTable>> examineCsvFile(const std::string& path) {
  Outcome<TableSource> source = examineTable(path);
  if (!source) return source.problem();
  // Better to know now that it is missing. It takes its time to load, so who needs it not does not ask.
  if (isReadByDuckDb(source->evidence.whole->dialect, source->kind.packing)) {
    if (const Outcome<const DuckDbLibrary*> library = duckDbLibrary(); !library) return library.problem();
  }
  return std::unique_ptr<ExaminedTable>(std::make_unique<ExaminedCsvFile>(std::move(*source)));
}

}  // namespace workbench::data
