// What every reader checks of a file of a table: it is the file that was scanned, and nothing of it was lost.
//
// All throw ErrorText.
#pragma once

#include <cstdint>

#include "workbench/data/files/csv_table.h"
#include "workbench/data/files/input_file.h"

namespace workbench::data {

InputFile openPartFile(const CsvPart& part);
void checkPartUnchanged(const CsvPart& part, const InputFile& file);
// Once all of it was read: as many cases and bytes of text as the scan has found.
void checkWhole(const CsvPart& part, std::uint64_t casesRead, std::uint64_t bytesRead);

}  // namespace workbench::data
