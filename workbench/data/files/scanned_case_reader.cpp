#include "workbench/data/files/scanned_case_reader.h"

#include <fmt/format.h>

#include <utility>

#include "host/messages.h"
#include "workbench/data/files/encoded_source.h"
#include "workbench/data/files/part_checks.h"

namespace workbench::data {
namespace {

using Step = TableScanner::Step;

// A field as the only cell of a column.
struct OneCell {
  const CsvField& field;
  std::string_view text(std::size_t) const { return field.text; }
  bool isNull(std::size_t) const { return field.isNull; }
};

}  // namespace

ScannedCaseReader::ScannedCaseReader(std::shared_ptr<const CsvTable> table, const VariableSubset& wanted)
    : table_(std::move(table)), decoder_(*table_, wanted) {
  openPart();
}

void ScannedCaseReader::openPart() {
  open_ = std::make_unique<OpenPart>(OpenPart{openPartFile(part()), nullptr, nullptr});
  checkUnchanged();
  const TableDialect& dialect = part().evidence->dialect;
  Outcome<std::unique_ptr<ByteSource>> source =
      asUtf8(openByteSource(open_->file, table_->kind.packing), dialect.encoding);
  if (!source) throw ErrorText(source.problem().text());
  open_->source = std::move(*source);
  open_->scanner = openScanner(*open_->source, dialect, part().path);
  std::vector<std::string> names;
  if (!dialect.headerRows.empty() && open_->scanner->readHeader(names) != Step::field) endPart();
}

void ScannedCaseReader::fill(CaseBlock& block) {
  std::size_t filled = 0;
  while (filled < block.capacity() && open_ != nullptr) {
    if (!readCase(block.at(filled), block.caseSlots())) continue;
    decoder_.fillUnfed(block.at(filled), 1, block.caseSlots());
    ++filled;
    ++casesOfPart_;
  }
  if (open_ != nullptr) checkUnchanged();
  block.setCases(filled);
}

// False when the part has ended; the next one is then open, if there is one.
bool ScannedCaseReader::readCase(OBS* values, std::size_t caseSlots) {
  CsvField field;
  std::size_t column = 0;
  do {
    if (open_->scanner->next(field) != Step::field) {
      endPart();
      return false;
    }
    if (!decoder_.decode(column, OneCell{field}, 1, values, caseSlots)) continue;
    checkUnchanged();
    throw ErrorText(decoder_.refusal(column, field.text, fmt::format("{}, line {}", part().path, field.line)).text());
  } while (++column != table_->columns.size());
  return true;
}

// At the end of a part, or where it is not sound any more.
void ScannedCaseReader::endPart() {
  checkUnchanged();
  checkWhole(part(), casesOfPart_, decoder_.bytesRead() - bytesBeforePart_);
  open_.reset();
  casesOfPart_ = 0;
  bytesBeforePart_ = decoder_.bytesRead();
  if (++partIndex_ != table_->parts.size()) openPart();
}

void ScannedCaseReader::checkUnchanged() const { checkPartUnchanged(part(), open_->file); }

}  // namespace workbench::data
