// ThriftReader and ThriftValue: values of Thrift's compact protocol, in which Parquet files say what is in them.
//
// Safe for bytes of any kind: what makes no sense leaves the reader unsound, and every value read from then on is zero,
// empty or without items.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace workbench::data {

class ThriftReader {
 public:
  explicit ThriftReader(std::string_view bytes) : bytes_(bytes) {}

  bool isSound() const { return isSound_; }
  // How many bytes have been read.
  std::size_t position() const { return position_; }

  // Calls visit(id, value) for every field of the struct that begins here. What it does not read is passed over.
  template <class Visit>
  void eachField(Visit visit);

 private:
  friend class ThriftValue;
  enum class Type : std::uint8_t {
    stop = 0,
    yes = 1,
    no = 2,
    int8 = 3,
    int16 = 4,
    int32 = 5,
    int64 = 6,
    real = 7,
    bytes = 8,
    list = 9,
    set = 10,
    map = 11,
    fields = 12,
  };
  struct ItemsHeader {
    std::uint64_t count = 0;
    Type type = Type::stop;
  };

  std::uint8_t byte();
  std::uint64_t variable();
  std::int64_t zigzag();
  std::string_view bytes(std::uint64_t count);
  ItemsHeader itemsHeader();
  void pass(Type type, bool isItem);
  void passMap();
  void fail() { isSound_ = false; }
  // What is inside another; deeper than any file needs is not followed.
  bool enter() {
    constexpr int deepest = 32;
    if (++depth_ > deepest) fail();
    return isSound_;
  }
  void leave() { --depth_; }

  std::string_view bytes_;
  std::size_t position_ = 0;
  int depth_ = 0;
  bool isSound_ = true;
};

// One value, which is read once or passed over. A value of another type than the one asked for is unsound.
class ThriftValue {
 public:
  std::int64_t whole();
  bool truth();
  std::string_view bytes();  // as long as the reader's own
  template <class Visit>
  void eachItem(Visit visit);  // of a list: visit(item)
  template <class Visit>
  void eachField(Visit visit);

 private:
  friend class ThriftReader;
  ThriftValue(ThriftReader& reader, ThriftReader::Type type, bool isItem)
      : reader_(reader), type_(type), isItem_(isItem) {}
  bool take(bool isOfType) {
    isTaken_ = true;
    if (!isOfType) reader_.fail();
    return reader_.isSound();
  }
  void finish() {
    if (!isTaken_) reader_.pass(type_, isItem_);
  }

  ThriftReader& reader_;
  ThriftReader::Type type_;
  bool isItem_;  // of a list, where truth values take a byte
  bool isTaken_ = false;
};

template <class Visit>
void ThriftReader::eachField(Visit visit) {
  std::int64_t id = 0;
  if (!enter()) return;
  while (isSound_) {
    const std::uint8_t header = byte();
    const auto type = static_cast<Type>(header & 0x0F);
    if (!isSound_ || type == Type::stop) break;
    const int step = header >> 4;
    id = step != 0 ? id + step : zigzag();
    ThriftValue value(*this, type, false);
    visit(id, value);
    value.finish();
  }
  leave();
}

template <class Visit>
void ThriftValue::eachField(Visit visit) {
  if (take(type_ == ThriftReader::Type::fields)) reader_.eachField(visit);
}

template <class Visit>
void ThriftValue::eachItem(Visit visit) {
  if (!take(type_ == ThriftReader::Type::list || type_ == ThriftReader::Type::set) || !reader_.enter()) return;
  const ThriftReader::ItemsHeader header = reader_.itemsHeader();
  for (std::uint64_t item = 0; item < header.count && reader_.isSound(); ++item) {
    ThriftValue value(reader_, header.type, true);
    visit(value);
    value.finish();
  }
  reader_.leave();
}

}  // namespace workbench::data
