#include "workbench/text/locale_forms.h"

#include <gtest/gtest.h>

#include "workbench/text/wording.h"

namespace workbench::text {
namespace {

std::string grouped(const std::string& plain, std::string_view locale) {
  return withGroups(plain, numberFormsOf(locale));
}

TEST(LocaleForms, GroupTheDigitsBeforeTheDecimalMarkAsTheLocaleDoes) {
  EXPECT_EQ(grouped("1234567", "en"), "1,234,567");
  EXPECT_EQ(grouped("-1234567.125", "en"), "-1,234,567.125");
  EXPECT_EQ(grouped("1234567.5", "de"), "1.234.567,5");
  EXPECT_EQ(grouped("1234567", "de-AT"), "1\u00A0234\u00A0567");
  EXPECT_EQ(grouped("1234567", "en-IN"), "12,34,567");
  EXPECT_EQ(grouped("1234", "es"), "1234");  // four digits are not grouped there
  EXPECT_EQ(grouped("12345", "es"), "12.345");
  EXPECT_EQ(grouped("123", "de"), "123");
  EXPECT_EQ(grouped("1e+21", "en"), "1e+21");
  EXPECT_EQ(grouped("", "en"), "");
}

TEST(LocaleForms, AreThoseOfALanguageTagAndOfALocalesName) {
  EXPECT_EQ(numberFormsOf("de_DE.UTF-8").decimalMark, ",");
  EXPECT_EQ(numberFormsOf("de_DE@euro").decimalMark, ",");
  EXPECT_EQ(numberFormsOf("de-CH").decimalMark, ".");
  for (const char* const english : {"", "C", "POSIX", "C.UTF-8", "en_US.UTF-8"}) {
    EXPECT_EQ(numberFormsOf(english).decimalMark, ".") << english;
    EXPECT_EQ(numberFormsOf(english).groupMark, ",") << english;
  }
}

TEST(LocaleForms, HaveLatinDigitsAndMarksInEveryLocale) {
  EXPECT_EQ(numberFormsOf("ar-EG").decimalMark, ".");
  EXPECT_EQ(numberFormsOf("fa").groupMark, ",");
}

TEST(LocaleForms, SayHowAPercentageIsWritten) {
  EXPECT_EQ(numberFormsOf("en").behindPercentage, "%");
  EXPECT_EQ(numberFormsOf("de").behindPercentage, "\u00A0%");
  EXPECT_EQ(numberFormsOf("tr").beforePercentage, "%");
}

TEST(LocaleForms, OfAWordingHaveTheDatesOfItsLanguage) {
  const auto english = std::move(*Wording::load("en"));
  const auto german = std::move(*Wording::load("de"));
  EXPECT_EQ(filledForm(english->forms().date, {"2026", "11", "22"}), "2026-11-22");
  EXPECT_EQ(filledForm(english->forms().moment, {"2026-11-22", "15:59:55"}), "2026-11-22T15:59:55");
  EXPECT_EQ(filledForm(german->forms().date, {"2026", "11", "22"}), "22.11.2026");
  EXPECT_EQ(filledForm(german->forms().moment, {"22.11.2026", "15:59:55"}), "22.11.2026 15:59:55");
}

TEST(LocaleForms, OfAWordingMayBeThoseOfAnotherLocale) {
  const auto wording = std::move(*Wording::load("en", "de_DE.UTF-8"));
  EXPECT_EQ(wording->language(), "en");
  EXPECT_EQ(wording->forms().decimalMark, ",");
  EXPECT_EQ(wording->forms().date, "^1-^2-^3");
  EXPECT_EQ(wording->locale(), "en");
  EXPECT_EQ((*Wording::load("de_AT.UTF-8"))->locale(), "de_AT");
  EXPECT_EQ((*Wording::load("C"))->locale(), "en");
}

}  // namespace
}  // namespace workbench::text
