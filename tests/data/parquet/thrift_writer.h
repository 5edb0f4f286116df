// ThriftWriter: values of Thrift's compact protocol, as Parquet files bear them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace workbench::data {

class ThriftWriter {
 public:
  // Of 32 bits, and of 64.
  ThriftWriter& whole(int id, std::int64_t number) {
    begin(id, 5);
    return variable(zigzag(number));
  }
  ThriftWriter& longWhole(int id, std::int64_t number) {
    begin(id, 6);
    return variable(zigzag(number));
  }
  ThriftWriter& truth(int id, bool isTrue) { return begin(id, isTrue ? 1 : 2); }
  ThriftWriter& text(int id, std::string_view bytes) {
    begin(id, 8);
    return bare(bytes);
  }
  // Of structs, each ended.
  ThriftWriter& list(int id, const std::vector<std::string>& items) {
    begin(id, 9);
    listHeader(items.size(), 12);
    for (const std::string& item : items) bytes_ += item;
    return *this;
  }
  ThriftWriter& wholes(int id, const std::vector<std::int64_t>& numbers) {
    begin(id, 9);
    listHeader(numbers.size(), 5);
    for (const std::int64_t number : numbers) variable(zigzag(number));
    return *this;
  }
  ThriftWriter& fields(int id, const std::string& ended) {
    begin(id, 12);
    bytes_ += ended;
    return *this;
  }
  // A field of that type, whose bytes are these.
  ThriftWriter& raw(int id, int type, std::string_view bytes) {
    begin(id, type);
    bytes_ += bytes;
    return *this;
  }
  std::string ended() const { return bytes_ + '\0'; }

 private:
  static std::uint64_t zigzag(std::int64_t number) {
    return static_cast<std::uint64_t>(number) << 1 ^ static_cast<std::uint64_t>(number >> 63);
  }
  ThriftWriter& variable(std::uint64_t number) {
    for (; number >= 0x80; number >>= 7) bytes_ += static_cast<char>(number | 0x80);
    bytes_ += static_cast<char>(number);
    return *this;
  }
  ThriftWriter& bare(std::string_view bytes) {
    variable(bytes.size());
    bytes_ += bytes;
    return *this;
  }
  void listHeader(std::size_t count, int type) {
    bytes_ += static_cast<char>((count < 15 ? count : 15) << 4 | static_cast<unsigned>(type));
    if (count >= 15) variable(count);
  }
  ThriftWriter& begin(int id, int type) {
    const int step = id - last_;
    last_ = id;
    if (step > 0 && step < 16) {
      bytes_ += static_cast<char>(step << 4 | type);
    } else {
      bytes_ += static_cast<char>(type);
      variable(zigzag(id));
    }
    return *this;
  }

  std::string bytes_;
  int last_ = 0;
};

}  // namespace workbench::data
