#include "workbench/data/parquet/thrift_value.h"

namespace workbench::data {

std::uint8_t ThriftReader::byte() {
  if (position_ >= bytes_.size()) fail();
  return isSound_ ? static_cast<std::uint8_t>(bytes_[position_++]) : 0;
}

std::uint64_t ThriftReader::variable() {
  std::uint64_t number = 0;
  for (int shift = 0; shift < 64; shift += 7) {
    const std::uint8_t next = byte();
    number |= static_cast<std::uint64_t>(next & 0x7F) << shift;
    if ((next & 0x80) == 0) return isSound_ ? number : 0;
  }
  fail();
  return 0;
}

std::int64_t ThriftReader::zigzag() {
  const std::uint64_t number = variable();
  return static_cast<std::int64_t>((number >> 1) ^ (~(number & 1) + 1));
}

std::string_view ThriftReader::bytes(std::uint64_t count) {
  if (count > bytes_.size() - position_) fail();
  if (!isSound_) return {};
  const std::string_view found = bytes_.substr(position_, count);
  position_ += count;
  return found;
}

ThriftReader::ItemsHeader ThriftReader::itemsHeader() {
  const std::uint8_t header = byte();
  constexpr int countFollows = 15;
  const std::uint64_t count = header >> 4 == countFollows ? variable() : header >> 4;
  return {count, static_cast<Type>(header & 0x0F)};
}

void ThriftReader::pass(Type type, bool isItem) {
  switch (type) {
    case Type::yes:
    case Type::no:
      if (isItem) byte();
      return;
    case Type::int8:
      byte();
      return;
    case Type::int16:
    case Type::int32:
    case Type::int64:
      variable();
      return;
    case Type::real:
      bytes(sizeof(double));
      return;
    case Type::bytes:
      bytes(variable());
      return;
    case Type::list:
    case Type::set:
      ThriftValue(*this, type, isItem).eachItem([](ThriftValue&) {});
      return;
    case Type::map:
      passMap();
      return;
    case Type::fields:
      eachField([](std::int64_t, ThriftValue&) {});
      return;
    case Type::stop:
      break;
  }
  fail();
}

void ThriftReader::passMap() {
  if (!enter()) return;
  const std::uint64_t count = variable();
  const std::uint8_t types = count != 0 ? byte() : 0;
  for (std::uint64_t entry = 0; entry < count && isSound_; ++entry) {
    pass(static_cast<Type>(types >> 4), true);
    pass(static_cast<Type>(types & 0x0F), true);
  }
  leave();
}

std::int64_t ThriftValue::whole() {
  using Type = ThriftReader::Type;
  if (!take(type_ == Type::int8 || type_ == Type::int16 || type_ == Type::int32 || type_ == Type::int64)) return 0;
  return type_ == Type::int8 ? static_cast<std::int8_t>(reader_.byte()) : reader_.zigzag();
}

bool ThriftValue::truth() {
  using Type = ThriftReader::Type;
  if (!take(type_ == Type::yes || type_ == Type::no)) return false;
  return isItem_ ? reader_.byte() == 1 : type_ == Type::yes;
}

std::string_view ThriftValue::bytes() {
  return take(type_ == ThriftReader::Type::bytes) ? reader_.bytes(reader_.variable()) : std::string_view();
}

}  // namespace workbench::data
