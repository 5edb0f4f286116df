#include "workbench/data/files/scanned_case_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "host/messages.h"
#include "workbench/data/files/encoded_source.h"
#include "workbench/data/files/part_checks.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

using Step = TableScanner::Step;

}  // namespace

ScannedCaseReader::ScannedCaseReader(std::shared_ptr<const CsvTable> table, const VariableSubset& wanted)
    : table_(std::move(table)), decoder_(*table_, wanted) {
  openPart();
}

void ScannedCaseReader::openPart() {
  open_ = std::make_unique<OpenPart>(OpenPart{openPartFile(part()), nullptr, nullptr});
  checkUnchanged();
  const TableDialect dialect = dialectForReading(*part().evidence);
  Outcome<std::unique_ptr<ByteSource>> source =
      asUtf8(openByteSource(open_->file, table_->kind.packing), dialect.encoding);
  if (!source) throw ErrorText(source.problem().text());
  open_->source = std::move(*source);
  open_->scanner = openScanner(*open_->source, dialect, part().path);
  std::vector<std::string> names;
  if (!dialect.headerRows.empty() && open_->scanner->readHeader(names) != Step::taken) endPart();
}

void ScannedCaseReader::fill(CaseBlock& block) {
  std::size_t filled = 0;
  while (filled < block.capacity() && open_ != nullptr) {
    if (record_ == records_.records() && !nextRecords()) continue;
    const std::size_t count = std::min(block.capacity() - filled, records_.records() - record_);
    decode(block.at(filled), block.caseSlots(), count);
    record_ += count;
    filled += count;
    casesOfPart_ += count;
  }
  if (open_ != nullptr) checkUnchanged();
  block.setCases(filled);
}

// False when the part has ended; the next one is then open, if there is one.
bool ScannedCaseReader::nextRecords() {
  record_ = 0;
  const bool isTaken = open_->scanner->nextRecords(records_) == Step::taken;
  if (isTaken && records_.columns() == table_->columns.size()) {
    bytesOfPart_ += records_.bytes();
    return true;
  }
  records_.clear();
  endPart();
  return false;
}

void ScannedCaseReader::decode(OBS* cases, std::size_t caseSlots, std::size_t count) {
  for (std::size_t column = 0; column < records_.columns(); ++column) {
    const ColumnCells cells = records_.column(column, record_);
    const std::optional<std::size_t> refused = decoder_.decode(column, cells, count, cases, caseSlots);
    if (!refused) continue;
    checkUnchanged();
    const std::uint64_t line = records_.lineOf(record_ + *refused, column);
    throw ErrorText(
        decoder_
            .refusal(column, cells.text(*refused), text::sentence("^1, line ^2", {part().path, fmt::to_string(line)}))
            .text());
  }
  decoder_.fillUnfed(cases, count, caseSlots);
}

// At the end of a part, or where it is not sound any more.
void ScannedCaseReader::endPart() {
  checkUnchanged();
  checkWhole(part(), casesOfPart_, bytesOfPart_);
  open_.reset();
  casesOfPart_ = 0;
  bytesOfPart_ = 0;
  if (++partIndex_ != table_->parts.size()) openPart();
}

void ScannedCaseReader::checkUnchanged() const { checkPartUnchanged(part(), open_->file); }

}  // namespace workbench::data
