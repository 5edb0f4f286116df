// Readings for tests, built up by what is declared, and what cells are under them as short texts.
#pragma once

#include <fmt/format.h>

#include <string>
#include <utility>
#include <vector>

#include "workbench/data/cells/cell_reader.h"

namespace workbench::data {

class ReadingBuilder {
 public:
  explicit ReadingBuilder(CellType type) { reading_.type = type; }

  ReadingBuilder& pattern(std::string text) { return set(&CellReading::pattern, std::move(text)); }
  ReadingBuilder& decimalChar(std::string text) { return set(&CellReading::decimalChar, std::move(text)); }
  ReadingBuilder& groupChar(std::string text) { return set(&CellReading::groupChar, std::move(text)); }
  ReadingBuilder& amongOtherText() { return set(&CellReading::bareNumber, false); }
  ReadingBuilder& trueTexts(std::vector<std::string> texts) { return set(&CellReading::trueTexts, std::move(texts)); }
  ReadingBuilder& falseTexts(std::vector<std::string> texts) { return set(&CellReading::falseTexts, std::move(texts)); }
  ReadingBuilder& noValue(std::vector<std::string> texts) { return set(&CellReading::noValueTexts, std::move(texts)); }

  operator CellReading() const { return reading_; }

 private:
  template <class Value>
  ReadingBuilder& set(Value CellReading::* member, Value value) {
    reading_.*member = std::move(value);
    return *this;
  }

  CellReading reading_;
};

inline ReadingBuilder declared(CellType type) { return ReadingBuilder(type); }

// Why the cell does not read: "is no number".
inline std::string whyNot(CellReader& reader, std::string_view cell) { return reader.whyNot(cell, "it").substr(3); }

// The value, else why there is none: "1234.5", "is no number".
inline std::string valueBy(CellReader& reader, std::string_view cell) {
  const std::optional<double> value = reader.number(cell);
  return value ? fmt::format("{}", *value) : whyNot(reader, cell);
}

inline std::string valueOf(const CellReading& reading, std::string_view cell) {
  CellReader reader(reading);
  return valueBy(reader, cell);
}

// The plain form of the cell, else why there is none.
inline std::string plainOf(const CellReading& reading, std::string_view cell) {
  CellReader reader(reading);
  std::string plain;
  return reader.plainText(cell, plain) ? plain : whyNot(reader, cell);
}

}  // namespace workbench::data
