#include "workbench/data/files/csv_case_writer.h"

#include <fmt/format.h>

#include <utility>
#include <vector>

#include "workbench/data/cells/system_missing.h"
#include "workbench/data/files/duckdb_copy.h"
#include "workbench/data/files/duckdb_query.h"
#include "workbench/data/files/written_value.h"

namespace workbench::data {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

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
        writeString(column, variable, value);
      }
    }
    copy_->rows().endRow();
    ++casesWritten_;
  }

  void writeNumber(std::size_t column, const Variable& variable, double value) {
    if (value == systemMissing) {
      writeNothing(column);
    } else {
      copy_->rows().setText(column, numberText(variable, value, path_, casesWritten_ + 1));
    }
  }

  void writeString(std::size_t column, const Variable& variable, const OBS* value) {
    const std::string_view text = characterText(variable, value, path_, casesWritten_ + 1);
    if (text.empty()) {
      writeNothing(column);
    } else {
      copy_->rows().setText(column, text);
    }
  }

  void writeNothing(std::size_t column) {
    if (layout_.slotOfVariable.size() == 1) {
      copy_->rows().setText(column, "");  // in quotes: a line without a character would be no case for some readers
    } else {
      copy_->rows().setMissing(column);
    }
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
  if (auto problem = whyNotWrittenAsText(path, dictionary)) return *std::move(problem);
  Outcome<std::unique_ptr<DuckDbCopy>> copy =
      DuckDbCopy::start(path, kind.packing, columnsOf(dictionary), csvOptions(kind, dictionary), password);
  if (!copy) return copy.problem();
  return std::unique_ptr<CaseWriter>(std::make_unique<CsvCaseWriter>(std::move(*copy), path, dictionary));
}

}  // namespace workbench::data
