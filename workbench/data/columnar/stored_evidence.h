// StoredEvidence: what the values of a stored column are, gathered while they pass by.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "workbench/data/columnar/number_shape.h"
#include "workbench/data/columnar/stored_column.h"
#include "workbench/data/columnar/vector_cells.h"
#include "workbench/data/files/column_evidence.h"

namespace workbench::data {

class StoredEvidence {
 public:
  // The column outlives the evidence.
  explicit StoredEvidence(const StoredColumn& column) : column_(column) {}

  // The next values of the column.
  void add(const VectorCells& cells, std::size_t rows);

  // All of them, as if they had stood in a text file, a row being a line.
  ColumnEvidence evidence() const;
  // Whether each value was there and greater than the one before: as a number, or by the bytes of its text without the
  // blanks at its end.
  bool rises() const { return rises_; }

 private:
  template <class Value, class ValueOf, class AreUsual>
  void addNumbers(CellKind kind, const VectorCells& cells, std::size_t rows, ValueOf valueOf, AreUsual areUsual);
  template <class Value, class ValueOf>
  void addOneByOne(CellKind kind, const Value* values, std::size_t first, std::size_t count, ValueOf valueOf);
  template <class ValueOf>
  void addMoments(CellKind kind, const VectorCells& cells, std::size_t rows, ValueOf valueOf);
  void addTexts(const VectorCells& cells, std::size_t rows);
  void addTextsOneByOne(const VectorCells& cells, std::size_t first, std::size_t count);
  void addLengths(const VectorCells& cells, std::size_t first, std::size_t count);
  void addCellTexts(const VectorCells& cells, std::size_t rows);
  static std::string textOf(CellKind kind, double value);
  void noteFirst(ColumnEvidence::Summary& of, std::size_t row, const std::string& text) const;
  void follow(double value);

  const StoredColumn& column_;
  ColumnEvidence::Summary values_;  // those that cases hold as what the column is
  ColumnEvidence::Summary others_;  // those that they do not, such as numbers beyond 2^53
  std::uint64_t empty_ = 0;
  NumberShape shape_;
  ColumnEvidence ofCellTexts_;
  std::uint64_t rowsBefore_ = 0;
  bool rises_ = true;
  std::optional<double> lastNumber_;
  std::string lastText_;
};

}  // namespace workbench::data
