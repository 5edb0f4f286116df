// DescribedColumns: the columns of a table that says itself of what kinds they are, with what a description stored with
// the table adds.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbench/data/descriptors/described_table.h"
#include "workbench/data/files/column_evidence.h"
#include "workbench/data/files/field_matching.h"
#include "workbench/data/files/type_inference.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// What a table says of a column.
struct KnownColumn {
  std::string name;
  std::string type;                  // for people
  CellKind kind = CellKind::empty;   // of its values; empty: these tell
  std::string warning;               // what a user should know of how it is read; empty: nothing
  std::optional<std::string> label;  // where no description says one
};

class DescribedColumns {
 public:
  // The path is that of the table as written. A problem when the description does not fit the columns.
  static Outcome<DescribedColumns> match(std::string path, std::vector<KnownColumn> columns,
                                         std::optional<DescribedTable> description);

  const std::vector<std::string>& names() const { return names_; }
  std::string descriptorPath() const { return description_ ? description_->descriptorPath : std::string(); }

  // Whether what the description leaves open is nothing that the values tell.
  bool saysAllOfValues() const;
  // The first column whose values are not of the kind that is declared. The evidence is that of the columns.
  std::optional<Problem> problemOf(const std::vector<ColumnEvidence>& evidence) const;
  // Refers to this object and to the evidence.
  ScannedTable scanned(const std::vector<ColumnEvidence>& evidence) const;
  // Of the variables that were inferred, one per column; the warnings of that become this object's.
  Dictionary dictionaryOf(InferredTypes types);
  // Per column the texts that stand for no value in it, the empty one, which is blank anyway, excepted.
  std::vector<std::vector<std::string>> noValueTexts() const;
  const std::vector<std::string>& warnings() const { return warnings_; }

 private:
  DescribedColumns(std::string path, std::vector<KnownColumn> columns);
  const DescribedField* fieldOf(std::size_t column) const;

  std::string path_;
  std::vector<KnownColumn> columns_;
  std::shared_ptr<const DescribedTable> description_;  // null: there is none
  MatchedFields matched_;
  std::vector<std::string> names_;
  std::vector<std::string> warnings_;
};

}  // namespace workbench::data
