// Texts in other encodings as UTF-8.

#include "workbench/data/files/encoded_source.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <unicode/unistr.h>

#include "tests/data/files/scanner_fixture.h"

namespace workbench::data {
namespace {

using namespace std::string_literals;

// The text as UTF-8, else what stands in the way.
std::string converted(const std::string& bytes, const std::string& encoding, std::size_t pieceBytes = 1,
                      std::size_t room = 1) {
  auto source = asUtf8(std::make_unique<TextSource>(bytes, pieceBytes), encoding);
  if (!source) return source.problem().text();
  std::string text;
  std::vector<char> buffer(room);
  for (;;) {
    const Outcome<std::size_t> read = (*source)->read(buffer.data(), buffer.size());
    if (!read) return read.problem().text();
    if (*read == 0) return text;
    text.append(buffer.data(), *read);
  }
}

TEST(EncodedSource, ReadsWhatOtherEncodingsSay) {
  EXPECT_EQ(converted("K\xF6ln \x80", "windows-1252"), "Köln €");
  EXPECT_EQ(converted("K\xF6ln", "iso-8859-1"), "Köln");
  EXPECT_EQ(converted("K\xF6ln", "latin1"), "Köln");
  EXPECT_EQ(converted("\xA4", "ISO-8859-15"), "€");
  EXPECT_EQ(converted("\x93\xFA\x96\x7B", "Shift_JIS"), "日本");
  EXPECT_EQ(converted("plain", "us-ascii"), "plain");
  EXPECT_EQ(converted("", "windows-1252"), "");
}

TEST(EncodedSource, ReadsUtf16WithItsMark) {
  EXPECT_EQ(converted("\xFF\xFE"
                      "a\0\xAC\x20\x3D\xD8\x00\xDE"s,
                      "utf-16"),
            "a€😀");
  EXPECT_EQ(converted("\xFE\xFF\0a\x20\xAC"s, "UTF-16"), "a€");
  EXPECT_EQ(converted("a\0\xAC\x20"s, "utf-16le"), "a€");
  EXPECT_EQ(converted("\xFF\xFE"
                      "a\0"s,
                      "utf-16le"),
            "\xEF\xBB\xBF"
            "a")
      << "the scanner takes the mark away";
  EXPECT_EQ(
      converted("a\0b\0"s, "utf-16"),
      "The file is to be utf-16, and it has no byte order mark at its start. Name UTF-16LE or UTF-16BE, whichever it "
      "is, or save it as UTF-8.");
  EXPECT_EQ(converted("", "utf-16"), "");
}

TEST(EncodedSource, RefusesBytesThatTheEncodingHasNot) {
  const std::string remedy = " Name the encoding that the file has, or save it as UTF-8.";
  EXPECT_EQ(converted("abc\xF6", "us-ascii"), "The byte 0xF6 at offset 3 is no us-ascii." + remedy);
  for (const std::size_t pieceBytes : {1U, 2U, 3U, 5U, 100U}) {
    EXPECT_EQ(converted("\xFF\xFE"
                        "a\0\x00\xD8"
                        "b\0"s,
                        "utf-16", pieceBytes),
              "The bytes 0x00 0xD8 at offset 4 are no utf-16." + remedy);
    EXPECT_EQ(converted("a\0\x00\xD8\x00\xD8"s, "utf-16le", pieceBytes),
              "The bytes 0x00 0xD8 at offset 2 are no utf-16le." + remedy);
    EXPECT_EQ(converted("ab\x81\x20"
                        "cd",
                        "Shift_JIS", pieceBytes),
              "The byte 0x81 at offset 2 is no Shift_JIS." + remedy);
  }
  EXPECT_EQ(converted("\xFF\xFE"
                      "a\0b"s,
                      "utf-16"),
            "The byte 0x62 at offset 4 is no utf-16." + remedy);
  EXPECT_EQ(converted("ab\x93", "Shift_JIS"), "The byte 0x93 at offset 2 is no Shift_JIS." + remedy);
  const std::string longText(200'000, 'x');
  EXPECT_EQ(converted(longText + "\xF6", "us-ascii", 1000, 5000),
            "The byte 0xF6 at offset 200000 is no us-ascii." + remedy);
}

TEST(EncodedSource, LeavesUtf8AsItIs) {
  for (const char* name : {"", "utf-8", "UTF-8", "utf8", "Utf_8"}) {
    EXPECT_TRUE(isUtf8(name)) << name;
    EXPECT_EQ(converted("K\xF6ln", name), "K\xF6ln") << "whether it is sound is the scanner's to say";
  }
  for (const char* name : {"utf-16", "latin1", "us-ascii", "utf-7"}) EXPECT_FALSE(isUtf8(name)) << name;
}

TEST(EncodedSource, KnowsWhichNamesAreOfEncodings) {
  EXPECT_FALSE(encodingProblem(""));
  EXPECT_FALSE(encodingProblem("windows-1252"));
  for (const char* name : {"latin-one", "utf-8,version=1", " ", "?"}) {
    EXPECT_EQ(encodingProblem(name), "\"" + std::string(name) +
                                         "\" is no encoding that is known; name it as IANA does, like utf-8 or "
                                         "windows-1252.");
  }
  EXPECT_EQ(converted("x", "latin-one"),
            "\"latin-one\" is no encoding that is known; name it as IANA does, like utf-8 or windows-1252.");
}

TEST(EncodedSource, GivesTheSameTextInPiecesOfAnySize) {
  EXPECT_TRUE(rc::check([](const std::vector<std::uint16_t>& characters, std::uint8_t pieceBytes, std::uint8_t room) {
    icu::UnicodeString text;
    for (const std::uint16_t character : characters) {
      text.append(
          static_cast<UChar32>(character < 0xD800 || character > 0xDFFF ? character : 0x1F600 + character % 64));
    }
    std::string utf8;
    text.toUTF8String(utf8);
    std::string bytes = "\xFE\xFF";
    for (std::int32_t index = 0; index < text.length(); ++index) {
      bytes += static_cast<char>(text[index] >> 8);
      bytes += static_cast<char>(text[index] & 0xFF);
    }
    RC_ASSERT(converted(bytes, "utf-16", 1 + pieceBytes % 7, 1 + room % 7) == utf8);
  }));
}

}  // namespace
}  // namespace workbench::data
