#include "workbench/data/files/csv_case_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/messages.h"
#include "workbench/data/cells/calendar_text.h"
#include "workbench/data/cells/decimal_text.h"
#include "workbench/data/cells/system_missing.h"

namespace workbench::data {
namespace {

InputFile openOrThrow(const std::string& path) {
  Outcome<InputFile> file = InputFile::open(path);
  if (!file) throw ErrorText(file.problem().text());
  return std::move(*file);
}

std::string_view nameOf(Packing packing) {
  switch (packing) {
    case Packing::gzip:
      return "gzip";
    case Packing::zstd:
      return "zstd";
    case Packing::none:
      break;
  }
  return "none";
}

// How lines end, as options. DuckDB finds no line in a file of CR LF unless it may be lenient; what it would overlook
// then, the scan has refused.
std::string_view lineEndOptions(std::string_view lineEnd) {
  if (lineEnd == "\r\n") return "strict_mode = false, new_line = '\\r\\n'";
  if (lineEnd == "\r") return "strict_mode = true, new_line = '\\r'";
  return "strict_mode = true, new_line = '\\n'";
}

// Nothing is left to be guessed: DuckDB is told all that the scan knows. It reads on one thread, in which no line can
// be taken apart at the wrong place; the threads that decode are ours.
std::string csvQuery(const std::string& path, const CsvTable& table) {
  constexpr std::uint64_t leastLineBytes = 2'000'000;
  constexpr std::uint64_t leastBufferBytes = 8'000'000;
  const std::uint64_t lineBytes = std::max(leastLineBytes, table.evidence->longestRecord + 1);
  std::string columns;
  for (std::size_t column = 0; column < table.evidence->header.size(); ++column) {
    fmt::format_to(std::back_inserter(columns), "{}c{}: 'VARCHAR'", column == 0 ? "" : ", ", column);
  }
  return fmt::format(
      "FROM read_csv({}, auto_detect = false, header = false, delim = {}, quote = '\"', escape = '\"', comment = '', "
      "null_padding = false, ignore_errors = false, nullstr = '', parallel = false, "
      "compression = '{}', max_line_size = {}, buffer_size = {}, columns = {{{}}}, {})",
      sqlText(path), sqlText(std::string_view(&table.kind.delimiter, 1)), nameOf(table.kind.packing), lineBytes,
      std::max(leastBufferBytes, lineBytes * 2), columns, lineEndOptions(table.evidence->lineEnd));
}

std::unique_ptr<DuckDbQuery> startOrThrow(const InputFile& file, const CsvTable& table) {
  Outcome<std::unique_ptr<DuckDbQuery>> query = DuckDbQuery::start(csvQuery(file.descriptorPath(), table));
  if (query) return std::move(*query);
  Problem problem = query.problem();
  problem.where = table.path;
  throw ErrorText(problem.text());
}

// The value of a filled cell of a numeric variable; nothing when it is none of that kind.
std::optional<double> numericValue(std::string_view cell, FormatType type) {
  const auto valueIn = [](const std::optional<CalendarValue>& read) {
    return read ? std::optional(read->value) : std::nullopt;
  };
  switch (type) {
    case FormatType::date:
      return valueIn(dateOf(cell));
    case FormatType::time:
      return valueIn(timeOf(cell));
    case FormatType::dateTime:
      return valueIn(dateTimeOf(cell));
    default: {
      if (ShortDecimal number; readShortDecimal(cell, number)) return number.value();
      const std::optional<Decimal> number = decimalOf(cell);
      return number ? valueOf(*number) : std::nullopt;
    }
  }
}

}  // namespace

CsvCaseReader::CsvCaseReader(std::shared_ptr<const CsvTable> table)
    : table_(std::move(table)), file_(openOrThrow(table_->path)) {
  checkUnchanged();
  query_ = startOrThrow(file_, *table_);
}

std::optional<std::int64_t> CsvCaseReader::caseCount() const {
  return static_cast<std::int64_t>(table_->evidence->cases);
}

void CsvCaseReader::fill(CaseBlock& block) {
  std::size_t filled = 0;
  while (filled < block.capacity()) {
    if (row_ == query_->rows() && !nextChunk()) break;
    const std::size_t rows = std::min(block.capacity() - filled, query_->rows() - row_);
    decode(block.at(filled), block.caseSlots(), row_, rows);
    row_ += rows;
    filled += rows;
    casesRead_ += rows;
  }
  block.setCases(filled);
}

bool CsvCaseReader::nextChunk() {
  if (ended_) return false;
  row_ = 0;
  const Outcome<bool> isThere = query_->nextChunk();
  checkUnchanged();  // a file that changed may well be the reason of an error
  if (!isThere) {
    Problem problem = isThere.problem();
    problem.where = table_->path;
    throw ErrorText(problem.text());
  }
  if (*isThere) {
    if (!std::exchange(headerIsRead_, true)) skipHeader();
    return row_ != query_->rows() || nextChunk();
  }
  ended_ = true;
  const FileEvidence& evidence = *table_->evidence;
  if (casesRead_ != evidence.cases || bytesRead_ != evidence.textBytes) {
    throw ErrorText(
        fmt::format("{}: {} cases of {} bytes were read, and {} cases of {} bytes stand in the file; please "
                    "report this as a fault of this program.",
                    table_->path, casesRead_, bytesRead_, evidence.cases, evidence.textBytes));
  }
  return false;
}

// The first line comes as a row like the others.
void CsvCaseReader::skipHeader() {
  for (std::size_t column = 0; column < query_->columns(); ++column) {
    if (query_->column(column)[0] == table_->evidence->header[column]) continue;
    throw ErrorText(fmt::format(
        "{}: The first line was read in two ways; please report this as a fault of this program.", table_->path));
  }
  row_ = 1;
}

void CsvCaseReader::decode(OBS* cases, std::size_t caseSlots, std::size_t firstRow, std::size_t rows) {
  for (std::size_t column = 0; column < query_->columns(); ++column) {
    OBS* const values = cases + table_->layout.slotOfVariable[column];
    if (table_->dictionary.at(static_cast<std::int32_t>(column)).isNumeric()) {
      decodeNumbers(column, values, caseSlots, firstRow, rows);
    } else {
      decodeTexts(column, values, caseSlots, firstRow, rows);
    }
  }
}

void CsvCaseReader::decodeNumbers(std::size_t column, OBS* values, std::size_t caseSlots, std::size_t firstRow,
                                  std::size_t rows) {
  const FormatType type = table_->dictionary.at(static_cast<std::int32_t>(column)).format.type;
  const DuckDbQuery::Column cells = query_->column(column);
  for (std::size_t row = 0; row < rows; ++row, values += caseSlots) {
    const std::string_view cell = cells[firstRow + row];
    if (cell.empty()) {
      values->number = systemMissing;
      continue;
    }
    const std::optional<double> value = numericValue(cell, type);
    if (!value) refuseCell(column, row, cell, "is not of the type that its column has");
    values->number = *value;
    bytesRead_ += cell.size();
  }
}

void CsvCaseReader::decodeTexts(std::size_t column, OBS* values, std::size_t caseSlots, std::size_t firstRow,
                                std::size_t rows) {
  const Variable& variable = table_->dictionary.at(static_cast<std::int32_t>(column));
  const auto width = static_cast<std::size_t>(variable.width);
  const std::size_t slotBytes = variable.slots() * sizeof(OBS);
  const DuckDbQuery::Column cells = query_->column(column);
  for (std::size_t row = 0; row < rows; ++row, values += caseSlots) {
    const std::string_view cell = cells[firstRow + row];
    if (cell.size() > width) refuseCell(column, row, cell, "is longer than its column is wide");
    std::memcpy(values->text, cell.data(), cell.size());
    std::memset(values->text + cell.size(), ' ', slotBytes - cell.size());
    bytesRead_ += cell.size();
  }
}

void CsvCaseReader::checkUnchanged() const {
  if (file_.identity() == table_->evidence->identity) return;
  throw ErrorText(fmt::format("{}: The file has changed since it was opened; open it again.", table_->path));
}

void CsvCaseReader::refuseCell(std::size_t column, std::size_t row, std::string_view cell, std::string_view why) const {
  constexpr std::size_t longestShown = 40;
  throw ErrorText(fmt::format("{}: In case {}, column \"{}\", the value \"{}\" {}; correct the value or the type.",
                              table_->path, casesRead_ + row + 1,
                              table_->dictionary.at(static_cast<std::int32_t>(column)).name,
                              cell.substr(0, longestShown), why));
}

}  // namespace workbench::data
