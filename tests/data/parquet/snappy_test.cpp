#include "workbench/data/parquet/snappy.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <snappy-c.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using namespace std::string_literals;

namespace workbench::data {
namespace {

// What Snappy's own library makes of it.
std::string packedByLibrary(const std::string& text) {
  std::size_t length = ::snappy_max_compressed_length(text.size());
  std::string packed(length, '\0');
  EXPECT_EQ(::snappy_compress(text.data(), text.size(), packed.data(), &length), SNAPPY_OK);
  packed.resize(length);
  return packed;
}

std::optional<std::string> unpackedByLibrary(const std::string& packed, std::size_t bytes) {
  std::size_t length = 0;
  if (::snappy_uncompressed_length(packed.data(), packed.size(), &length) != SNAPPY_OK || length != bytes)
    return std::nullopt;
  std::string text(bytes, '\0');
  if (::snappy_uncompress(packed.data(), packed.size(), text.data(), &length) != SNAPPY_OK) return std::nullopt;
  return text;
}

// Held against what is touched behind either: sanitizers look at the end of these blocks.
std::optional<std::string> unpacked(const std::string& packed, std::size_t bytes) {
  std::vector<char> from(packed.begin(), packed.end());
  from.resize(packed.size() + snappySlack, '\xAA');
  std::vector<char> to(bytes + snappySlack, '\x55');
  if (!unpackSnappy({from.data(), packed.size()}, to.data(), bytes)) return std::nullopt;
  return std::string(to.data(), bytes);
}

std::string withLength(std::size_t bytes, const std::string& pieces) {
  std::string packed;
  for (; bytes >= 0x80; bytes >>= 7) packed.push_back(static_cast<char>(bytes | 0x80));
  return packed + static_cast<char>(bytes) + pieces;
}

std::string bytesPiece(const std::string& text) { return static_cast<char>((text.size() - 1) << 2) + text; }

std::string copyPiece(std::size_t length, std::size_t offset) {
  return {static_cast<char>((length - 1) << 2 | 2), static_cast<char>(offset), static_cast<char>(offset >> 8)};
}

std::string repeated(const std::string& text, std::size_t length) {
  std::string whole;
  while (whole.size() < length) whole += text;
  return whole.substr(0, length);
}

TEST(Snappy, UnpacksNothing) { EXPECT_EQ(unpacked("\0"s, 0), ""); }

TEST(Snappy, UnpacksBytesThatStandThere) {
  for (const std::size_t length : {1, 15, 16, 17, 32, 59, 60}) {
    const std::string text(length, 'x');
    EXPECT_EQ(unpacked(withLength(length, bytesPiece(text)), length), text);
  }
}

TEST(Snappy, UnpacksBytesWhoseLengthTakesUpToFourBytes) {
  for (const unsigned lengthBytes : {1, 2, 3, 4}) {
    std::string piece(1, static_cast<char>((59 + lengthBytes) << 2));
    piece += "\x63\0\0\0"s.substr(0, lengthBytes) + std::string(100, 'y');
    EXPECT_EQ(unpacked(withLength(100, piece), 100), std::string(100, 'y')) << lengthBytes;
  }
}

TEST(Snappy, RepeatsWhatStandsCloserThanTheCopyIsLong) {
  for (std::size_t offset = 1; offset <= 20; ++offset) {
    const std::string text = "abcdefghijklmnopqrst"s.substr(0, offset);
    for (std::size_t length = 1; length <= 64; ++length) {
      EXPECT_EQ(unpacked(withLength(offset + length, bytesPiece(text) + copyPiece(length, offset)), offset + length),
                repeated(text, offset + length))
          << offset << " " << length;
    }
  }
}

TEST(Snappy, TakesOffsetsOfOneTwoAndFourBytes) {
  std::string text(300, '-');
  text.replace(0, 5, "start");
  const std::string head = withLength(305, "\xf4\x2b\x01"s + text);
  EXPECT_EQ(unpacked(head + "\x25\x2c"s, 305), text + "start"s) << "300 in eleven bits";
  EXPECT_EQ(unpacked(head + "\x12\x2c\x01"s, 305), text + "start"s);
  EXPECT_EQ(unpacked(head + "\x13\x2c\x01\0\0"s, 305), text + "start"s);
}

TEST(Snappy, RefusesCopiesOfWhatIsNotThere) {
  EXPECT_EQ(unpacked(withLength(5, bytesPiece("a") + copyPiece(4, 0)), 5), std::nullopt);
  EXPECT_EQ(unpacked(withLength(5, bytesPiece("a") + copyPiece(4, 2)), 5), std::nullopt);
  EXPECT_EQ(unpacked(withLength(4, copyPiece(4, 1)), 4), std::nullopt);
}

TEST(Snappy, RefusesMoreOrFewerBytesThanThereAreToBe) {
  EXPECT_EQ(unpacked(withLength(3, bytesPiece("abcd")), 3), std::nullopt);
  EXPECT_EQ(unpacked(withLength(5, bytesPiece("abcd")), 5), std::nullopt);
  EXPECT_EQ(unpacked(withLength(4, bytesPiece("abcd")), 5), std::nullopt) << "the page says otherwise";
  EXPECT_EQ(unpacked(withLength(6, bytesPiece("ab") + copyPiece(5, 1)), 6), std::nullopt);
}

// A library that counts in 32 bits takes such a length for none.
TEST(Snappy, RefusesALengthOfTwoToThePowerOf32) {
  EXPECT_EQ(unpacked("\x00\xfc\xff\xff\xff\xff"s, 0), std::nullopt);
  EXPECT_EQ(unpackedByLibrary("\x00\xfc\xff\xff\xff\xff"s, 0), "");
}

TEST(Snappy, RefusesWhatIsCutAnywhere) {
  std::string text;
  for (int number = 0; number < 400; ++number) text += std::to_string(number % 37);
  const std::string packed = packedByLibrary(text);
  ASSERT_EQ(unpacked(packed, text.size()), text);
  for (std::size_t length = 0; length < packed.size(); ++length)
    EXPECT_EQ(unpacked(packed.substr(0, length), text.size()), std::nullopt) << length;
}

// Texts that repeat themselves at any distance.
rc::Gen<std::string> packableText() {
  const auto piece =
      rc::gen::pair(rc::gen::container<std::string>(rc::gen::inRange('a', 'e')), rc::gen::inRange(1, 40));
  return rc::gen::map(rc::gen::container<std::vector<std::pair<std::string, int>>>(piece), [](const auto& pieces) {
    std::string text;
    for (const auto& [part, times] : pieces) {
      for (int time = 0; time < times; ++time) text += part;
    }
    return text;
  });
}

RC_GTEST_PROP(Snappy, UnpacksWhatItsLibraryPacked, ()) {
  const std::string text = *packableText();
  RC_ASSERT(unpacked(packedByLibrary(text), text.size()) == text);
}

RC_GTEST_PROP(Snappy, SaysOfAnyBytesWhatItsLibrarySays, ()) {
  const std::string text = *packableText();
  std::string packed = packedByLibrary(text);
  for (int changes = *rc::gen::inRange(0, 4); changes > 0; --changes)
    packed[*rc::gen::inRange<std::size_t>(0, packed.size())] = *rc::gen::arbitrary<char>();
  const std::size_t bytes = *rc::gen::element<std::size_t>(text.size(), text.size() + 1, std::size_t{7});
  RC_ASSERT(unpacked(packed, bytes) == unpackedByLibrary(packed, bytes));
}

}  // namespace
}  // namespace workbench::data
