#include "workbench/data/parquet/snappy.h"

#include <array>
#include <cstdint>
#include <cstring>

// What is packed is the number of bytes, seven bits at a time, and then pieces, each behind a byte that tells in its
// lowest two bits what it is: bytes that stand here, or, by an offset of one, two or four bytes, some that were
// unpacked before. Lengths change from piece to piece, so that a branch for each of them would be guessed wrongly time
// and again: sixteen bytes are moved at once, however few are needed, and the next piece overwrites what is too many.
namespace workbench::data {
namespace {

enum Kind : std::uint8_t { bytesThemselves = 0, offsetOfOneByte = 1, offsetOfTwoBytes = 2 };

Kind kindOf(unsigned tag) { return static_cast<Kind>(tag & 3); }

struct Copy {
  std::uint8_t length;
  std::uint8_t offsetBytes;
  std::uint16_t offset;  // the part of it that stands in the tag
};

constexpr auto copies = [] {
  std::array<Copy, 256> byTag{};
  for (unsigned tag = 0; tag < byTag.size(); ++tag) {
    const auto length = static_cast<std::uint8_t>((tag >> 2) + 1);
    byTag[tag] = {length, static_cast<std::uint8_t>((tag & 3) == offsetOfTwoBytes ? 2 : 4), 0};
    if ((tag & 3) == offsetOfOneByte) {
      byTag[tag] = {static_cast<std::uint8_t>((tag >> 2 & 7) + 4), 1, static_cast<std::uint16_t>(tag >> 5 << 8)};
    }
  }
  return byTag;
}();

constexpr std::array<std::uint32_t, 5> lowestBytes = {0, 0xff, 0xffff, 0xffffff, 0xffffffff};

std::uint32_t wholeAt(const char* bytes, std::size_t width) {
  std::uint32_t whole = 0;
  std::memcpy(&whole, bytes, sizeof whole);
  return whole & lowestBytes[width];
}

template <std::size_t bytes>
void move(char* to, const char* from) {
  std::array<char, bytes> moved;
  std::memcpy(moved.data(), from, bytes);
  std::memcpy(to, moved.data(), bytes);
}

// Lays down sixteen bytes of a text that repeats what stands `offset` bytes before, less than eight, over and over;
// gives where those stand that come behind the first eight of them, eight bytes or more before their place.
const char* repeat(char* to, std::size_t offset) {
  // Behind four bytes, how far to go on for the next four, and behind these how far to go back.
  constexpr std::array<std::ptrdiff_t, 8> onward = {0, 1, 2, 1, 0, 4, 4, 4};
  constexpr std::array<std::ptrdiff_t, 8> back = {0, 0, 0, -1, -4, 1, 2, 3};
  const char* from = to - offset;
  for (std::size_t byte = 0; byte < 4; ++byte) to[byte] = from[byte];
  from += onward[offset];
  move<4>(to + 4, from);
  from -= back[offset];
  move<8>(to + 8, from);
  return from - 8;
}

class Unpacking {
 public:
  Unpacking(std::string_view packed, char* to, std::size_t bytes)
      : in_(packed.data()), inEnd_(in_ + packed.size()), begin_(to), out_(to), outEnd_(to + bytes) {}

  bool run() {
    if (!lengthIs(static_cast<std::uint64_t>(outEnd_ - out_))) return false;
    while (in_ < inEnd_) {
      const unsigned tag = nextByte();
      if (!(kindOf(tag) == bytesThemselves ? takeBytes(tag) : takeCopy(tag))) return false;
    }
    return out_ == outEnd_;
  }

 private:
  unsigned nextByte() { return static_cast<unsigned char>(*in_++); }
  std::size_t packedLeft() const { return static_cast<std::size_t>(inEnd_ - in_); }
  std::size_t roomLeft() const { return static_cast<std::size_t>(outEnd_ - out_); }

  bool lengthIs(std::uint64_t expected) {
    std::uint64_t length = 0;
    for (int shift = 0; shift < 35 && in_ < inEnd_; shift += 7) {
      const unsigned byte = nextByte();
      length |= std::uint64_t{byte & 0x7f} << shift;
      if (byte < 0x80) return length == expected;
    }
    return false;
  }

  // Behind bytes there is a copy, as a rule: it is taken with them.
  bool takeBytes(unsigned tag) {
    std::size_t length = (tag >> 2) + 1;
    constexpr std::size_t longestInTag = 60;
    if (length > longestInTag) return takeManyBytes(length - longestInTag);
    if (length > packedLeft() || length > roomLeft()) return false;
    for (std::size_t at = 0; at < length; at += 16) move<16>(out_ + at, in_ + at);
    in_ += length;
    out_ += length;
    if (in_ == inEnd_ || kindOf(static_cast<unsigned char>(*in_)) == bytesThemselves) return true;
    return takeCopy(nextByte());
  }

  bool takeManyBytes(std::size_t lengthBytes) {
    if (lengthBytes > packedLeft()) return false;
    const std::size_t length = std::size_t{wholeAt(in_, lengthBytes)} + 1;
    in_ += lengthBytes;
    if (length > packedLeft() || length > roomLeft()) return false;
    std::memcpy(out_, in_, length);
    in_ += length;
    out_ += length;
    return true;
  }

  bool takeCopy(unsigned tag) {
    const Copy copy = copies[tag];
    const std::size_t offset = copy.offset + wholeAt(in_, copy.offsetBytes);
    in_ += copy.offsetBytes;
    const auto unpacked = static_cast<std::size_t>(out_ - begin_);
    if (in_ > inEnd_ || offset - 1 >= unpacked || copy.length > roomLeft()) return false;  // 0 - 1 is too far as well
    const char* from = out_ - offset;
    if (offset < 8) {
      from = repeat(out_, offset);
    } else {
      move<8>(out_, from);
      move<8>(out_ + 8, from + 8);
    }
    for (std::size_t at = 16; at < copy.length; at += 8) move<8>(out_ + at, from + at);
    out_ += copy.length;
    return true;
  }

  const char* in_;
  const char* inEnd_;
  char* begin_;
  char* out_;
  char* outEnd_;
};

}  // namespace

bool unpackSnappy(std::string_view packed, char* to, std::size_t bytes) { return Unpacking(packed, to, bytes).run(); }

}  // namespace workbench::data
