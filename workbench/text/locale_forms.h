// LocaleForms: how numbers and dates are written where a locale is at home. For what people read; what programs read
// has a decimal point and ISO dates everywhere.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace workbench::text {

struct LocaleForms {
  std::string decimalMark = ".";
  std::string groupMark = ",";     // between groups of digits before the decimal mark
  int groupSize = 3;               // of the group beside the decimal mark; 0: digits are not grouped
  int nextGroupSize = 3;           // of those further left
  int fewestDigitsBeforeMark = 1;  // a number that would have fewer digits before its first mark is not grouped
  std::string beforePercentage;
  std::string behindPercentage = "%";
  std::string date = "^1-^2-^3";  // of year, month and day
  std::string moment = "^1T^2";   // of a date and a time of day
};

// The number forms of a language tag ("de-AT") or a locale's name ("de_AT.UTF-8"), with Latin digits; its dates are a
// matter of wording and stay as above. "C", "POSIX" and an empty name are English; for one that is not known the forms
// of its language count, and for an unknown language forms that need no language.
LocaleForms numberFormsOf(std::string_view locale);

// 1234567.5, as plain text, with the marks of the locale: its decimal mark, and also its groups.
std::string withDecimalMark(std::string text, const LocaleForms& forms);
std::string withGroups(const std::string& text, const LocaleForms& forms);

// A pattern of this header with its items.
std::string filledForm(std::string_view pattern, std::initializer_list<std::string_view> items);

}  // namespace workbench::text
