#include "workbench/data/files/csv_case_writer.h"

#include <fmt/format.h>
#include <unicode/utf8.h>

#include <cmath>
#include <optional>
#include <utility>

#include "host/messages.h"
#include "workbench/data/cells/calendar_text.h"
#include "workbench/data/cells/decimal_text.h"
#include "workbench/data/cells/system_missing.h"
#include "workbench/data/files/column_evidence.h"
#include "workbench/text/string_comparison.h"

namespace workbench::data {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isUtf8(std::string_view text) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  for (std::size_t next = 0; next < text.size();) {
    UChar32 character = 0;
    U8_NEXT(bytes, next, text.size(), character);
    if (character < 0) return false;
  }
  return true;
}

bool looksLikeNoText(std::string_view text) {
  ColumnEvidence evidence;
  evidence.add(text, 1);
  return evidence.count(CellKind::text) == 0;
}

class CsvCaseWriter final : public CaseWriter {
 public:
  CsvCaseWriter(std::unique_ptr<ByteSink> sink, std::string path, char delimiter, const Dictionary& dictionary)
      : sink_(std::move(sink)),
        path_(std::move(path)),
        delimiter_(delimiter),
        special_(fmt::format("{}\"\r\n", delimiter)),
        dictionary_(dictionary),
        layout_(dictionary_) {
    writeHeader();
  }

  void append(const OBS* cases, std::size_t count, std::size_t caseSlots) override {
    for (std::size_t index = 0; index < count; ++index, cases += caseSlots) writeCase(cases);
  }

  void complete() override {
    flush();
    sink_->complete();
  }

  void commit() override { sink_->commit(); }

 private:
  void writeHeader() {
    for (std::int32_t index = 0; index < dictionary_.size(); ++index) {
      if (index != 0) text_ += delimiter_;
      const std::string& name = dictionary_.at(index).name;
      if (name.find('\0') != std::string::npos || !isUtf8(name)) {
        throw ErrorText(fmt::format("{}: The name of variable {} cannot be written as text.", path_, index + 1));
      }
      // Unquoted at the very start of the file a mark would be taken for the file's own.
      writeText(name, name.empty() || name.starts_with(byteOrderMark));
    }
    text_ += '\n';
  }

  void writeCase(const OBS* values) {
    constexpr std::size_t flushBytes = std::size_t{1} << 18;
    const std::size_t start = text_.size();
    for (std::int32_t index = 0; index < dictionary_.size(); ++index) {
      if (index != 0) text_ += delimiter_;
      const Variable& variable = dictionary_.at(index);
      const OBS* value = values + layout_.slotOfVariable[static_cast<std::size_t>(index)];
      if (variable.isNumeric()) {
        writeNumber(variable, value->number);
      } else {
        writeString(variable, {value->text, static_cast<std::size_t>(variable.width)});
      }
    }
    if (text_.size() == start) text_ += "\"\"";  // a line without a character would be no case for some readers
    text_ += '\n';
    ++casesWritten_;
    if (text_.size() >= flushBytes) flush();
  }

  void writeNumber(const Variable& variable, double value) {
    if (value == systemMissing) return;
    if (!std::isfinite(value)) refuse(variable, "is no finite number");
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
      default:
        text = decimalText(value);
    }
    if (!text) refuse(variable, fmt::format("is {}, which its print format cannot show as a date or time", value));
    text_ += *text;
  }

  void writeString(const Variable& variable, std::string_view value) {
    value = text::withoutTrailingBlanks(value);
    if (value.empty()) return;
    if (value.find('\0') != std::string_view::npos) refuse(variable, "holds a NUL byte");
    if (!isUtf8(value)) refuse(variable, "is no UTF-8");
    writeText(value, looksLikeNoText(value));
  }

  void writeText(std::string_view text, bool inQuotes) {
    if (!inQuotes && text.find_first_of(special_) == std::string_view::npos) {
      text_ += text;
      return;
    }
    text_ += '"';
    for (const char character : text) {
      text_ += character;
      if (character == '"') text_ += '"';
    }
    text_ += '"';
  }

  [[noreturn]] void refuse(const Variable& variable, std::string_view why) const {
    throw ErrorText(fmt::format("{}: In case {} the value of \"{}\" {}, so it cannot be written; correct the value.",
                                path_, casesWritten_ + 1, variable.name, why));
  }

  void flush() {
    sink_->write(text_);
    text_.clear();
  }

  std::unique_ptr<ByteSink> sink_;
  std::string path_;
  char delimiter_;
  std::string special_;  // characters that only quotes hold together
  Dictionary dictionary_;
  CaseLayout layout_;
  std::string text_;
  std::uint64_t casesWritten_ = 0;
};

}  // namespace

Outcome<std::unique_ptr<CaseWriter>> createCsvFile(const std::string& path, const FileKind& kind,
                                                   const Dictionary& dictionary) {
  if (dictionary.size() == 0)
    return Problem{"A dataset without variables cannot be written as text.", path,
                   "Save one that has a variable, or none."};
  Outcome<std::unique_ptr<ByteSink>> sink = ByteSink::create(path, kind.packing);
  if (!sink) return sink.problem();
  return std::unique_ptr<CaseWriter>(
      std::make_unique<CsvCaseWriter>(std::move(*sink), path, kind.delimiter, dictionary));
}

}  // namespace workbench::data
