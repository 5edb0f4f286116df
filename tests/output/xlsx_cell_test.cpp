#include "workbench/output/xlsx_cell.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>

#include "tests/output/samples.h"
#include "workbench/output/text_access.h"
#include "workbench/output/value_format.h"

namespace workbench::output {
namespace {

struct Written {
  std::string content;  // a number, or a text in quotes
  std::string numberFormat;
  XlsxRemarks remarks;
};

Written written(const BpCellText& text, const text::Wording& wording = english(), const std::string& marks = {}) {
  Written result;
  const XlsxCell cell = xlsxCell(textOf(text), marks, wording, XlsxLimits{.textUnits = 20}, result.remarks);
  const auto* number = std::get_if<double>(&cell.held);
  result.content = number != nullptr ? fullNumber(*number) : '"' + std::get<std::string>(cell.held) + '"';
  result.numberFormat = cell.numberFormat;
  return result;
}

BpDataValue valueOf(double number, FormatType type, std::int32_t width = 8, std::int32_t decimals = 0) {
  FakeVariable variable("v");
  variable.formatted(type, width, decimals);
  return {variable, number, BpValueShow::inPrintFormat};
}

struct NumberCase {
  double value;
  FormatType type;
  std::int32_t width;
  std::int32_t decimals;
  const char* content;
  const char* format;
};

TEST(XlsxCell, HoldsANumberWithItsPrintFormat) {
  const NumberCase cases[] = {
      {1.005, FormatType::number, 8, 2, "1.005", "0.00"},
      {-3, FormatType::number, 8, 0, "-3", "0"},
      {1234.5, FormatType::comma, 8, 2, "1234.5", "#,##0.00"},
      {1234.5, FormatType::dot, 8, 0, "1234.5", "#,##0"},
      {1234.5, FormatType::dollar, 8, 2, "1234.5", "\"$\"#,##0.00"},
      {12.5, FormatType::percent, 8, 1, "12.5", "0.0\"%\""},
      {12345, FormatType::scientific, 8, 2, "12345", "0.00E+00"},
      {42, FormatType::restricted, 5, 0, "42", "00000;-0000"},
      {20778, FormatType::date, 10, 0, "46347", "yyyy-mm-dd"},
      {-25508, FormatType::date, 10, 0, "61", "yyyy-mm-dd"},
      {43200, FormatType::time, 8, 0, "0.5", "[hh]:mm:ss"},
      {43200.5, FormatType::time, 10, 1, "0.500005787037037", "[hh]:mm:ss.0"},
      {20778 * 86400.0 + 43200, FormatType::dateTime, 19, 0, "46347.5", "yyyy-mm-dd hh:mm:ss"},
      {7.25, FormatType::text, 8, 0, "7.25", ""},
  };
  for (const NumberCase& one : cases) {
    const Written cell = written(valueOf(one.value, one.type, one.width, one.decimals));
    EXPECT_EQ(cell.content, one.content) << one.value;
    EXPECT_EQ(cell.numberFormat, one.format) << one.value;
    EXPECT_TRUE(cell.remarks.empty()) << one.value;
  }
}

TEST(XlsxCell, HoldsCountsAndPercentagesAsSpreadsheetsDo) {
  EXPECT_EQ(written(count(1204)).content, "1204");
  EXPECT_EQ(written(count(1204)).numberFormat, "#,##0");
  EXPECT_EQ(written(percent(83.25)).content, "0.8325");
  EXPECT_EQ(written(percent(99.9)).content, "0.999");
  EXPECT_EQ(written(percent(-100)).content, "-1");
  EXPECT_EQ(written(percent(83.25)).numberFormat, "0.0%");
  EXPECT_EQ(written(percent(0.0004)).numberFormat, "0.0000%");  // no share seems to be nothing
}

TEST(XlsxCell, ShowsDatesInTheOrderOfTheLanguage) {
  const auto german = std::move(*text::Wording::load("de"));
  EXPECT_EQ(written(valueOf(20778, FormatType::date), *german).numberFormat, "dd.mm.yyyy");
  EXPECT_EQ(written(valueOf(0, FormatType::dateTime), *german).numberFormat, "dd.mm.yyyy hh:mm:ss");
}

TEST(XlsxCell, HoldsAsTextWhatANumberOfASpreadsheetWouldNotHold) {
  const NumberCase cases[] = {
      {0.1 + 0.2, FormatType::number, 8, 2, "\"0.30000000000000004\"", ""},  // 17 digits
      {9007199254740991, FormatType::number, 8, 0, "\"9007199254740991\"", ""},
      {1e308, FormatType::number, 8, 0, "\"1e+308\"", ""},
      {DBL_MIN / 2, FormatType::number, 8, 0, "\"1.1125369292536007e\xE2\x80\xA6\"", ""},  // and cut, in this test
      {-25509, FormatType::date, 10, 0, "\"1900-02-28\"", ""},
      {-1, FormatType::time, 8, 0, "\"-00:00:01\"", ""},
      {0.0001, FormatType::time, 12, 4, "\"00:00:00.0001\"", ""},
      {-1e10, FormatType::dateTime, 19, 0, "\"1653-02-10T06:13:20\"", ""},
  };
  for (const NumberCase& one : cases) {
    const Written cell = written(valueOf(one.value, one.type, one.width, one.decimals));
    EXPECT_EQ(cell.content, one.content) << one.value;
    EXPECT_TRUE(cell.remarks.contains(XlsxRemark::numbersAreTexts)) << one.value;
  }
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double number : {infinity, -infinity, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_TRUE(written(count(number)).content.starts_with('"')) << number;
    EXPECT_TRUE(written(percent(number)).remarks.contains(XlsxRemark::numbersAreTexts)) << number;
  }
}

TEST(XlsxCell, HasASignForAMissingValueAndATextForADuration) {
  EXPECT_EQ(written(valueOf(-DBL_MAX, FormatType::number)).content, "\".\"");
  EXPECT_EQ(written(valueOf(5400, FormatType::duration)).content, "\"PT1H30M\"");
  EXPECT_TRUE(written(valueOf(5400, FormatType::duration)).remarks.empty());
}

TEST(XlsxCell, PutsTheMarksOfFootnotesBehindTextsAndIntoTheFormatsOfNumbers) {
  EXPECT_EQ(written(plain("text"), english(), " [a]").content, "\"text [a]\"");
  EXPECT_EQ(written(count(5), english(), " [a]").numberFormat, "#,##0\" [a]\"");
  EXPECT_EQ(written(valueOf(5, FormatType::text), english(), " [a]").numberFormat, "General\" [a]\"");
  EXPECT_EQ(written(valueOf(5, FormatType::restricted, 3), english(), " [a]").numberFormat, "000\" [a]\";-00\" [a]\"");
}

TEST(XlsxCell, CutsATextThatDoesNotFitAndSaysSo) {
  EXPECT_EQ(written(plain("12345678901234567890")).content, "\"12345678901234567890\"");
  const Written cut = written(plain("123456789012345678901"));
  EXPECT_EQ(cut.content, "\"1234567890123456789\xE2\x80\xA6\"");
  EXPECT_TRUE(cut.remarks.contains(XlsxRemark::textsAreCut));
  // An emoji has two units, and is never taken apart.
  EXPECT_EQ(written(plain("123456789012345678\U0001F600x")).content, "\"123456789012345678\xE2\x80\xA6\"");
}

TEST(XlsxCell, KeepsATextThatReadsLikeTheNumberOfACharacter) {
  EXPECT_EQ(written(plain("_x0041_")).content, "\"_x005F_x0041_\"");
  EXPECT_EQ(written(plain("_x41_ _xyzzz_")).content, "\"_x41_ _xyzzz_\"");
  // What does not fit any more once it is escaped is cut.
  EXPECT_EQ(written(plain("12345678_x0041_")).content, "\"12345678_x0041\xE2\x80\xA6\"");
}

TEST(XlsxCell, ShowsByASignWhatASheetCannotHold) {
  for (const char* const text : {"a\x01z", "a\x1bz", "Gr\xFC\xDF", "\uFFFE", "\uFFFF"}) {
    const Written cell = written(plain(text));
    EXPECT_TRUE(cell.remarks.contains(XlsxRemark::signsAreShown)) << cell.content;
    EXPECT_EQ(cell.content.find_first_of("\x01\x1b\xFC"), std::string::npos) << cell.content;
  }
  EXPECT_TRUE(written(plain("日本の町")).remarks.empty());
}

}  // namespace
}  // namespace workbench::output
