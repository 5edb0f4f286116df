// The columns of a table of PostgreSQL: what their values become, and how these are asked for.
#pragma once

#include <string>
#include <vector>

#include "workbench/data/files/described_columns.h"

namespace workbench::data {

// A column as the server's catalogue has it.
struct PostgresColumn {
  std::string name;
  std::string type;      // for people: "numeric(10,2)"
  std::string baseType;  // by its name: that of the domain, where it is one
  std::string category;  // of the base type, a letter
  std::string comment;
};

KnownColumn knownColumn(const PostgresColumn& column);

// What the next two call the row whose columns they are about.
inline constexpr const char* postgresRow = "whole";

// The column as an expression that gives values whose texts are cells.
std::string fetchedExpression(const PostgresColumn& column);

// A list for ORDER BY that puts rows with these columns as their key into the order in which cases are sorted: numbers
// and times by value, texts by their bytes with blanks at the end left out. Of a server whose texts are UTF-8. A key
// without nulls may be ordered by the index that it has.
enum class KeyNulls { none, first };
std::string orderedBy(const std::vector<PostgresColumn>& key, KeyNulls nulls);

}  // namespace workbench::data
