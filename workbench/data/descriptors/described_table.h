// DescribedTable: what a descriptor says of one table, checked and ready to be held against the table's file.
//
// What a descriptor leaves open is inferred from the cells, so every field says what it declares.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "workbench/data/cells/cell_reading.h"
#include "workbench/data/dictionary.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/table_dialect.h"

namespace workbench::data {

// The values that a field is restricted to; as numbers or as texts, as its type is, these without blanks at their end.
// Missing values that stay in the data stand among them, but for ranges: what lies in one is allowed as well.
struct Categories {
  std::vector<double> numbers;
  std::vector<std::string> texts;
};

struct DescribedField {
  // Its name and all that is declared of it. What is not declared stands at the default of its type, print format,
  // string width, display width and alignment excepted; a string of unknown width has the width 1.
  Variable variable;
  CellReading reading;
  std::optional<std::int32_t> width;  // of a string, in bytes
  std::optional<PrintFormat> format;
  std::optional<std::int32_t> displayWidth;
  std::optional<VRIX_Variable_Enumerations::Alignment> alignment;
  std::optional<Categories> categories;
};

// How fields and columns belong together: by order, or by name with one side allowed to have more.
enum class FieldsMatch : std::uint8_t {
  exact,     // the same ones in the same order
  equal,     // the same ones in any order
  subset,    // the file has all fields and may have more columns
  superset,  // the file has only columns that are fields, and may lack some
  partial,   // at least one is common
};

struct DescribedTable {
  std::string descriptorPath;          // the descriptor's file, as shown to people
  std::vector<std::string> dataPaths;  // the files that hold the table, one below the other
  std::optional<FileKind> kind;        // where the descriptor says so; else as the names end
  std::optional<Packing> packing;      // likewise, whatever its kind is
  std::optional<std::int64_t> bytes;   // size of the only file, where it is told
  TableDialect dialect;
  FieldsMatch fieldsMatch = FieldsMatch::exact;
  std::vector<DescribedField> fields;  // empty: everything is to be inferred

  // Of the dataset.
  DatasourceAttributes attributes;
  std::string filter;  // a field's name; empty: none
  std::string weight;
  std::vector<std::string> split;

  std::vector<std::string> warnings;  // what could not be taken over, sentences
};

}  // namespace workbench::data
