#include "workbench/data/files/csv_case_writer.h"

#include <fmt/format.h>

#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "workbench/data/cells/calendar_text.h"
#include "workbench/data/cells/decimal_text.h"
#include "workbench/data/cells/system_missing.h"
#include "workbench/data/files/duckdb_copy.h"
#include "workbench/data/files/duckdb_query.h"
#include "workbench/data/files/refused_value.h"
#include "workbench/text/string_comparison.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// An empty name would not be kept as it is.
std::optional<Problem> problemOfName(const std::string& path, const Dictionary& dictionary) {
  for (std::int32_t index = 0; index < dictionary.size(); ++index) {
    const std::string& name = dictionary.at(index).name;
    if (name.empty() || problemOfText(name) != nullptr) {
      return Problem{text::sentence("The name of variable ^1 cannot be written as text.", {fmt::to_string(index + 1)}),
                     path, ""};
    }
  }
  return std::nullopt;
}

std::vector<DuckDbColumn> columnsOf(const Dictionary& dictionary) {
  std::vector<DuckDbColumn> columns;
  for (const Variable& variable : dictionary.variables()) columns.push_back({variable.name, DUCKDB_TYPE_VARCHAR});
  return columns;
}

// Texts that hold a delimiter, a quote or a line break are quoted by DuckDB, and an empty one, but not a missing one.
std::string csvOptions(const FileKind& kind, const Dictionary& dictionary) {
  std::string options =
      fmt::format("FORMAT csv, HEADER true, DELIMITER {}, QUOTE '\"', ESCAPE '\"', NULLSTR '', COMPRESSION 'none'",
                  sqlText(std::string_view(&kind.delimiter, 1)));
  // Unquoted at the very start of the file a mark would be taken for the file's own.
  const std::string& firstName = dictionary.at(0).name;
  if (firstName.starts_with(byteOrderMark)) options += fmt::format(", FORCE_QUOTE ({})", sqlName(firstName));
  return options;
}

class CsvCaseWriter final : public CaseWriter {
 public:
  CsvCaseWriter(std::unique_ptr<DuckDbCopy> copy, std::string path, const Dictionary& dictionary)
      : copy_(std::move(copy)), path_(std::move(path)), dictionary_(dictionary), layout_(dictionary_) {}

  void append(const OBS* cases, std::size_t count, std::size_t caseSlots) override {
    for (std::size_t index = 0; index < count; ++index, cases += caseSlots) writeCase(cases);
  }

  void complete() override { copy_->complete(); }
  void commit() override { copy_->commit(); }

 private:
  void writeCase(const OBS* values) {
    for (std::size_t column = 0; column < layout_.slotOfVariable.size(); ++column) {
      const Variable& variable = dictionary_.at(static_cast<std::int32_t>(column));
      const OBS* value = values + layout_.slotOfVariable[column];
      if (variable.isNumeric()) {
        writeNumber(column, variable, value->number);
      } else {
        writeString(column, variable, {value->text, static_cast<std::size_t>(variable.width)});
      }
    }
    copy_->endRow();
    ++casesWritten_;
  }

  void writeNumber(std::size_t column, const Variable& variable, double value) {
    if (value == systemMissing) {
      writeNothing(column);
      return;
    }
    if (!std::isfinite(value)) refuse(variable, noFiniteNumber);
    std::optional<std::string> text;
    switch (variable.format.type) {
      case FormatType::date:
        text = dateText(value);
        break;
      case FormatType::time:
        text = timeText(value);
        break;
      case FormatType::dateTime:
        text = dateTimeText(value);
        break;
      case FormatType::duration:
        text = durationText(value);
        break;
      default:
        text = decimalText(value);
    }
    if (!text) {
      refuse(variable,
             "In case ^1 the value of \"^2\" is ^3, which its print format cannot show as a date or time, so it cannot "
             "be written; correct the value.",
             fmt::to_string(value));
    };
    copy_->setText(column, *text);
  }

  void writeString(std::size_t column, const Variable& variable, std::string_view value) {
    value = text::withoutTrailingBlanks(value);
    if (value.empty()) {
      writeNothing(column);
      return;
    }
    if (const char* const why = problemOfText(value)) refuse(variable, why);
    copy_->setText(column, value);
  }

  void writeNothing(std::size_t column) {
    if (layout_.slotOfVariable.size() == 1) {
      copy_->setText(column, "");  // in quotes: a line without a character would be no case for some readers
    } else {
      copy_->setMissing(column);
    }
  }

  [[noreturn]] void refuse(const Variable& variable, std::string_view why, std::string_view value = {}) const {
    refuseValue(path_, casesWritten_ + 1, variable, why, value);
  }

  std::unique_ptr<DuckDbCopy> copy_;
  std::string path_;
  Dictionary dictionary_;
  CaseLayout layout_;
  std::uint64_t casesWritten_ = 0;
};

}  // namespace

Outcome<std::unique_ptr<CaseWriter>> createCsvFile(const std::string& path, const FileKind& kind,
                                                   const Dictionary& dictionary, const Secret& password) {
  if (dictionary.size() == 0)
    return Problem{text::sentence("A dataset without variables cannot be written as text."), path,
                   text::sentence("Save one that has a variable, or none.")};
  if (auto problem = problemOfName(path, dictionary)) return *std::move(problem);
  Outcome<std::unique_ptr<DuckDbCopy>> copy =
      DuckDbCopy::start(path, kind.packing, columnsOf(dictionary), csvOptions(kind, dictionary), password);
  if (!copy) return copy.problem();
  return std::unique_ptr<CaseWriter>(std::make_unique<CsvCaseWriter>(std::move(*copy), path, dictionary));
}

}  // namespace workbench::data
