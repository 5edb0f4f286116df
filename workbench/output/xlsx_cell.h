// What a cell of a workbook holds of a text: a number with its format, or a text. What a cell cannot hold stands in it
// in another way that people see, and a remark says so.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <variant>

#include "workbench/output/document.h"
#include "workbench/output/text_rendering.h"

namespace workbench::output {

// The most that a sheet and a cell hold; tests take less.
struct XlsxLimits {
  std::int32_t rows = 1048576;
  std::int32_t columns = 16384;
  std::size_t textUnits = 32767;  // UTF-16 units of a text
};

enum class XlsxRemark { textsAreCut, numbersAreTexts, signsAreShown };
using XlsxRemarks = std::set<XlsxRemark>;

struct XlsxCell {
  std::variant<std::string, double> held;
  std::string numberFormat;  // of a number; empty: as it comes
};

inline constexpr TextStyle xlsxStyle{NumberStyle::asFormatted, true};

// The content of a cell, followed by the marks of its footnotes (" [a]"); those of a number are part of its format.
// Adds what there is to remark.
XlsxCell xlsxCell(const Text& text, const std::string& marks, const text::Wording& wording, const XlsxLimits& limits,
                  XlsxRemarks& remarks);

// What a remark says to people.
std::string remarkSentence(XlsxRemark remark, const XlsxLimits& limits, const text::Wording& wording);

// A text as a cell may hold it: readable characters, and no more than fit.
std::string xlsxText(std::string_view text, const XlsxLimits& limits, XlsxRemarks& remarks);

}  // namespace workbench::output
