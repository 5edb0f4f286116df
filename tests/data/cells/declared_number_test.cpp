// Numbers, integers, truth values and years as a dictionary declares them.

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>

#include "tests/data/cells/reading_builder.h"

namespace workbench::data {
namespace {

const CellReading number = declared(CellType::number);
const CellReading integer = declared(CellType::integer);
const CellReading boolean = declared(CellType::boolean);
const CellReading year = declared(CellType::year);
const CellReading german = declared(CellType::number).decimalChar(",").groupChar(".");

constexpr const char* beyond = "is beyond 2^53, which is not held exactly; declare the field as string";

TEST(DeclaredNumber, TakesEveryFormOfADecimalNumber) {
  const std::vector<std::pair<std::string, std::string>> forms = {
      {"0", "0"},        {"7", "7"},       {"-7", "-7"},    {"+7", "7"},         {"1.5", "1.5"},  {"1.", "1"},
      {".5", "0.5"},     {"-.5", "-0.5"},  {"+.5", "0.5"},  {"1E3", "1000"},     {"1e3", "1000"}, {"1e+3", "1000"},
      {"1E-3", "0.001"}, {"1.5e2", "150"}, {"007", "7"},    {"-007.50", "-7.5"}, {"+00", "0"},    {"000", "0"},
      {"00.5", "0.5"},   {"0e0", "0"},     {"1.50", "1.5"}, {"007e2", "700"},    {".5E1", "5"},   {"5.e1", "50"},
  };
  for (const auto& [cell, value] : forms) EXPECT_EQ(valueOf(number, cell), value) << cell;
}

TEST(DeclaredNumber, RefusesEverythingElse) {
  for (const char* cell :
       {"-",    "+",     ".",        "e5", "1e", "1e+", "--1",    "+-1",   "-+1", "1 000", "1,000", "1.2.3",
        "0x10", "1_000", "Infinity", "1f", "١",  "95%", "EUR 95", "1e5.5", "one", "1-",    "- 1"}) {
    EXPECT_EQ(valueOf(number, cell), "is no number") << cell;
  }
  EXPECT_EQ(valueOf(number, ""), "is empty, and an empty text is not declared as missing");
}

TEST(DeclaredNumber, IsFinite) {
  for (const char* cell : {"NaN", "nan", "NAN", "INF", "inf", "-INF", "-Inf", " NaN "}) {
    EXPECT_EQ(valueOf(number, cell), "is no finite number, and data hold no other") << cell;
  }
  EXPECT_EQ(valueOf(number, "+INF"), "is no number");
  EXPECT_EQ(valueOf(integer, "NaN"), "is no integer");
}

TEST(DeclaredNumber, MayHaveWhiteSpaceAroundIt) {
  for (const char* cell : {" 5", "5 ", "\t5\n", "  5  ", "\r5"}) {
    EXPECT_EQ(valueOf(number, cell), "5") << cell;
    EXPECT_EQ(valueOf(integer, cell), "5") << cell;
  }
  EXPECT_EQ(valueOf(number, "   "), "is no number");
  EXPECT_EQ(valueOf(year, " 2026"), "is no year of four digits at least");
  EXPECT_EQ(valueOf(boolean, " 1"), "is none of the texts for true and for false");
}

TEST(DeclaredNumber, IsHeldExactlyOrRefused) {
  EXPECT_EQ(valueOf(number, "9007199254740992"), "9007199254740992");
  EXPECT_EQ(valueOf(number, "009007199254740992.0"), "9007199254740992");
  EXPECT_EQ(valueOf(number, "9007199254740993"), beyond);
  EXPECT_EQ(valueOf(number, "-9007199254740993.0"), beyond);
  EXPECT_EQ(valueOf(integer, "9007199254740992"), "9007199254740992");
  EXPECT_EQ(valueOf(integer, "9007199254740993"), beyond);
  EXPECT_EQ(valueOf(integer, "12345678901234567890123456789012345"), beyond);
  EXPECT_EQ(valueOf(german, "9.007.199.254.740.993"), beyond);
  EXPECT_EQ(valueOf(number, "0.30000000000000004"), "0.30000000000000004");
  EXPECT_EQ(valueOf(number, "0.12345678901234567890123456789012345"),
            "has more digits than are held exactly; declare the field as string");
  EXPECT_EQ(valueOf(number, "0.1234567890123456789012345678901234567"),
            "has more digits than are held exactly; declare the field as string");
  EXPECT_EQ(valueOf(number, "0.30000000000000001"),
            "is a number that is not held exactly; declare the field as string");
  for (const char* cell : {"1e400", "-1e400", "1e-400"}) {
    EXPECT_EQ(valueOf(number, cell), "is beyond the range of numbers that are held; declare the field as string");
  }
}

TEST(DeclaredNumber, HasTheDecimalMarkAndTheGroupsThatAreDeclared) {
  EXPECT_EQ(valueOf(german, "1.234,50"), "1234.5");
  EXPECT_EQ(valueOf(german, "-1.234.567"), "-1234567");
  EXPECT_EQ(valueOf(german, ",5"), "0.5");
  EXPECT_EQ(valueOf(german, "1,5e3"), "1500");
  EXPECT_EQ(valueOf(german, "12.34"), "1234") << "where group marks stand is not looked at";
  EXPECT_EQ(valueOf(german, "1,2,3"), "is no number with \",\" before its decimals");
  const CellReading comma = declared(CellType::number).decimalChar(",");
  EXPECT_EQ(valueOf(comma, "1,5"), "1.5");
  EXPECT_EQ(valueOf(comma, "1.5"), "is no number with \",\" before its decimals") << "a point is left";
  const CellReading english = declared(CellType::number).groupChar(",");
  EXPECT_EQ(valueOf(english, "1,234.5"), "1234.5");
  EXPECT_EQ(valueOf(english, "1234.5"), "1234.5");
  EXPECT_EQ(valueOf(english, ",-5"), "is no number");
  const CellReading integers = declared(CellType::integer).groupChar("'");
  EXPECT_EQ(valueOf(integers, "1'234'567"), "1234567");
  EXPECT_EQ(valueOf(integers, "1'234.0"), "is no integer");
}

TEST(DeclaredNumber, TakesMarksOfSeveralBytes) {
  const CellReading narrow = declared(CellType::number).groupChar("\u202F").decimalChar("\u066B");
  EXPECT_EQ(valueOf(narrow, "1\u202F234\u202F567\u066B25"), "1234567.25");
  EXPECT_EQ(valueOf(narrow, "1\u00A0234"), "is no number with \"\u066B\" before its decimals");
  const CellReading wide = declared(CellType::integer).groupChar("\u00A0");
  EXPECT_EQ(valueOf(wide, "1\u00A0000"), "1000");
}

TEST(DeclaredNumber, TellsGroupsThatAreNotOfThreeDigits) {
  CellReader reader(german);
  for (const char* cell : {"1.234", "12.345.678", "123.456,75", "1234", "1,5", "-1.234", "+1.234,5e3", " 1.234 "}) {
    EXPECT_FALSE(reader.hasOddGroups(cell)) << cell;
  }
  for (const char* cell : {"1.5", "12.34", "1234.567", "1.2345", ".5", "1.234.5", "-1.5", "1,234.5", "1.", "1..234"}) {
    EXPECT_TRUE(reader.hasOddGroups(cell)) << cell;
  }
  EXPECT_FALSE(CellReader(number).hasOddGroups("1.5"));
}

TEST(DeclaredNumber, MayStandAmongOtherCharacters) {
  const CellReading among = declared(CellType::number).amongOtherText();
  EXPECT_EQ(valueOf(among, "95%"), "95");
  EXPECT_EQ(valueOf(among, "EUR 95"), "95");
  EXPECT_EQ(valueOf(among, "€.5 net"), "0.5") << "its point belongs to a number";
  EXPECT_EQ(valueOf(among, "EUR -9.50 each"), "-9.5");
  EXPECT_EQ(valueOf(among, "(5)"), "5");
  EXPECT_EQ(valueOf(among, "-5"), "-5");
  EXPECT_EQ(valueOf(among, "5e3 m"), "5000");
  EXPECT_EQ(valueOf(among, "5 e"), "5");
  EXPECT_EQ(valueOf(among, "5em"), "5");
  EXPECT_EQ(valueOf(among, "No. 5"), "5");
  EXPECT_EQ(valueOf(among, "about 5."), "5");
  EXPECT_EQ(valueOf(declared(CellType::integer).amongOtherText(), "95 %"), "95");
  const CellReading germanAmong = declared(CellType::number).amongOtherText().decimalChar(",").groupChar(".");
  EXPECT_EQ(valueOf(germanAmong, "EUR 1.234,50,-"), "has a digit or a sign apart from its number");
  EXPECT_EQ(valueOf(germanAmong, "EUR 1.234,50."), "1234.5");
}

TEST(DeclaredNumber, IsRefusedAmongCharactersThatMayBelongToIt) {
  const CellReading among = declared(CellType::number).amongOtherText();
  for (const char* cell : {"1-2", "5 of 10", "1 000", "m2 5", "5 - ", "-$5", "- 5", "5-", "\u22125", "1.2.3"}) {
    EXPECT_EQ(valueOf(among, cell), "has a digit or a sign apart from its number") << cell;
  }
  EXPECT_EQ(valueOf(declared(CellType::integer).amongOtherText(), "95.5%"),
            "has a digit or a sign apart from its integer");
  EXPECT_EQ(valueOf(among, "EUR"), "has no number in it");
  EXPECT_EQ(valueOf(declared(CellType::number), "95%"), "is no number") << "unless that is declared";
}

TEST(DeclaredNumber, IsAnIntegerWithoutPointAndExponentOnly) {
  EXPECT_EQ(valueOf(integer, "5"), "5");
  EXPECT_EQ(valueOf(integer, "-005"), "-5");
  EXPECT_EQ(valueOf(integer, "+5"), "5");
  EXPECT_EQ(valueOf(integer, "007"), "7");
  for (const char* cell : {"1.0", "1.", "1e3", "x", "-", "1 2"})
    EXPECT_EQ(valueOf(integer, cell), "is no integer") << cell;
}

TEST(DeclaredNumber, OfTruthIsOneOfTheDeclaredTexts) {
  for (const char* cell : {"true", "True", "TRUE", "1"}) EXPECT_EQ(valueOf(boolean, cell), "1") << cell;
  for (const char* cell : {"false", "False", "FALSE", "0"}) EXPECT_EQ(valueOf(boolean, cell), "0") << cell;
  for (const char* cell : {"tRUE", "yes", "t", "01", "true "}) {
    EXPECT_EQ(valueOf(boolean, cell), "is none of the texts for true and for false") << cell;
  }
  const CellReading yesNo = declared(CellType::boolean).trueTexts({"ja", "j"}).falseTexts({"nein"});
  EXPECT_EQ(valueOf(yesNo, "j"), "1");
  EXPECT_EQ(valueOf(yesNo, "nein"), "0");
  EXPECT_EQ(valueOf(yesNo, "true"), "is none of the texts for true and for false");
}

TEST(DeclaredNumber, OfAYearHasFourDigitsAtLeast) {
  EXPECT_EQ(valueOf(year, "2026"), "2026");
  EXPECT_EQ(valueOf(year, "-0044"), "-44");
  EXPECT_EQ(valueOf(year, "12026"), "12026");
  EXPECT_EQ(valueOf(year, "9007199254740993"), beyond);
  for (const char* cell : {"26", "026", "+2026", "2026-01", "2026Z", "2026.0", "--2026"}) {
    EXPECT_EQ(valueOf(year, cell), "is no year of four digits at least") << cell;
  }
}

TEST(DeclaredNumber, HoldsNoValueWhereTheExactTextSaysSo) {
  const CellReader inherited(number);
  EXPECT_TRUE(inherited.holdsNoValue(""));
  EXPECT_FALSE(inherited.holdsNoValue(" "));
  const std::string longText(100, 'x');
  const CellReader coded(declared(CellType::number).noValue({"NA", "-99", "", longText}));
  for (const auto& cell : {std::string("NA"), std::string("-99"), std::string(), longText})
    EXPECT_TRUE(coded.holdsNoValue(cell));
  for (const char* cell : {"na", "NA ", " -99", "-99.0", "-98", "N"}) EXPECT_FALSE(coded.holdsNoValue(cell)) << cell;
  EXPECT_FALSE(coded.holdsNoValue(std::string(99, 'x')));
  EXPECT_FALSE(CellReader(declared(CellType::number).noValue({})).holdsNoValue(""));
}

TEST(DeclaredNumber, IsRewrittenInAFormThatNeedsNoDeclaration) {
  EXPECT_EQ(plainOf(german, "1.234,50"), "1234.50");
  EXPECT_EQ(plainOf(german, "1,5E3"), "1.5E3");
  EXPECT_EQ(plainOf(number, " 007 "), "7");
  EXPECT_EQ(plainOf(number, "-0.50"), "-0.50");
  EXPECT_EQ(plainOf(number, "+5"), "5");
  EXPECT_EQ(plainOf(declared(CellType::number).amongOtherText(), "95.0%"), "95.0");
  EXPECT_EQ(plainOf(integer, "-007"), "-7");
  EXPECT_EQ(plainOf(year, "-0044"), "-44");
  EXPECT_EQ(plainOf(boolean, "True"), "1");
  EXPECT_EQ(plainOf(boolean, "FALSE"), "0");
  EXPECT_EQ(plainOf(boolean, "no"), "is none of the texts for true and for false");
  EXPECT_EQ(plainOf(integer, "9007199254740993"), beyond);
  EXPECT_EQ(plainOf(declared(CellType::text), " 007 "), " 007 ");
}

TEST(DeclaredNumber, IsNoValueOfATextColumn) {
  CellReader reader(declared(CellType::text));
  EXPECT_FALSE(reader.number("5"));
}

// Whatever is declared of the marks, a number written with them is the same number.
TEST(DeclaredNumber, ReadsAsThePlainNumberDoes) {
  EXPECT_TRUE(rc::check([](std::int64_t mantissa, std::uint8_t places, bool hasGroups) {
    const std::int64_t bounded = mantissa % 1'000'000'000'000'000;
    std::string digits = fmt::format("{:05}", std::abs(bounded));
    const std::size_t point = digits.size() - places % 5;
    std::string written = bounded < 0 ? "-" : "";
    for (std::size_t index = 0; index < digits.size(); ++index) {
      if (index == point) written += ',';
      if (hasGroups && index != 0 && index < point && (point - index) % 3 == 0) written += '.';
      written += digits[index];
    }
    std::string plain = (bounded < 0 ? "-" : "") + digits;
    if (point < digits.size()) plain.insert(plain.size() - (digits.size() - point), ".");
    CellReader reader(german);
    const auto value = reader.number(written);
    RC_ASSERT(value.has_value());
    RC_ASSERT(*value == std::stod(plain));
    RC_ASSERT(!reader.hasOddGroups(written) || !hasGroups);
    std::string rewritten;
    RC_ASSERT(reader.plainText(written, rewritten));
    RC_ASSERT(CellReader(number).number(rewritten) == value);
  }));
}

}  // namespace
}  // namespace workbench::data
