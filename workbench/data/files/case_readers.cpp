#include "workbench/data/files/case_readers.h"

#include <utility>

#include "workbench/data/files/csv_case_reader.h"
#include "workbench/data/files/csv_scanner.h"
#include "workbench/data/files/encoded_source.h"
#include "workbench/data/files/scanned_case_reader.h"

namespace workbench::data {

bool isForDuckDb(const TableDialect& dialect) { return isPlain(dialect) && isUtf8(dialect.encoding); }

bool isReadByDuckDb(const TableDialect& dialect, Packing packing) {
  return packing != Packing::none && isForDuckDb(dialect);
}

std::unique_ptr<CaseReader> openCaseReader(std::shared_ptr<const CsvTable> table, const VariableSubset& wanted) {
  if (isReadByDuckDb(table->dialect(), table->kind.packing)) {
    return std::make_unique<CsvCaseReader>(std::move(table), wanted);
  }
  return std::make_unique<ScannedCaseReader>(std::move(table), wanted);
}

}  // namespace workbench::data
