// ColumnEvidence: what the cells of a column are, counted exactly while a file is read.
//
// Evidence of two columns can be merged; what is inferred from the merged evidence is what would be inferred from both
// columns written one below the other.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "workbench/data/files/cell_batch.h"

namespace workbench::data {

// What a cell is by itself. Everything that is not exactly one of the others is a text.
enum class CellKind : std::uint8_t { empty, number, date, time, dateTime, text };
inline constexpr std::size_t cellKinds = 6;

// One cell as it stands in a file.
struct CellSighting {
  std::uint64_t line = 0;  // from 1; 0: none was seen
  std::string text;        // its beginning
  bool isWhole = true;     // the text is all of it
  bool isStored = false;   // its source says what it is, whatever it looks like

  std::string quoted() const;  // as sentences show it
};

// The beginning of a cell for messages, cut between characters.
CellSighting sightingOf(std::string_view cell, std::uint64_t line);

class ColumnEvidence {
 public:
  // Adds all cells of a column. A null counts as an empty cell.
  void add(const CellBatch& cells, std::size_t column);
  // Adds one of them as if it had another text.
  void addAs(std::string_view text, const CellBatch& cells, std::size_t record, std::size_t column);
  // What cells of one kind, which were not read from a text, have in common.
  struct Summary {
    std::uint64_t count = 0;
    CellSighting first;
    std::size_t longestText = 0;
    std::int32_t wholeWidth = 1;  // this and the next two: of numbers
    std::int32_t fractionDigits = 0;
    std::int32_t significantDigits = 1;
    std::int32_t secondsDigits = 0;
  };
  // Whether such cells rise is not known.
  void add(CellKind kind, const Summary& cells);
  // What the source says that the column is: text whatever is in it, another kind as long as nothing is.
  void declare(CellKind kind) { declared_ = kind; }
  // Of a column that is read as text after all.
  void setLongestText(std::size_t bytes) { longestText_ = bytes; }
  // Adds all that the other one has seen. Sightings stay this one's where it has any.
  void merge(const ColumnEvidence& other);

  std::uint64_t count(CellKind kind) const { return counts_[static_cast<std::size_t>(kind)]; }
  std::uint64_t filled() const;  // cells that are not empty
  // What the column is: the kind of all its filled cells, else text; empty when none is filled.
  CellKind kind() const;
  // The first filled cell that is not of the given kind; none has line 0.
  const CellSighting& firstOtherThan(CellKind kind) const;

  std::size_t longestText() const { return longestText_; }  // in bytes, over all cells
  // Over all numbers, exponents carried out: digits before the point and a minus; digits behind it.
  std::int32_t wholeWidth() const { return std::max(wholeWidth_, shortNumbers_.wholeWidth()); }
  std::int32_t fractionDigits() const { return std::max(fractionDigits_, shortNumbers_.fractionDigits()); }
  std::int32_t significantDigits() const {  // from the first that is not 0
    return std::max(significantDigits_, shortNumbers_.significantDigits());
  }
  std::int32_t secondsDigits() const { return secondsDigits_; }  // of the fractions of all times and dates with times

  // Whether all cells were filled and each was greater than the one before it: as a number, or by the bytes of its text
  // without trailing blanks. Not known, and so false, of merged evidence and of cells that were added as another text.
  bool numbersRise() const { return numbersRise_ && kind() == CellKind::number && count(CellKind::empty) == 0; }
  bool textsRise() const { return textsRise_ && count(CellKind::empty) == 0; }

 private:
  // What the short numbers of a column have in common, gathered bit by bit.
  struct ShortNumbers {
    void add(const ShortDecimal& number);
    void merge(const ShortNumbers& other);
    bool isEmpty() const { return shapes == 0; }
    std::int32_t wholeWidth() const;
    std::int32_t fractionDigits() const;
    std::int32_t significantDigits() const;

    // There is one with n digits of the fraction, n digits before the point, n such digits and a minus: bit n of the
    // three parts from the lowest on.
    std::uint64_t shapes = 0;
    // All digits laid over each other, as a number holds them.
    std::uint64_t firstDigits = 0;
    std::uint64_t lastDigits = 0;
  };

  CellKind seenOther(std::string_view cell);
  template <class Number>
  void widen(const Number& number);
  void noteFirstShort(const CellBatch& cells, std::size_t column);
  template <class LineOf>
  void note(CellKind kind, std::string_view cell, LineOf lineOf);
  void noteText(std::string_view cell, std::uint64_t line);
  void followOrder(const CellBatch& cells, std::size_t column);

  std::array<std::uint64_t, cellKinds> counts_{};
  std::array<CellSighting, cellKinds> first_;
  std::size_t longestText_ = 0;
  ShortNumbers shortNumbers_;
  std::int32_t wholeWidth_ = 1;  // this and the next two: of all other numbers
  std::int32_t fractionDigits_ = 0;
  std::int32_t significantDigits_ = 1;
  std::int32_t secondsDigits_ = 0;
  CellKind declared_ = CellKind::empty;  // empty: nothing is
  bool numbersRise_ = true;
  bool textsRise_ = true;
  std::optional<double> lastNumber_;  // while they rise
  std::string lastText_;              // the same
};

// Why the text is not of the given kind, as a clause about it: "\"x\" is no ISO date". Requires: it is not.
std::string whyOtherThan(CellKind kind, const CellSighting& cell);

}  // namespace workbench::data
