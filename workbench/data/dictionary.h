// Dictionary: the variables of a dataset and what is known of them, as plain values.
//
// Invariant: no two variables have the same name without regard to case; filter, weight and split name variables that
// are there.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/data.h"

namespace workbench::data {

struct PrintFormat {
  FormatType type = FormatType::number;
  std::int32_t width = 8;
  std::int32_t decimals = 0;
};

// 0 to 3 discrete values; -2 a range (low, high); -3 a range and a discrete value. Of a string variable a value is its
// first 8 bytes, padded with blanks.
struct MissingValues {
  std::int32_t code = 0;
  std::array<OBS, 3> values{};
};

struct Variable {
  std::string name;
  std::int32_t width = 0;  // 0: a number; else a string's width in bytes
  PrintFormat format;
  std::optional<std::string> label;
  std::vector<std::pair<double, std::string>> numberLabels;     // ascending, of a number
  std::vector<std::pair<std::string, std::string>> textLabels;  // ascending by bytes, of a string
  MissingValues missing;
  std::int32_t displayWidth = 8;
  VRIX_Variable_Enumerations::Alignment alignment = VRIX_Variable_Enumerations::Alignment::right;
  VRIX_Variable_Enumerations::MeasurementLevel level = VRIX_Variable_Enumerations::MeasurementLevel::scale;
  VRIX_Variable_Enumerations::Role role = VRIX_Variable_Enumerations::Role::input;
  DatasourceAttributes attributes;

  bool isNumeric() const { return width == 0; }
  std::uint32_t slots() const { return isNumeric() ? 1U : (static_cast<std::uint32_t>(width) + 7U) / 8U; }
};

class Dictionary {
 public:
  const std::vector<Variable>& variables() const { return variables_; }
  std::int32_t size() const { return static_cast<std::int32_t>(variables_.size()); }
  const Variable& at(std::int32_t index) const { return variables_[static_cast<std::size_t>(index)]; }
  Variable& at(std::int32_t index) { return variables_[static_cast<std::size_t>(index)]; }  // its name stays

  // Adds a variable at the end and gives its index. Requires: the name is not taken.
  std::int32_t add(Variable variable);
  // Without regard to case; -1 when there is none.
  std::int32_t find(std::string_view name) const;
  // The name itself with characters that no name may hold made "_", and "_1", "_2", ... behind it while it is taken.
  std::string goodName(std::string_view name) const;

  DatasourceAttributes attributes;
  std::int32_t filter = -1;
  std::int32_t weight = -1;
  std::vector<std::int32_t> split;

 private:
  std::vector<Variable> variables_;
  std::unordered_map<std::string, std::int32_t> byFoldedName_;
};

// Where the values of a dictionary's variables lie in a case.
struct CaseLayout {
  explicit CaseLayout(const Dictionary& dictionary);

  std::vector<std::uint32_t> slotOfVariable;
  std::size_t caseSlots = 0;
};

}  // namespace workbench::data
