#include "workbench/data/working/row_order.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <numeric>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace workbench::data {
namespace {

// A row among others that are to be sorted, with one piece of its keys: a number, in two halves so that a row takes no
// more room than it needs. Not initialised, like the room for many of them.
struct KeyedRow {
  std::uint32_t high;
  std::uint32_t low;
  std::uint32_t row;

  std::uint64_t piece() const { return std::uint64_t{high} << 32 | low; }
  void setPiece(std::uint64_t piece) {
    high = static_cast<std::uint32_t>(piece >> 32);
    low = static_cast<std::uint32_t>(piece);
  }
};

bool isBefore(const KeyedRow& left, const KeyedRow& right) {
  return left.piece() != right.piece() ? left.piece() < right.piece() : left.row < right.row;
}

// Sorts many rows by their pieces without comparing them: by some bits after others, from the lowest that differ to the
// highest. Rows of one piece stay as they lie. The room is as large as the rows.
void sortByBits(std::span<KeyedRow> rows, std::span<KeyedRow> room) {
  constexpr int mostBitsAtOnce = 11;
  std::uint64_t differing = 0;
  for (const KeyedRow& one : rows) differing |= one.piece() ^ rows.front().piece();
  if (differing == 0) return;
  const int lowest = std::countr_zero(differing);
  const int bits = static_cast<int>(std::bit_width(differing)) - lowest;
  const int rounds = (bits + mostBitsAtOnce - 1) / mostBitsAtOnce;
  const int bitsAtOnce = (bits + rounds - 1) / rounds;
  const std::uint64_t mask = (std::uint64_t{1} << bitsAtOnce) - 1;

  std::span<KeyedRow> from = rows;
  std::span<KeyedRow> to = room;
  std::vector<std::size_t> places(mask + 1);
  for (int shift = lowest; shift < lowest + bits; shift += bitsAtOnce) {
    const auto placeOf = [&](const KeyedRow& one) -> std::size_t& { return places[one.piece() >> shift & mask]; };
    std::fill(places.begin(), places.end(), 0);
    for (const KeyedRow& one : from) ++placeOf(one);
    std::exclusive_scan(places.begin(), places.end(), places.begin(), std::size_t{0});
    for (const KeyedRow& one : from) to[placeOf(one)++] = one;
    std::swap(from, to);
  }
  if (from.data() != rows.data()) std::copy(from.begin(), from.end(), rows.begin());
}

// The keys of every row as a sequence of numbers, its pieces, in the order of which the rows are to lie: a number gives
// one, a string one per eight bytes, those that are not there being zero, and its length, which tells it from another
// one that has zero bytes in their place.
class PlainPieces {
 public:
  PlainPieces(const CaseRows& rows, const std::vector<SortKey>& keys) : rows_(rows) {
    for (const SortKey& key : keys) {
      for (std::size_t byte = 0; byte < key.bytes && !key.isNumeric; byte += 8) pieces_.push_back({key, byte});
      pieces_.push_back({key, key.bytes});
    }
  }
  std::size_t count() const { return pieces_.size(); }
  std::uint64_t operator()(std::uint32_t row, std::size_t index) const {
    const Piece& piece = pieces_[index];
    const OBS* const oneCase = rows_.at(row);
    if (piece.key.isNumeric) return orderedBits(oneCase[piece.key.slot].number);
    const std::string_view text = keyText(piece.key, oneCase);
    if (piece.firstByte == piece.key.bytes) return text.size();
    return piece.firstByte < text.size() ? prefixOf(text.substr(piece.firstByte)) : 0;
  }

 private:
  struct Piece {
    SortKey key;
    std::size_t firstByte;  // of a string; behind the last one: its length
  };
  const CaseRows& rows_;
  std::vector<Piece> pieces_;
};

// The same under a collation: all keys of a row are one string, made once.
class CollatedPieces {
 public:
  CollatedPieces(const CaseRows& rows, const std::vector<SortKey>& keys) {
    ends_.reserve(rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
      const std::string key = collatedKey(keys, rows.at(row));
      longest_ = std::max(longest_, key.size());
      bytes_ += key;
      ends_.push_back(bytes_.size());
    }
  }
  // No key is the beginning of another one, so no length is needed.
  std::size_t count() const { return (longest_ + 7) / 8; }
  std::uint64_t operator()(std::uint32_t row, std::size_t index) const {
    const std::size_t begin = row == 0 ? 0 : ends_[row - 1];
    const std::string_view key = std::string_view(bytes_).substr(begin, ends_[row] - begin);
    return index * 8 < key.size() ? prefixOf(key.substr(index * 8)) : 0;
  }

 private:
  std::string bytes_;
  std::vector<std::size_t> ends_;  // by row
  std::size_t longest_ = 0;
};

// Sorts by the first piece, then every group of rows that have the same one by the next, and so on: the cases, which
// lie anywhere in memory, are looked at once per piece and not for every comparison.
template <class Pieces>
class RowSort {
 public:
  // At first the rows lie as they are numbered.
  RowSort(const Pieces& pieces, std::size_t count, const EqualRows& equalRows)
      : pieces_(pieces),
        equalRows_(equalRows),
        room_(std::make_unique_for_overwrite<KeyedRow[]>(2 * count)),
        rows_(room_.get(), count),
        spare_(room_.get() + count, count) {
    for (std::size_t row = 0; row < count; ++row) rows_[row].row = static_cast<std::uint32_t>(row);
  }

  std::span<const KeyedRow> sort() {
    groups_.push_back({0, rows_.size(), 0});
    while (!groups_.empty()) {
      const Group group = groups_.back();
      groups_.pop_back();
      sortGroup(group);
    }
    return rows_;
  }

 private:
  // Rows whose pieces before this one are the same.
  struct Group {
    std::size_t begin;
    std::size_t end;
    std::size_t piece;
  };
  // In a smaller group it costs less to compare what is left of the keys.
  static constexpr std::size_t leastRows = 24;
  // So many are sorted faster without comparisons.
  static constexpr std::size_t manyRows = 1024;

  void sortGroup(const Group& group) {
    const std::span<KeyedRow> rows = rows_.subspan(group.begin, group.end - group.begin);
    for (KeyedRow& one : rows) one.setPiece(pieces_(one.row, group.piece));
    const std::size_t next = group.piece + 1;
    if (rows.size() < leastRows) {
      std::sort(rows.begin(), rows.end(), [&](const KeyedRow& left, const KeyedRow& right) {
        return left.piece() != right.piece() ? left.piece() < right.piece() : isBeforeFrom(next, left.row, right.row);
      });
      tellEqualRows(group.begin, rows, next);
      return;
    }
    if (!std::is_sorted(rows.begin(), rows.end(), isBefore)) {
      // The rows of a group lie in the order of their numbers.
      if (rows.size() < manyRows) {
        std::sort(rows.begin(), rows.end(), isBefore);
      } else {
        sortByBits(rows, spare_.first(rows.size()));
      }
    }
    if (next == pieces_.count()) {
      tellEqualRows(group.begin, rows, next);
      return;
    }
    for (std::size_t begin = 0, end = 0; begin < rows.size(); begin = end) {
      while (end < rows.size() && rows[end].piece() == rows[begin].piece()) ++end;
      if (end - begin == 1) continue;
      const Group equal{group.begin + begin, group.begin + end, next};
      if (end - begin < leastRows) {
        sortGroup(equal);
      } else {
        groups_.push_back(equal);
      }
    }
  }

  bool isBeforeFrom(std::size_t piece, std::uint32_t left, std::uint32_t right) const {
    for (; piece < pieces_.count(); ++piece) {
      const std::uint64_t first = pieces_(left, piece);
      const std::uint64_t second = pieces_(right, piece);
      if (first != second) return first < second;
    }
    return left < right;
  }

  bool areEqualFrom(std::size_t piece, std::uint32_t left, std::uint32_t right) const {
    for (; piece < pieces_.count(); ++piece) {
      if (pieces_(left, piece) != pieces_(right, piece)) return false;
    }
    return true;
  }

  // Requires: the rows are sorted; all pieces before the one they hold are the same. `next` is the one behind it.
  void tellEqualRows(std::size_t place, std::span<const KeyedRow> rows, std::size_t next) {
    if (!equalRows_) return;
    for (std::size_t begin = 0, end = 0; begin < rows.size(); begin = end) {
      const auto isEqual = [&](const KeyedRow& one) {
        return one.piece() == rows[begin].piece() && areEqualFrom(next, rows[begin].row, one.row);
      };
      for (end = begin + 1; end < rows.size() && isEqual(rows[end]);) ++end;
      if (end - begin == 1) continue;
      equal_.clear();
      for (const KeyedRow& one : rows.subspan(begin, end - begin)) equal_.push_back(one.row);
      equalRows_(place + begin, equal_);
    }
  }

  const Pieces& pieces_;
  const EqualRows& equalRows_;
  std::vector<std::uint32_t> equal_;
  std::unique_ptr<KeyedRow[]> room_;
  std::span<KeyedRow> rows_;
  std::span<KeyedRow> spare_;
  std::vector<Group> groups_;
};

template <class Pieces>
std::vector<std::uint32_t> orderBy(const Pieces& pieces, std::size_t count, const EqualRows& equalRows) {
  RowSort sort(pieces, count, equalRows);
  const std::span<const KeyedRow> rows = sort.sort();
  std::size_t place = 0;
  while (place < count && rows[place].row == place) ++place;
  if (place == count) return {};
  std::vector<std::uint32_t> order(count);
  std::transform(rows.begin(), rows.end(), order.begin(), [](const KeyedRow& one) { return one.row; });
  return order;
}

}  // namespace

std::vector<std::uint32_t> orderOfRows(const CaseRows& rows, const std::vector<SortKey>& keys,
                                       const EqualRows& equalRows) {
  if (isCollated(keys)) return orderBy(CollatedPieces(rows, keys), rows.size(), equalRows);
  return orderBy(PlainPieces(rows, keys), rows.size(), equalRows);
}

std::size_t bytesToOrderRow(const std::vector<SortKey>& keys) {
  std::size_t bytes = 2 * sizeof(KeyedRow);
  if (!isCollated(keys)) return bytes;
  // A collation key takes two or three bytes a letter; behind it stands the text.
  for (const SortKey& key : keys) bytes += key.isNumeric ? sizeof(std::uint64_t) : 4 * key.bytes;
  return bytes + sizeof(std::size_t);
}

}  // namespace workbench::data
