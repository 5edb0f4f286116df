// One look at all values of a table, whether its columns are read together or each on its own.
#include "workbench/data/columnar/stored_look.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "workbench/data/columnar/stored_rows.h"

namespace workbench::data {
namespace {

// Columns of whole numbers, in vectors of two rows; a vector that is empty is one that cannot be read.
using Vectors = std::vector<std::vector<std::int64_t>>;

class WholeNumbers final : public StoredSource {
 public:
  WholeNumbers(std::vector<Vectors> columns, bool areApart) : columns_(std::move(columns)), areApart_(areApart) {}

  const std::string& path() const override { return path_; }
  std::string relation() const override { return ""; }
  std::string identity() const override { return ""; }
  std::vector<std::string> files() const override { return {}; }
  Outcome<std::optional<DescribedTable>> description() const override { return std::optional<DescribedTable>(); }

  Outcome<std::unique_ptr<StoredRows>> rows(const WantedRows& wanted) const override {
    std::vector<const Vectors*> columns;
    for (const WantedColumn& column : wanted.columns) columns.push_back(&columns_[column.index]);
    return std::unique_ptr<StoredRows>(std::make_unique<Rows>(std::move(columns), areApart_));
  }

 private:
  class Rows final : public StoredRows {
   public:
    Rows(std::vector<const Vectors*> columns, bool areApart) : columns_(std::move(columns)), areApart_(areApart) {}

    Outcome<bool> next() override {
      const std::size_t vector = next_++;
      for (std::size_t column = 0; column < columns_.size(); ++column) {
        if (vector == columns_[column]->size()) return false;
        if (columns_[column]->at(vector).empty())
          return Problem{fmt::format("vector {} of wanted column {}", vector, column), "", ""};
      }
      return true;
    }
    std::size_t rows() const override { return 2; }
    VectorCells values(std::size_t wanted) const override {
      return {columns_[wanted]->at(next_ - 1).data(), {nullptr}};
    }
    bool areColumnsApart() const override { return areApart_; }

   private:
    std::vector<const Vectors*> columns_;
    bool areApart_;
    std::size_t next_ = 0;
  };

  std::vector<Vectors> columns_;
  bool areApart_;
  std::string path_ = "a";
};

Outcome<StoredLook> lookAt(const std::vector<Vectors>& columns, bool areApart) {
  std::vector<StoredColumn> types;
  for (std::size_t column = 0; column < columns.size(); ++column)
    types.push_back(storedColumn(fmt::format("c{}", column), "BIGINT"));
  return lookAtAllValues(WholeNumbers(columns, areApart), types);
}

TEST(StoredLook, TellsTheSameOfColumnsThatAreReadTogetherAndOnTheirOwn) {
  std::vector<Vectors> columns;
  for (std::int64_t column = 0; column < 23; ++column) {
    Vectors& vectors = columns.emplace_back();
    for (std::int64_t row = 0; row < 100; row += 2)
      vectors.push_back({row * column, column % 3 == 0 ? -column : (row + 1) * column});
  }
  const Outcome<StoredLook> together = lookAt(columns, false);
  const Outcome<StoredLook> apart = lookAt(columns, true);
  ASSERT_TRUE(together && apart);
  EXPECT_EQ(apart->cases, 100);
  EXPECT_EQ(apart->cases, together->cases);
  EXPECT_EQ(apart->rises, together->rises);
  EXPECT_EQ(apart->rises[4], true);
  EXPECT_EQ(apart->rises[3], false);
  ASSERT_EQ(apart->evidence.size(), columns.size());
  for (std::size_t column = 0; column < columns.size(); ++column) {
    EXPECT_EQ(apart->evidence[column].wholeWidth(), together->evidence[column].wholeWidth());
    EXPECT_EQ(apart->evidence[column].count(CellKind::number), 100U);
  }
  EXPECT_EQ(apart->evidence[21].wholeWidth(), 4) << "98 times 21";
}

// Whichever of them is met first: the third one is the first that is met row by row.
TEST(StoredLook, OfSeveralColumnsThatCannotBeReadTellsTheFirstRowByRow) {
  const std::vector<Vectors> columns{{{1, 2}, {3, 4}, {}}, {{1, 2}, {3, 4}, {5, 6}}, {{1, 2}, {}, {5, 6}}};
  for (const bool areApart : {false, true}) {
    const Outcome<StoredLook> look = lookAt(columns, areApart);
    ASSERT_FALSE(look);
    EXPECT_EQ(look.problem().what, "vector 1 of wanted column 2");
  }
}

}  // namespace
}  // namespace workbench::data
