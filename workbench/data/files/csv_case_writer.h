// CsvCaseWriter: writes a dataset as a CSV file that reads back as the same cases.
//
// Numbers are written in their shortest form that reads as the same double, system-missing values as empty fields,
// dates and times by their print format as ISO 8601, texts without the blanks at their end. A text that looks like
// anything else stands in quotes: for readers that go by them (our own reading does not: there a quoted number is a
// number, and only a declared type makes it a text).
//
// The fields are written here and not by DuckDB: its COPY takes rows out of tables of its own, so that every case would
// be copied twice more, and it writes doubles in a form of its own.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "workbench/data/case_reader.h"
#include "workbench/data/files/byte_sink.h"
#include "workbench/data/files/file_kind.h"

namespace workbench::data {

Outcome<std::unique_ptr<CaseWriter>> createCsvFile(const std::string& path, const FileKind& kind,
                                                   const Dictionary& dictionary);

}  // namespace workbench::data
