#include "workbench/data/parquet/parquet_layout.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "workbench/data/parquet/column_type.h"
#include "workbench/data/parquet/file_bytes.h"
#include "workbench/data/parquet/thrift_value.h"

namespace workbench::data {
namespace {

constexpr std::string_view mark = "PAR1";

// What the file's footer says, in its own words: numbers that stand for names, elements one behind the other.
struct SchemaElement {
  StoredType type;
  std::string name;
  std::int64_t length = 0;
  std::int64_t repetition = 0;
  std::int64_t children = 0;
};

struct Footer {
  std::vector<SchemaElement> schema;
  std::vector<RowGroup> groups;
  std::vector<std::pair<std::string, std::string>> metadata;
  std::int64_t rows = -1;
  bool hasGroups = false;  // it says which there are
};

// The fields of a logical type have other meanings in each.
void readLogicalType(std::int64_t kind, ThriftValue& value, StoredType& type) {
  type.logical = kind;
  value.eachField([&](std::int64_t id, ThriftValue& field) {
    if (kind == Logical::decimal && id == 1) type.logicalScale = field.whole();
    if (kind == Logical::decimal && id == 2) type.logicalDigits = field.whole();
    if (kind == Logical::whole && id == 1) type.bits = field.whole();
    if (kind == Logical::whole && id == 2) type.isSigned = field.truth();
    if (kind != Logical::time && kind != Logical::moment) return;
    if (id == 1) type.isUtc = field.truth();
    if (id == 2) {
      field.eachField([&](std::int64_t unit, ThriftValue&) {
        if (unit >= 1 && unit <= 3) type.unit = static_cast<TimeUnit>(unit);
      });
    }
  });
}

// An older way to say what a column is, which the newer one overrules.
TimeUnit unitOfConverted(std::int64_t converted) {
  if (converted == Converted::timeMilliseconds || converted == Converted::momentMilliseconds)
    return TimeUnit::milliseconds;
  if (converted == Converted::timeMicroseconds || converted == Converted::momentMicroseconds)
    return TimeUnit::microseconds;
  return TimeUnit::none;
}

SchemaElement elementOf(ThriftValue& item) {
  SchemaElement element;
  item.eachField([&](std::int64_t id, ThriftValue& value) {
    if (id == 1) element.type.physical = value.whole();
    if (id == 2) element.length = value.whole();
    if (id == 3) element.repetition = value.whole();
    if (id == 4) element.name = value.bytes();
    if (id == 5) element.children = value.whole();
    if (id == 6) element.type.converted = value.whole();
    if (id == 7) element.type.scale = value.whole();
    if (id == 8) element.type.digits = value.whole();
    if (id == 10) {
      value.eachField([&](std::int64_t kind, ThriftValue& logical) { readLogicalType(kind, logical, element.type); });
    }
  });
  if (element.type.unit == TimeUnit::none) element.type.unit = unitOfConverted(element.type.converted);
  return element;
}

bool isKnownCodec(std::int64_t codec) {
  return codec == static_cast<std::int64_t>(ParquetCodec::none) ||
         codec == static_cast<std::int64_t>(ParquetCodec::snappy) ||
         codec == static_cast<std::int64_t>(ParquetCodec::gzip) ||
         codec == static_cast<std::int64_t>(ParquetCodec::zstd);
}

bool isKnownEncoding(std::int64_t encoding) {
  return encoding == static_cast<std::int64_t>(ParquetEncoding::plain) ||
         encoding == static_cast<std::int64_t>(ParquetEncoding::plainDictionary) ||
         encoding == static_cast<std::int64_t>(ParquetEncoding::runs) ||
         encoding == static_cast<std::int64_t>(ParquetEncoding::bitPacked) ||
         encoding == static_cast<std::int64_t>(ParquetEncoding::runsOfDictionary);
}

void readPartsMetadata(ThriftValue& metadata, ColumnPart& part) {
  std::int64_t dictionaryAt = 0;
  metadata.eachField([&](std::int64_t id, ThriftValue& value) {
    if (id == 2)
      value.eachItem([&](ThriftValue& encoding) { part.isKnown = isKnownEncoding(encoding.whole()) && part.isKnown; });
    if (id == 4) {
      const std::int64_t codec = value.whole();
      part.isKnown = isKnownCodec(codec) && part.isKnown;
      if (part.isKnown) part.codec = static_cast<ParquetCodec>(codec);
    }
    if (id == 5) part.values = value.whole();
    if (id == 7) part.bytes = value.whole();
    if (id == 9) part.begin = value.whole();
    if (id == 11) dictionaryAt = value.whole();
  });
  if (dictionaryAt > 0) part.begin = std::min(part.begin, dictionaryAt);
}

ColumnPart partOf(ThriftValue& item) {
  ColumnPart part;
  part.isKnown = true;
  bool isElsewhere = false;
  item.eachField([&](std::int64_t id, ThriftValue& value) {
    constexpr std::int64_t otherFile = 1;
    constexpr std::int64_t encryption = 8;
    constexpr std::int64_t encryptedMetadata = 9;
    if (id == otherFile || id == encryption || id == encryptedMetadata) isElsewhere = true;
    if (id == 3) readPartsMetadata(value, part);
  });
  part.isKnown = part.isKnown && !isElsewhere;
  return part;
}

RowGroup groupOf(ThriftValue& item) {
  RowGroup group;
  item.eachField([&](std::int64_t id, ThriftValue& value) {
    if (id == 1) value.eachItem([&](ThriftValue& part) { group.parts.push_back(partOf(part)); });
    if (id == 3) group.rows = value.whole();
  });
  return group;
}

std::pair<std::string, std::string> entryOf(ThriftValue& item) {
  std::pair<std::string, std::string> entry;
  item.eachField([&](std::int64_t id, ThriftValue& value) {
    if (id == 1) entry.first = value.bytes();
    if (id == 2) entry.second = value.bytes();
  });
  return entry;
}

std::optional<Footer> footerOf(std::string_view bytes) {
  Footer footer;
  ThriftReader reader(bytes);
  reader.eachField([&](std::int64_t id, ThriftValue& value) {
    if (id == 2) value.eachItem([&](ThriftValue& element) { footer.schema.push_back(elementOf(element)); });
    if (id == 3) footer.rows = value.whole();
    if (id == 4) {
      footer.hasGroups = true;
      value.eachItem([&](ThriftValue& group) { footer.groups.push_back(groupOf(group)); });
    }
    if (id == 5) value.eachItem([&](ThriftValue& entry) { footer.metadata.push_back(entryOf(entry)); });
  });
  return reader.isSound() && footer.hasGroups ? std::optional(std::move(footer)) : std::nullopt;
}

// Passes over the element at `next` and all that is inside; gives how many columns with values that is.
std::size_t passElement(const std::vector<SchemaElement>& schema, std::size_t& next) {
  std::size_t leaves = 0;
  for (std::int64_t open = 1; open > 0 && next < schema.size(); ++next) {
    const std::int64_t children = std::max<std::int64_t>(schema[next].children, 0);
    open += children - 1;
    if (children == 0) ++leaves;
  }
  return leaves;
}

void layColumns(const std::vector<SchemaElement>& schema, ParquetLayout& layout) {
  constexpr std::int64_t optional = 1;
  constexpr std::int64_t repeated = 2;
  std::size_t leaf = 0;
  for (std::size_t next = 1; next < schema.size();) {  // the first one is the row
    const SchemaElement& element = schema[next];
    layout.names.push_back(element.name);
    std::optional<ParquetColumn>& column = layout.columns.emplace_back();
    const std::int64_t type = element.type.physical;
    const bool hasType = type >= 0 && type <= static_cast<std::int64_t>(PhysicalType::fixedBytes);
    if (element.children == 0 && element.repetition != repeated && hasType) {
      column = ParquetColumn{static_cast<PhysicalType>(type),
                             element.type.unit,
                             static_cast<std::size_t>(std::max<std::int64_t>(element.length, 0)),
                             element.repetition == optional,
                             leaf,
                             duckDbTypeOf(element.type)};
    }
    leaf += passElement(schema, next);
  }
}

// Whether every part lies within the file, where no other one does.
bool arePlacesSound(const std::vector<RowGroup>& groups, std::int64_t fileBytes) {
  std::vector<std::pair<std::int64_t, std::int64_t>> places;  // where they begin and end
  for (const RowGroup& group : groups) {
    for (const ColumnPart& part : group.parts) {
      if (part.begin < 0 || part.bytes < 0 || part.begin > fileBytes || part.bytes > fileBytes - part.begin)
        return false;
      if (part.bytes != 0) places.emplace_back(part.begin, part.begin + part.bytes);
    }
  }
  std::sort(places.begin(), places.end());
  const auto overlapping = std::adjacent_find(
      places.begin(), places.end(), [](const auto& one, const auto& next) { return one.second > next.first; });
  return overlapping == places.end();
}

// Whether the groups have the rows of the file, and a value per row for the columns that are read here.
bool areGroupsSound(const ParquetLayout& layout) {
  std::int64_t rows = 0;
  for (const RowGroup& group : layout.groups) {
    if (group.rows < 0 || group.rows > layout.rows - rows) return false;
    rows += group.rows;
    for (const std::optional<ParquetColumn>& column : layout.columns) {
      if (column && (column->leaf >= group.parts.size() || group.parts[column->leaf].values != group.rows))
        return false;
    }
  }
  return rows == layout.rows;
}

std::optional<std::string> footerBytesOf(int descriptor, std::int64_t fileBytes) {
  constexpr std::int64_t longest = std::int64_t{64} << 20;
  constexpr std::int64_t tailBytes = 8;
  if (fileBytes < tailBytes) return std::nullopt;
  std::string tail(tailBytes, '\0');
  if (!readFully(descriptor, tail.data(), tail.size(), fileBytes - tailBytes) || !tail.ends_with(mark))
    return std::nullopt;
  std::uint32_t length = 0;
  std::memcpy(&length, tail.data(), sizeof length);
  if (length > fileBytes - tailBytes || length > longest) return std::nullopt;
  std::string footer(length, '\0');
  if (!readFully(descriptor, footer.data(), footer.size(), fileBytes - tailBytes - length)) return std::nullopt;
  return footer;
}

}  // namespace

std::optional<ParquetLayout> parquetLayoutOf(int descriptor) {
  struct stat status{};
  if (fstat(descriptor, &status) != 0) return std::nullopt;
  const std::optional<std::string> bytes = footerBytesOf(descriptor, status.st_size);
  if (!bytes) return std::nullopt;
  std::optional<Footer> footer = footerOf(*bytes);
  if (!footer) return std::nullopt;
  ParquetLayout layout;
  layColumns(footer->schema, layout);
  layout.groups = std::move(footer->groups);
  layout.metadata = std::move(footer->metadata);
  layout.rows = footer->rows;
  const bool isSound = arePlacesSound(layout.groups, status.st_size) && areGroupsSound(layout);
  return isSound ? std::optional(std::move(layout)) : std::nullopt;
}

}  // namespace workbench::data
