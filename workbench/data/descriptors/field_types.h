// The types that fields can have, one row per type: how their cells are read, and which formats they know.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/data.h"
#include "workbench/data/cells/cell_reading.h"
#include "workbench/data/descriptors/descriptor_value.h"

namespace workbench::data {

struct FieldType {
  std::string_view name;
  CellType cell;
  std::span<const std::string_view> formats;
  bool takesPattern;  // its format may be a pattern of strptime
  bool takesCategories;

  bool isText() const { return cell == CellType::text; }
};

// A field without a type is "any", which is text.
const FieldType* fieldType(const DescriptorObject& field);

// The type whose cells are what is written of a variable.
struct WrittenType {
  std::string_view name;
  CellType cellType;
  // What stands in a cell; nothing when no text does.
  std::optional<std::string> (*cell)(double value);
};
WrittenType writtenType(FormatType format);
inline constexpr std::string_view writtenTextType = "string";

}  // namespace workbench::data
