#include "workbench/data/columnar/stored_case_writer.h"

#include <fmt/format.h>

#include <filesystem>
#include <utility>
#include <vector>

#include "workbench/data/cells/system_missing.h"
#include "workbench/data/columnar/parquet_source.h"
#include "workbench/data/columnar/stored_values.h"
#include "workbench/data/descriptors/dictionary_check.h"
#include "workbench/data/descriptors/schema_writer.h"
#include "workbench/data/files/duckdb_copy.h"
#include "workbench/data/files/duckdb_query.h"
#include "workbench/data/files/protected_name.h"
#include "workbench/data/files/refused_value.h"
#include "workbench/text/string_comparison.h"

namespace workbench::data {
namespace {

duckdb_type typeOf(const Variable& variable) {
  if (!variable.isNumeric()) return DUCKDB_TYPE_VARCHAR;
  switch (variable.format.type) {
    case FormatType::date:
      return DUCKDB_TYPE_DATE;
    case FormatType::time:
      return DUCKDB_TYPE_TIME;
    case FormatType::dateTime:
      return DUCKDB_TYPE_TIMESTAMP;
    default:
      return DUCKDB_TYPE_DOUBLE;
  }
}

std::vector<DuckDbColumn> columnsOf(const Dictionary& dictionary) {
  std::vector<DuckDbColumn> columns;
  for (const Variable& variable : dictionary.variables()) columns.push_back({variable.name, typeOf(variable)});
  return columns;
}

class StoredCaseWriter final : public CaseWriter {
 public:
  StoredCaseWriter(std::unique_ptr<DuckDbCopy> copy, std::string path, const Dictionary& dictionary,
                   std::vector<std::string> losses)
      : copy_(std::move(copy)),
        path_(std::move(path)),
        dictionary_(dictionary),
        layout_(dictionary_),
        losses_(std::move(losses)) {
    for (const Variable& variable : dictionary_.variables()) types_.push_back(typeOf(variable));
  }

  std::vector<std::string> warnings() const override { return losses_; }
  void append(const OBS* cases, std::size_t count, std::size_t caseSlots) override {
    for (std::size_t index = 0; index < count; ++index, cases += caseSlots) writeCase(cases);
  }
  void complete() override { copy_->complete(); }
  void commit() override { copy_->commit(); }

 private:
  void writeCase(const OBS* values) {
    for (std::size_t column = 0; column < types_.size(); ++column) {
      const OBS* const value = values + layout_.slotOfVariable[column];
      if (types_[column] == DUCKDB_TYPE_VARCHAR) {
        const auto width = static_cast<std::size_t>(variableOf(column).width);
        writeText(column, text::withoutTrailingBlanks({value->text, width}));
      } else if (value->number == systemMissing) {
        copy_->setMissing(column);
      } else {
        writeNumber(column, value->number);
      }
    }
    copy_->endRow();
    ++casesWritten_;
  }

  void writeText(std::size_t column, std::string_view value) {
    if (value.empty()) {
      copy_->setMissing(column);
      return;
    }
    if (const char* const why = problemOfText(value)) refuse(column, why);
    copy_->setText(column, value);
  }

  void writeNumber(std::size_t column, double value) {
    if (!realValue(value)) refuse(column, noFiniteNumber);
    switch (types_[column]) {
      case DUCKDB_TYPE_DATE: {
        const std::optional<std::int32_t> days = daysOf(value);
        if (!days) {
          refuse(column,
                 "In case ^1 the value of \"^2\" is ^3, which is no day of the calendar, so it cannot be written; "
                 "correct the value.",
                 fmt::to_string(value));
        }
        copy_->setValue(column, *days);
        return;
      }
      case DUCKDB_TYPE_TIME:
      case DUCKDB_TYPE_TIMESTAMP: {
        const std::optional<std::int64_t> microseconds = microsecondsOf(value);
        const bool isTimeOfDay = microseconds && timeValue(*microseconds);
        if (!microseconds || (types_[column] == DUCKDB_TYPE_TIME && !isTimeOfDay)) {
          refuse(column,
                 "In case ^1 the value of \"^2\" is ^3, which is no date or time in whole microseconds, so it cannot "
                 "be written; correct the value.",
                 fmt::to_string(value));
        }
        copy_->setValue(column, *microseconds);
        return;
      }
      default:
        copy_->setValue(column, value);
    }
  }

  const Variable& variableOf(std::size_t column) const { return dictionary_.at(static_cast<std::int32_t>(column)); }

  [[noreturn]] void refuse(std::size_t column, std::string_view why, std::string_view value = {}) const {
    refuseValue(path_, casesWritten_ + 1, variableOf(column), why, value);
  }

  std::unique_ptr<DuckDbCopy> copy_;
  std::string path_;
  Dictionary dictionary_;
  CaseLayout layout_;
  std::vector<std::string> losses_;
  std::vector<duckdb_type> types_;  // of the columns
  std::uint64_t casesWritten_ = 0;
};

}  // namespace

Outcome<std::unique_ptr<CaseWriter>> createParquetFile(const std::string& path, const Dictionary& dictionary,
                                                       const Secret& password) {
  WritableDictionary written = writablePartOf(dictionary);
  const Outcome<std::string> resource =
      resourceText(std::filesystem::path(plainName(path)).stem().string(), written.dictionary);
  if (!resource) {
    Problem problem = resource.problem();
    problem.where = path;
    return problem;
  }
  const std::string options =
      fmt::format("FORMAT parquet, COMPRESSION zstd, KV_METADATA {{{}: {}}}", sqlText(resourceKey), sqlText(*resource));
  Outcome<std::unique_ptr<DuckDbCopy>> copy =
      DuckDbCopy::start(path, Packing::none, columnsOf(dictionary), options, password);
  if (!copy) return copy.problem();
  return std::unique_ptr<CaseWriter>(
      std::make_unique<StoredCaseWriter>(std::move(*copy), path, dictionary, std::move(written.losses)));
}

}  // namespace workbench::data
