#include "workbench/data/files/csv_case_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "host/messages.h"
#include "workbench/data/files/part_checks.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// How lines end, as options. DuckDB finds no line in a file of CR LF unless it may be lenient; what it would overlook
// then, the scan has refused.
std::string_view lineEndOptions(std::string_view lineEnd) {
  if (lineEnd == "\r\n") return "strict_mode = false, new_line = '\\r\\n'";
  if (lineEnd == "\r") return "strict_mode = true, new_line = '\\r'";
  return "strict_mode = true, new_line = '\\n'";
}

// Nothing is left to be guessed: DuckDB is told all that the scan knows. It reads on one thread, in which no line can
// be taken apart at the wrong place; the threads that decode are ours.
std::string csvQuery(const std::string& path, const FileEvidence& evidence, Packing packing) {
  constexpr std::uint64_t leastLineBytes = 2'000'000;
  constexpr std::uint64_t leastBufferBytes = 8'000'000;
  const std::uint64_t lineBytes = std::max(leastLineBytes, evidence.longestRecord + 1);
  const std::string quote = sqlText(evidence.dialect.quote ? std::string(1, *evidence.dialect.quote) : "");
  std::string columns;
  for (std::size_t column = 0; column < evidence.header.size(); ++column) {
    fmt::format_to(std::back_inserter(columns), "{}c{}: 'VARCHAR'", column == 0 ? "" : ", ", column);
  }
  return fmt::format(
      "FROM read_csv({}, auto_detect = false, header = false, delim = {}, quote = {}, escape = {}, comment = '', "
      "null_padding = false, ignore_errors = false, nullstr = '', parallel = false, "
      "compression = '{}', max_line_size = {}, buffer_size = {}, columns = {{{}}}, {})",
      sqlText(path), sqlText(*evidence.dialect.delimiter), quote, quote, nameOf(packing), lineBytes,
      std::max(leastBufferBytes, lineBytes * 2), columns, lineEndOptions(evidence.lineEnd));
}

// The cells of a column from a row of the chunk on.
struct ChunkCells {
  static constexpr bool arePadded = false;

  DuckDbQuery::Column column;
  std::size_t firstRow;
  const std::optional<std::string>& nullSequence;

  std::string_view text(std::size_t row) const { return column[firstRow + row]; }
  bool isNull(std::size_t row) const { return nullSequence && *nullSequence == text(row); }
};

}  // namespace

CsvCaseReader::CsvCaseReader(std::shared_ptr<const CsvTable> table, const VariableSubset& wanted)
    : table_(std::move(table)), decoder_(*table_, wanted) {
  openPart();
}

void CsvCaseReader::openPart() {
  open_ = std::make_unique<OpenPart>(OpenPart{openPartFile(part()), nullptr});
  checkPartUnchanged(part(), open_->file);
  Outcome<std::unique_ptr<DuckDbQuery>> query =
      DuckDbQuery::start(csvQuery(open_->file.descriptorPath(), *part().evidence, table_->kind.packing));
  if (!query) {
    Problem problem = query.problem();
    problem.where = part().path;
    throw ErrorText(problem.text());
  }
  open_->query = std::move(*query);
  headerIsRead_ = table_->dialect().headerRows.empty();
  row_ = 0;
}

void CsvCaseReader::fill(CaseBlock& block) {
  std::size_t filled = 0;
  while (filled < block.capacity() && open_ != nullptr) {
    if (row_ == query().rows() && !nextChunk()) continue;
    const std::size_t rows = std::min(block.capacity() - filled, query().rows() - row_);
    decode(block.at(filled), block.caseSlots(), rows);
    row_ += rows;
    filled += rows;
    casesOfPart_ += rows;
  }
  block.setCases(filled);
}

// False when the part has ended; the next one is then open, if there is one.
bool CsvCaseReader::nextChunk() {
  row_ = 0;
  const Outcome<bool> isThere = open_->query->nextChunk();
  checkPartUnchanged(part(), open_->file);  // a file that changed may well be the reason of an error
  if (!isThere) {
    Problem problem = isThere.problem();
    problem.where = part().path;
    throw ErrorText(problem.text());
  }
  if (!*isThere) {
    endPart();
    return false;
  }
  if (!std::exchange(headerIsRead_, true)) skipHeader();
  return row_ != query().rows() || nextChunk();
}

void CsvCaseReader::endPart() {
  checkWhole(part(), casesOfPart_, bytesOfPart_);
  open_.reset();
  casesOfPart_ = 0;
  bytesOfPart_ = 0;
  if (++partIndex_ != table_->parts.size()) openPart();
}

// The first line comes as a row like the others.
void CsvCaseReader::skipHeader() {
  for (std::size_t column = 0; column < query().columns(); ++column) {
    if (query().column(column)[0] == part().evidence->header[column]) continue;
    throw ErrorText(text::sentence(
        "^1: The first line was read in two ways; please report this as a fault of this program.", {part().path}));
  }
  row_ = 1;
}

void CsvCaseReader::decode(OBS* cases, std::size_t caseSlots, std::size_t rows) {
  for (std::size_t column = 0; column < query().columns(); ++column) {
    const ChunkCells cells{query().column(column), row_, table_->dialect().nullSequence};
    for (std::size_t row = 0; row < rows; ++row) bytesOfPart_ += cells.text(row).size();
    const std::optional<std::size_t> refused = decoder_.decode(column, cells, rows, cases, caseSlots);
    if (!refused) continue;
    const std::string where = text::sentence("^1, case ^2", {part().path, fmt::to_string(casesOfPart_ + *refused + 1)});
    throw ErrorText(decoder_.refusal(column, cells.text(*refused), where).text());
  }
  decoder_.fillUnfed(cases, rows, caseSlots);
}

}  // namespace workbench::data
