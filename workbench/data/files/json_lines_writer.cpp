#include "workbench/data/files/json_lines_writer.h"

#include <fmt/format.h>

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/data/cells/system_missing.h"
#include "workbench/data/files/packed_text_file.h"
#include "workbench/data/files/written_value.h"

namespace workbench::data {
namespace {

void appendQuoted(std::string& line, std::string_view text) {
  line += '"';
  for (const char character : text) {
    if (character == '"' || character == '\\') {
      line += '\\';
      line += character;
    } else if (static_cast<unsigned char>(character) < ' ') {
      fmt::format_to(std::back_inserter(line), "\\u{:04x}", static_cast<unsigned>(character));
    } else {
      line += character;
    }
  }
  line += '"';
}

class JsonLinesWriter final : public CaseWriter {
 public:
  JsonLinesWriter(std::unique_ptr<PackedTextFile> file, const Dictionary& dictionary)
      : file_(std::move(file)), dictionary_(dictionary), layout_(dictionary_) {
    for (const Variable& variable : dictionary_.variables()) {
      std::string& before = beforeValue_.emplace_back(beforeValue_.empty() ? "{" : ",");
      appendQuoted(before, variable.name);
      before += ':';
    }
  }

  void append(const OBS* cases, std::size_t count, std::size_t caseSlots) override {
    for (std::size_t index = 0; index < count; ++index, cases += caseSlots) writeCase(cases);
  }
  void complete() override { file_->complete(); }
  void commit() override { file_->commit(); }

 private:
  void writeCase(const OBS* values) {
    ++caseNumber_;
    line_.clear();
    for (std::size_t column = 0; column < beforeValue_.size(); ++column) {
      line_ += beforeValue_[column];
      const Variable& variable = dictionary_.at(static_cast<std::int32_t>(column));
      const OBS* const value = values + layout_.slotOfVariable[column];
      if (variable.isNumeric()) {
        appendNumber(variable, value->number);
      } else {
        appendText(characterText(variable, value, file_->path(), caseNumber_));
      }
    }
    line_ += "}\n";
    file_->append(line_);
  }

  void appendNumber(const Variable& variable, double value) {
    if (value == systemMissing) {
      line_ += "null";
      return;
    }
    const std::string text = numberText(variable, value, file_->path(), caseNumber_);
    if (isMoment(variable)) {
      appendQuoted(line_, text);
    } else {
      line_ += text;
    }
  }

  void appendText(std::string_view text) {
    if (text.empty()) {
      line_ += "null";
    } else {
      appendQuoted(line_, text);
    }
  }

  std::unique_ptr<PackedTextFile> file_;
  Dictionary dictionary_;
  CaseLayout layout_;
  std::vector<std::string> beforeValue_;  // what stands before each variable's value: "{" or ",", its name, ":"
  std::string line_;
  std::uint64_t caseNumber_ = 0;
};

}  // namespace

Outcome<std::unique_ptr<CaseWriter>> createJsonLinesFile(const std::string& path, Packing packing,
                                                         const Dictionary& dictionary, const Secret& password) {
  if (auto problem = whyNotWrittenAsText(path, dictionary)) return *std::move(problem);
  Outcome<std::unique_ptr<PackedTextFile>> file = PackedTextFile::create(path, packing, password);
  if (!file) return file.problem();
  return std::unique_ptr<CaseWriter>(std::make_unique<JsonLinesWriter>(std::move(*file), dictionary));
}

}  // namespace workbench::data
