// How texts of the output are written down: in one line, so that nothing that was passed is lost.
//
//   CD_Count                    a key, to be resolved         "" "Ghent"     a text as it stands
//   5   5%                      a count, a percentage         <x "Income" 2> a variable: name, label, how to show it
//   x(5:8.2)=5 "none" 0         a value: variable, print format, value, label, how to show it
//   "(1) ^1\n(2) ^2"{5|7}       a composite; its pattern stands without quotes when it is to be resolved
//   [a|b]                       a sublist
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/model/dataset.h"

namespace workbench::tests::model {

std::string plain(std::string_view text);
std::string bareNumber(double number);  // "." for system-missing; reading it back gives the same double
std::string bareValue(const Value& value);

inline std::string count(std::size_t number) { return bareNumber(static_cast<double>(number)); }
inline std::string percentage(double number) { return bareNumber(number) + '%'; }
std::string variableText(const Variable& variable);
// With the label that the variable gives the value. Blanks at the end of a text are no part of it.
std::string valueText(const Variable& variable, const Value& value);
std::string list(const std::vector<std::string>& items);
std::string composite(std::string_view pattern, const std::vector<std::string>& items);
// Its pattern is a key.
std::string keyedComposite(std::string_view pattern, const std::vector<std::string>& items);
// The active dataset's text, then the comparison dataset's.
std::string bothSides(const std::string& active, const std::string& compared);

}  // namespace workbench::tests::model
