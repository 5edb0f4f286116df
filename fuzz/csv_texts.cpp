// Any text in any dialect is scanned to its end or refused; in batches just as field by field; by the scanner that is
// for plain dialects just as by the one that is for all.
#include "fuzz/fuzzed_input.h"
#include "tests/data/files/scanner_fixture.h"
#include "workbench/data/files/csv_scanner.h"
#include "workbench/data/files/dialect_scanner.h"

namespace workbench::data {
namespace {

using fuzz::FuzzedInput;

TableDialect chosenDialect(FuzzedInput& input) {
  static const std::string delimiters[] = {",", ";", "\t", "|", "||", "a"};
  DialectBuilder how;
  how.delimiter(delimiters[input.choice(6)]);
  if (input.choice(2) == 1) how.quote('\'');
  if (input.choice(4) == 1) how.noQuotes();
  if (input.choice(4) == 1) how.noDoubledQuotes();
  if (input.choice(4) == 1) how.escape('\\');
  if (input.choice(2) == 1) how.noHeader();
  if (input.choice(4) == 1) how.header({1, 2});
  if (input.choice(4) == 1) how.comments("#");
  if (input.choice(4) == 1) how.null("NA");
  if (input.choice(4) == 1) how.skipInitialSpace();
  return how;
}

template <class Scanner, class Records>
std::string found(const TableDialect& dialect, std::string_view text, std::size_t piece, Records records) {
  TextSource source(std::string(text), piece);
  Scanner scanner(source, dialect, "t.csv");
  return records(scanner, !dialect.headerRows.empty(), Lines::shown);
}

template <class Scanner>
std::string checkedRecords(const TableDialect& dialect, std::string_view text, std::size_t piece) {
  const std::string byField = found<Scanner>(dialect, text, text.size() + 1, recordsByField);
  if (found<Scanner>(dialect, text, text.size() + 1, recordsByBatch) != byField) fuzz::fail("batches differ");
  if (found<Scanner>(dialect, text, piece, recordsByBatch) != byField) fuzz::fail("pieces differ");
  return byField;
}

}  // namespace
}  // namespace workbench::data

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace workbench::data;
  workbench::fuzz::FuzzedInput input(data, size);
  const TableDialect dialect = chosenDialect(input);
  const std::size_t piece = 1 + input.choice(100);
  if (contradictionIn(dialect)) return 0;
  const std::string byAnyScanner = checkedRecords<DialectScanner>(dialect, input.rest(), piece);
  if (!isPlain(dialect)) return 0;
  if (checkedRecords<CsvScanner>(dialect, input.rest(), piece) != byAnyScanner)
    workbench::fuzz::fail("scanners differ");
  return 0;
}
