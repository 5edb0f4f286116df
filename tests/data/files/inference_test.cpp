// Which types are inferred, exactly.

#include <gtest/gtest.h>

#include <bit>

#include "tests/data/files/file_fixture.h"

namespace workbench::data {
namespace {

using VRIX_Variable_Enumerations::Alignment;
using VRIX_Variable_Enumerations::MeasurementLevel;

// The type of a column with these cells.
std::string typeOf(const std::vector<std::string>& cells) {
  const TestFolder folder;
  return types(opened(folder.write("a.csv", fmt::format("x,end\n{},\n", fmt::join(cells, ",\n")))))
      .substr(2)
      .substr(0, types(opened(folder.path("a.csv"))).find(',') - 2);
}

TEST(Inference, TakesAColumnOfDecimalNumbersForANumber) {
  EXPECT_EQ(typeOf({"1", "22", "333"}), "F3.0");
  EXPECT_EQ(typeOf({"1", "-22", ""}), "F3.0");
  EXPECT_EQ(typeOf({"1.5", "22.25", "3"}), "F5.2");
  EXPECT_EQ(typeOf({"1.50", "-123"}), "F7.2");
  EXPECT_EQ(typeOf({"1e3", "2.5e-2"}), "F8.3");
  EXPECT_EQ(typeOf({"\"1\"", "2"}), "F1.0") << "quotes do not matter";
}

TEST(Inference, ShowsNumbersInScientificFormWhereTheyAreTooLong) {
  EXPECT_EQ(typeOf({"1e300", "1.25"}), "E10.2");
  EXPECT_EQ(typeOf({"1e-30"}), "E8.0");
  EXPECT_EQ(typeOf({"0.10000000000000001"}), "E24.16");
  EXPECT_EQ(typeOf({"0.1234567890123456", "1"}), "F18.16");
}

TEST(Inference, KeepsTextWhatANumberDoesNotHold) {
  EXPECT_EQ(typeOf({"007", "008"}), "A3");
  EXPECT_EQ(typeOf({"9007199254740993"}), "A16");
  EXPECT_EQ(typeOf({"9007199254740992"}), "F16.0");
  EXPECT_EQ(typeOf({"1", "1e400"}), "A5");
  EXPECT_EQ(typeOf({"1", "1e-400"}), "A6");
  EXPECT_EQ(typeOf({"0.12345678901234567890123456789012345"}), "A37");
  EXPECT_EQ(typeOf({"1", " 2"}), "A2");
  EXPECT_EQ(typeOf({"1", "nan"}), "A3");
  EXPECT_EQ(typeOf({"inf", "1"}), "A3");
  EXPECT_EQ(typeOf({"true", "false"}), "A5");
  EXPECT_EQ(typeOf({"\"1,000\""}), "A5");
}

TEST(Inference, KnowsDatesAndTimes) {
  EXPECT_EQ(typeOf({"2026-11-21", "", "1899-12-31"}), "DATE10.0");
  EXPECT_EQ(typeOf({"15:59:55", "00:00:00.25"}), "TIME11.2");
  EXPECT_EQ(typeOf({"2026-11-21T15:59:55", "2026-11-21 15:59:55.125"}), "DATETIME23.3");
  EXPECT_EQ(typeOf({"2026-11-21T15:59:55"}), "DATETIME19.0");
  EXPECT_EQ(typeOf({"2026-02-30"}), "A10");
  EXPECT_EQ(typeOf({"2026-11-21T15:59:55Z"}), "A20");
  EXPECT_EQ(typeOf({"2026-11-21T15:59:55.123456789"}), "A29");
}

TEST(Inference, TakesMixedKindsForText) {
  EXPECT_EQ(typeOf({"2026-11-21", "2026-11-21T15:59:55"}), "A19");
  EXPECT_EQ(typeOf({"2026-11-21", "5"}), "A10");
  EXPECT_EQ(typeOf({"5", "15:59:55"}), "A8");
}

TEST(Inference, TakesAnEmptyColumnForANumberThatIsMissing) {
  const TestFolder folder;
  const auto file = opened(folder.write("a.csv", "a,b\n,1\n\"\",2\n"));
  EXPECT_EQ(types(file), "a F8.0, b F1.0");
  EXPECT_EQ(shown(file), ". 1 / . 2");
}

TEST(Inference, MeasuresTextsInBytes) {
  EXPECT_EQ(typeOf({"Köln", "Bonn"}), "A5");
  EXPECT_EQ(typeOf({"x  ", "y"}), "A3");
}

TEST(Inference, SetsWhatElseAVariableHas) {
  const TestFolder folder;
  const auto file = opened(folder.write("a.csv", "n,t\n1,x\n"));
  const Variable& number = file->dictionary().at(0);
  EXPECT_EQ(number.alignment, Alignment::right);
  EXPECT_EQ(number.level, MeasurementLevel::scale);
  EXPECT_EQ(number.displayWidth, 8);
  const Variable& text = file->dictionary().at(1);
  EXPECT_EQ(text.alignment, Alignment::left);
  EXPECT_EQ(text.level, MeasurementLevel::nominal);
  EXPECT_EQ(text.width, 1);
  EXPECT_EQ(text.format.type, FormatType::text);
}

TEST(Inference, LooksAtBothFilesOfAComparison) {
  const TestFolder folder;
  const std::string first = folder.write("a.csv", "n,empty,t,d,own\n1,,x,2026-01-01,7\n");
  const std::string second = folder.write("b.csv", "T,N,Empty,D\nlonger,-2.25,2026-01-01,2026-01-01\n");
  EXPECT_EQ(types(opened(first, second)), "n F5.2, empty DATE10.0, t A6, d DATE10.0, own F1.0");
  EXPECT_EQ(types(opened(second, first)), "T A6, N F5.2, Empty DATE10.0, D DATE10.0");
}

TEST(Inference, OfBothFilesGivesTheSameTypesFromEitherSide) {
  const TestFolder folder;
  const std::string first = folder.write("a.csv", "a,b,c,d\n1,2012-01-01,10:00:00,\n");
  const std::string second = folder.write("b.csv", "a,b,c,d\nx,2012/01/01,10:00:00.5,5\n");
  EXPECT_EQ(types(opened(first, second)), types(opened(second, first)));
  EXPECT_EQ(types(opened(first, second)), "a A1, b A10, c TIME10.1, d F1.0");
  EXPECT_EQ(shown(opened(first, second)), "'1' '2012-01-01' 36000 .");
}

TEST(Inference, ReadsNumbersToTheLastBit) {
  const TestFolder folder;
  const auto file =
      opened(folder.write("a.csv", "x\n0.1\n0.30000000000000004\n-0\n5e-324\n1.7976931348623157e308\n+4\n.5\n"));
  const auto reader = file->openReader();
  CaseBlock block(1);
  reader->fill(block);
  const std::vector<double> expected{0.1, 0.30000000000000004, -0.0, 5e-324, 1.7976931348623157e308, 4, 0.5};
  ASSERT_EQ(block.cases(), expected.size());
  for (std::size_t index = 0; index < expected.size(); ++index) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(block.at(index)->number), std::bit_cast<std::uint64_t>(expected[index]));
  }
}

}  // namespace
}  // namespace workbench::data
