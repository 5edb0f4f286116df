// Datasets as plain lists, for a comparison done by hand. Nothing of the host and nothing of the procedure is in them.
#pragma once

#include <array>
#include <cfloat>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace workbench::tests::model {

inline constexpr double systemMissing = -DBL_MAX;

// A number, or a text of as many bytes as its variable is wide.
using Value = std::variant<double, std::string>;
using Case = std::vector<Value>;  // one value per variable

inline double numberOf(const Value& value) { return std::get<double>(value); }
inline const std::string& textOf(const Value& value) { return std::get<std::string>(value); }

// The first places of `values` that the code speaks of are in use. A text has eight bytes.
struct MissingValues {
  int code = 0;
  std::array<Value, 3> values;
};

struct Attribute {
  std::string name;
  std::vector<std::string> values;
};

struct PrintFormat {
  int type = 5;  // a plain number
  int width = 8;
  int decimals = 0;
};

struct Variable {
  std::string name;
  int width = 0;  // 0: a number; else the bytes of a text
  PrintFormat format;
  std::optional<std::string> label;
  std::vector<std::pair<Value, std::string>> valueLabels;  // ascending; texts without blanks at their end
  MissingValues missing;
  int columns = 8;
  int alignment = 1;
  int level = 3;
  int role = 0;
  std::vector<Attribute> attributes;

  bool isNumber() const { return width == 0; }
};

struct Dataset {
  std::vector<Variable> variables;
  std::vector<Case> cases;
  std::vector<Attribute> attributes;
  // Positions of variables; a filter and a weight are numbers.
  std::optional<std::size_t> filter;
  std::optional<std::size_t> weight;
  std::vector<std::size_t> split;
  std::string path;  // of the data file that it was read from; empty: none
};

// A name without regard to case. Requires: its characters beyond ASCII are among those that random names use.
std::string folded(std::string_view name);
inline bool sameName(std::string_view left, std::string_view right) { return folded(left) == folded(right); }

// Where the variable of that name stands, whatever its case.
std::optional<std::size_t> placeOf(const Dataset& dataset, std::string_view name);

std::string withoutTrailingBlanks(std::string_view text);
// Cut or filled with blanks.
std::string ofWidth(std::string_view text, std::size_t width);

// Everything about a dataset but its path, in lines: variables with all their properties, then the cases.
std::string describe(const Dataset& dataset);

}  // namespace workbench::tests::model
