// StoredSource: a table that DuckDB can read from where it is stored: a column file, a database.
//
// It holds open what it reads from as long as it is there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/data/descriptors/described_table.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class StoredRows;
struct WantedRows;

// What a stored table says of itself.
struct StoredOutline {
  std::vector<std::pair<std::string, std::string>> columns;  // names, and types by DuckDB's names of them
  std::int64_t cases = 0;
};

class StoredSource {
 public:
  virtual ~StoredSource() = default;

  virtual const std::string& path() const = 0;  // as written
  virtual std::string relation() const = 0;     // the table in a FROM clause, valid as long as this object
  virtual Outcome<StoredOutline> outline() const;
  // All rows; each call begins anew.
  virtual Outcome<std::unique_ptr<StoredRows>> rows(const WantedRows& wanted) const;
  // What tells it from every other table and every other state of itself.
  virtual std::string identity() const = 0;
  virtual std::vector<std::string> files() const = 0;  // that it is stored in
  // What describes the table, where something does.
  virtual Outcome<std::optional<DescribedTable>> description() const = 0;
  virtual std::vector<std::string> warnings() const { return {}; }  // sentences
  // What is said of a column where it is stored; empty: nothing.
  virtual std::string commentOn(const std::string& column) const {
    static_cast<void>(column);
    return {};
  }
  // Whether a column of texts has no type of its own: what its texts are is told by them, as in a text file.
  virtual bool isTextOfAnyKind(std::string_view column) const {
    static_cast<void>(column);
    return false;
  }
};

}  // namespace workbench::data
