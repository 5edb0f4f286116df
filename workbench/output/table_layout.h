// A table laid out as a grid: what every renderer for people draws.
//
// The grid is a body of rows and columns, row headers before it, column headers above it, and a corner over the row
// headers with the titles of the row dimensions. A header cell covers as many rows and columns as it has categories
// below it, or levels that it has none on. Dimensions in the layers make one grid per combination of their categories.
//
// Where several dimensions are nested in the rows or in the columns, a combination without any cell is not shown; a
// single dimension is shown with all its categories. A table without any cell has no grid.
//
// Requires: the table outlives its layouts. Invariant: header cells of one grid never overlap and cover it wholly, the
// corner excepted.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "workbench/output/document.h"
#include "workbench/output/text_rendering.h"

namespace workbench::output {

// Row and column count from 0 within the part of the grid in which the header stands.
struct HeaderCell {
  std::string text;
  std::vector<std::int32_t> notes;  // footnotes
  std::int32_t row = 0;
  std::int32_t column = 0;
  std::int32_t rowSpan = 1;
  std::int32_t columnSpan = 1;
  const Text* title = nullptr;  // what the text was made of
};

struct PlacedCell {
  std::int32_t column = 0;
  std::uint32_t cell = 0;  // among the table's cells
};

struct TableLayout {
  const Table* table = nullptr;
  std::string title;
  std::vector<std::string> layers;  // one line per dimension in the layers: "Sex: Male"
  std::string caption;              // may be empty, may have several lines
  std::vector<std::string> footnotes;

  std::int32_t headerRows = 0;     // levels of the column headers; at least 1 when there are titles in the corner
  std::int32_t headerColumns = 0;  // levels of the row headers
  std::int32_t rows = 0;
  std::int32_t columns = 0;
  // Of a table whose rows are cases (its row dimension has the second flag): how many columns at its front stand in
  // groups. They tell which case a row is, and are repeated wherever columns are shown apart from them.
  std::int32_t keyColumns = 0;
  std::vector<HeaderCell> corner;  // these and the next two in the order of rows, then columns
  std::vector<HeaderCell> columnHeaders;
  std::vector<HeaderCell> rowHeaders;

  // The cells of a row, from left to right. Requires: 0 <= row < rows.
  std::span<const PlacedCell> cellsOf(std::int32_t row) const {
    const std::size_t start = rowStarts[static_cast<std::size_t>(row)];
    return std::span(placedCells).subspan(start, rowStarts[static_cast<std::size_t>(row) + 1] - start);
  }

  std::vector<PlacedCell> placedCells;
  std::vector<std::size_t> rowStarts;  // rows + 1 of them
};

std::vector<TableLayout> layoutsOf(const Table& table, const text::Wording& wording, TextStyle style = {});

// The title as people see it: the wording of the table's key; where there is none, of its default title.
std::string headingOf(const Table& table, const text::Wording& wording, TextStyle style = {});

// How the n-th footnote (from 0) is marked: a, b, ..., z, aa, ab, ...
std::string footnoteMark(std::int32_t note);

// Whether a text stands on the right of its cell, as numbers do.
bool isNumber(const Text& text);

// Whether a text shows several values one below the other, as a procedure does where the two sides of a case differ.
bool showsSeveralValues(const Text& text);

}  // namespace workbench::output
