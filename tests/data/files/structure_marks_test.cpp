// Marks by vector instructions and by plain ones against looking at every byte.
#include "workbench/data/files/structure_marks.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace workbench::data {
namespace {

using Positions = std::vector<std::uint32_t>;

Positions expectedMarks(std::string_view text, StructureBytes bytes) {
  Positions positions;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::string_view marked{"\n\r\0", 3};
    const bool isMarked =
        text[at] == bytes.delimiter || text[at] == bytes.quote || marked.find(text[at]) != std::string_view::npos;
    if (isMarked) positions.push_back(static_cast<std::uint32_t>(at));
  }
  return positions;
}

void checkMarks(const StructureMarks& marks, std::string_view text, StructureBytes bytes) {
  RC_ASSERT(Positions(marks.positions(), marks.positions() + marks.count()) == expectedMarks(text, bytes));
  const auto nonAscii = std::find_if(text.begin(), text.end(), [](char byte) { return (byte & 0x80) != 0; });
  RC_ASSERT(marks.asciiUpTo() <= static_cast<std::size_t>(nonAscii - text.begin()));
  if (nonAscii == text.end()) RC_ASSERT(marks.asciiUpTo() == text.size());
}

// What stands behind the text is marked by nobody.
TEST(StructureMarks, AreTheSameByEveryWay) {
  StructureMarks byVectors;
  StructureMarks plain;
  EXPECT_TRUE(
      rc::check([&](const std::vector<std::uint8_t>& picks, std::uint16_t repeat, std::uint8_t cut, bool hasQuotes) {
        using namespace std::string_view_literals;
        constexpr std::string_view characters = "a,\n\"\r\0;b1é\xFF\x8A|0z"sv;
        std::string text;
        for (int round = 0; round <= repeat % 40; ++round) {
          for (const std::uint8_t pick : picks) text += pick < 128 ? 'x' : characters[pick % characters.size()];
        }
        text.resize(text.size() - std::min<std::size_t>(text.size(), cut));
        const std::size_t size = text.size();
        text.append(readBehindMarks, ',');
        const StructureBytes bytes{',', hasQuotes ? '"' : ','};
        byVectors.find(text.data(), size, bytes);
        plain.findPlainly(text.data(), size, bytes);
        checkMarks(byVectors, std::string_view(text).substr(0, size), bytes);
        checkMarks(plain, std::string_view(text).substr(0, size), bytes);
        RC_ASSERT(byVectors.asciiUpTo() == plain.asciiUpTo());
      }));
}

TEST(StructureMarks, AreFoundWhereEveryByteIsMarked) {
  const std::string text(10'000 + readBehindMarks, ',');
  StructureMarks marks;
  marks.find(text.data(), 10'000, {});
  EXPECT_EQ(marks.count(), 10'000U);
  EXPECT_EQ(marks.positions()[9'999], 9'999U);
  marks.find(text.data(), 0, {});
  EXPECT_EQ(marks.count(), 0U);
}

}  // namespace
}  // namespace workbench::data
