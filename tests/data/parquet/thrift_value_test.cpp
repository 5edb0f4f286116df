#include "workbench/data/parquet/thrift_value.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/data/parquet/thrift_writer.h"

namespace workbench::data {
namespace {

// What a reader makes of a struct, as text.
class Told {
 public:
  explicit Told(std::string_view bytes) {
    ThriftReader reader(bytes);
    reader.eachField([&](std::int64_t id, ThriftValue& value) {
      text_ += std::to_string(id) + "=";
      if (id == 1 || id == 40) text_ += std::to_string(value.whole());
      if (id == 2) text_ += value.truth() ? "yes" : "no";
      if (id == 3) text_ += value.bytes();
      if (id == 4) value.eachItem([&](ThriftValue& item) { text_ += std::to_string(item.whole()) + ","; });
      if (id == 5) value.eachField([&](std::int64_t inner, ThriftValue&) { text_ += std::to_string(inner) + ","; });
      text_ += " ";
    });
    isSound_ = reader.isSound();
    position_ = reader.position();
  }

  const std::string& text() const { return text_; }
  bool isSound() const { return isSound_; }
  std::size_t position() const { return position_; }

 private:
  std::string text_;
  bool isSound_ = false;
  std::size_t position_ = 0;
};

std::string allKinds() {
  return ThriftWriter()
      .whole(1, -3)
      .truth(2, true)
      .text(3, "abc")
      .wholes(4, {1, 2, -3})
      .fields(5, ThriftWriter().whole(1, 7).text(9, "x").ended())
      .longWhole(40, std::int64_t{1} << 40)
      .ended();
}

TEST(ThriftValue, TellsFieldsOfEachKind) {
  const Told told(allKinds() + "behind");
  EXPECT_TRUE(told.isSound());
  EXPECT_EQ(told.text(), "1=-3 2=yes 3=abc 4=1,2,-3, 5=1,9, 40=1099511627776 ");
  EXPECT_EQ(told.position(), allKinds().size());
}

TEST(ThriftValue, PassesOverWhatNobodyAsksFor) {
  const std::string map("\x02\x85\x01k\x02\x01l\x04", 8);  // two entries of a text and a number each
  const std::string bytes = ThriftWriter()
                                .raw(6, 7, "12345678")
                                .raw(7, 11, map)
                                .raw(8, 11, std::string(1, '\0'))
                                .raw(9, 10, std::string("\x21\x01\x02", 3))  // a set of two truth values
                                .raw(10, 3, "\x05")
                                .list(11, {ThriftWriter().whole(1, 1).ended(), ThriftWriter().ended()})
                                .whole(40, 5)
                                .ended();
  const Told told(bytes);
  EXPECT_TRUE(told.isSound());
  EXPECT_EQ(told.text(), "6= 7= 8= 9= 10= 11= 40=5 ");
}

TEST(ThriftValue, IsUnsoundWhereverTheBytesEnd) {
  const std::string whole = allKinds();
  for (std::size_t end = 0; end < whole.size(); ++end) EXPECT_FALSE(Told(whole.substr(0, end)).isSound()) << end;
}

TEST(ThriftValue, IsUnsoundWhenItIsOfAnotherKindThanTheOneAskedFor) {
  EXPECT_FALSE(Told(ThriftWriter().text(1, "3").ended()).isSound());
  EXPECT_FALSE(Told(ThriftWriter().whole(2, 1).ended()).isSound());
  EXPECT_FALSE(Told(ThriftWriter().whole(3, 1).ended()).isSound());
  EXPECT_FALSE(Told(ThriftWriter().whole(4, 1).ended()).isSound());
  EXPECT_FALSE(Told(ThriftWriter().truth(5, true).ended()).isSound());
}

TEST(ThriftValue, IsUnsoundWhenCountsAreBeyondTheBytesOrKindsAreNone) {
  EXPECT_FALSE(Told(ThriftWriter().raw(3, 8, "\xFF\xFF\xFF\xFF\x07").ended()).isSound());
  EXPECT_FALSE(Told(ThriftWriter().raw(6, 9, "\xF5\xFF\xFF\xFF\xFF\x07").ended()).isSound());
  EXPECT_FALSE(Told(ThriftWriter().raw(6, 11, "\xFF\xFF\xFF\xFF\x07\x55").ended()).isSound());
  EXPECT_FALSE(Told(ThriftWriter().raw(6, 13, "").ended()).isSound());
  EXPECT_FALSE(Told(ThriftWriter().raw(1, 6, std::string(11, '\xFF')).ended()).isSound());
}

TEST(ThriftValue, IsNotFollowedDeeperThanAnyFileNeeds) {
  std::string inside = ThriftWriter().ended();
  for (int depth = 0; depth < 20; ++depth) inside = ThriftWriter().fields(6, inside).ended();
  EXPECT_TRUE(Told(inside).isSound());
  EXPECT_FALSE(Told(std::string(1'000'000, '\x6C')).isSound());
}

}  // namespace
}  // namespace workbench::data
