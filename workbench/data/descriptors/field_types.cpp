#include "workbench/data/descriptors/field_types.h"

#include <algorithm>
#include <array>
#include <vector>

#include "workbench/data/cells/calendar_text.h"
#include "workbench/data/cells/decimal_text.h"
#include "workbench/data/descriptors/property_names.h"

namespace workbench::data {
namespace {

constexpr auto defaultOnly = std::to_array<std::string_view>({"default"});
constexpr auto textFormats = std::to_array<std::string_view>({"default", "email", "uri", "binary", "uuid"});
constexpr auto pointFormats = std::to_array<std::string_view>({"default", "array", "object"});
constexpr auto mapFormats = std::to_array<std::string_view>({"default", "topojson"});

// What has no numbers of its own stays the text that it is in the file.
constexpr auto fieldTypes = std::to_array<FieldType>({
    {"any", CellType::text, textFormats, false, false},
    {"string", CellType::text, textFormats, false, true},
    {"number", CellType::number, defaultOnly, false, false},
    {"integer", CellType::integer, defaultOnly, false, true},
    {"boolean", CellType::boolean, defaultOnly, false, false},
    {"year", CellType::year, defaultOnly, false, false},
    {"yearmonth", CellType::text, defaultOnly, false, false},
    {"date", CellType::date, defaultOnly, true, false},
    {"time", CellType::time, defaultOnly, true, false},
    {"datetime", CellType::dateTime, defaultOnly, true, false},
    {"duration", CellType::duration, defaultOnly, false, false},
    {"list", CellType::text, defaultOnly, false, false},
    {"object", CellType::text, defaultOnly, false, false},
    {"array", CellType::text, defaultOnly, false, false},
    {"geopoint", CellType::text, pointFormats, false, false},
    {"geojson", CellType::text, mapFormats, false, false},
});

std::optional<std::string> numberText(double value) { return decimalText(value); }

// Print formats whose values are written in another way than as decimal numbers.
struct WrittenRow {
  FormatType format;
  WrittenType type;
};
constexpr auto writtenRows = std::to_array<WrittenRow>({
    {FormatType::date, {"date", CellType::date, dateText}},
    {FormatType::time, {"time", CellType::time, timeText}},
    {FormatType::dateTime, {"datetime", CellType::dateTime, dateTimeText}},
    {FormatType::duration, {"duration", CellType::duration, durationText}},
});

}  // namespace

const FieldType* fieldType(const DescriptorObject& field) {
  const auto value = field.at(property::type);
  if (!value) return &fieldTypes.front();
  std::array<WordRow<const FieldType*>, fieldTypes.size()> words;
  std::transform(fieldTypes.begin(), fieldTypes.end(), words.begin(),
                 [](const FieldType& type) { return WordRow<const FieldType*>{type.name, &type}; });
  return value->word(words).value_or(&fieldTypes.front());
}

WrittenType writtenType(FormatType format) {
  const auto* const row = std::find_if(writtenRows.begin(), writtenRows.end(),
                                       [=](const WrittenRow& each) { return each.format == format; });
  return row == writtenRows.end() ? WrittenType{"number", CellType::number, numberText} : row->type;
}

}  // namespace workbench::data
