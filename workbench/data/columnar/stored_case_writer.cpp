#include "workbench/data/columnar/stored_case_writer.h"

#include <fmt/format.h>

#include <utility>
#include <vector>

#include "workbench/data/cells/system_missing.h"
#include "workbench/data/columnar/stored_values.h"
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

class StoredCaseWriter final : public CaseWriter {
 public:
  StoredCaseWriter(std::unique_ptr<StoredOutput> output, std::string path, const Dictionary& dictionary,
                   std::vector<std::string> losses)
      : output_(std::move(output)),
        rows_(output_->rows()),
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
  void complete() override { output_->complete(); }
  void commit() override { output_->commit(); }

 private:
  void writeCase(const OBS* values) {
    for (std::size_t column = 0; column < types_.size(); ++column) {
      const OBS* const value = values + layout_.slotOfVariable[column];
      if (types_[column] == DUCKDB_TYPE_VARCHAR) {
        const auto width = static_cast<std::size_t>(variableOf(column).width);
        writeText(column, text::withoutTrailingBlanks({value->text, width}));
      } else if (value->number == systemMissing) {
        rows_.setMissing(column);
      } else {
        writeNumber(column, value->number);
      }
    }
    rows_.endRow();
    ++casesWritten_;
  }

  void writeText(std::size_t column, std::string_view value) {
    if (value.empty()) {
      rows_.setMissing(column);
      return;
    }
    if (const char* const why = problemOfText(value)) refuse(column, why);
    rows_.setText(column, value);
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
        rows_.setValue(column, *days);
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
        rows_.setValue(column, *microseconds);
        return;
      }
      default:
        rows_.setValue(column, value);
    }
  }

  const Variable& variableOf(std::size_t column) const { return dictionary_.at(static_cast<std::int32_t>(column)); }

  [[noreturn]] void refuse(std::size_t column, std::string_view why, std::string_view value = {}) const {
    refuseValue(path_, casesWritten_ + 1, variableOf(column), why, value);
  }

  std::unique_ptr<StoredOutput> output_;
  DuckDbFeed& rows_;
  std::string path_;
  Dictionary dictionary_;
  CaseLayout layout_;
  std::vector<std::string> losses_;
  std::vector<duckdb_type> types_;  // of the columns
  std::uint64_t casesWritten_ = 0;
};

}  // namespace

std::vector<DuckDbColumn> storedColumnsOf(const Dictionary& dictionary) {
  std::vector<DuckDbColumn> columns;
  for (const Variable& variable : dictionary.variables()) columns.push_back({variable.name, typeOf(variable)});
  return columns;
}

std::unique_ptr<CaseWriter> storedCaseWriter(std::unique_ptr<StoredOutput> output, const std::string& path,
                                             const Dictionary& dictionary, std::vector<std::string> losses) {
  return std::make_unique<StoredCaseWriter>(std::move(output), path, dictionary, std::move(losses));
}

}  // namespace workbench::data
