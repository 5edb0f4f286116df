#include "workbench/data/descriptors/table_resource.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "workbench/data/descriptors/dialect_reading.h"
#include "workbench/data/descriptors/property_names.h"
#include "workbench/data/descriptors/resource_path.h"
#include "workbench/data/descriptors/schema_reading.h"
#include "workbench/data/descriptors/statistics_dataset.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/text/folding.h"

namespace workbench::data {
namespace {

constexpr std::string_view tableType = "table";
constexpr std::string_view tableProfile = "tabular-data-resource";
constexpr std::string_view tabMediaType = "text/tab-separated-values";
constexpr auto utf8Names = std::to_array<std::string_view>({"utf-8", "utf8"});

constexpr auto tableTypeWords = std::to_array<WordRow<bool>>({{tableType, true}});

// What "compression" may be. Of an archive the descriptor does not say which of its files is meant.
constexpr auto packingWords = std::to_array<WordRow<std::optional<Packing>>>({
    {"gz", Packing::gzip},
    {"zip", std::nullopt},
});

bool isTextOf(const std::optional<DescriptorValue>& value, std::string_view expected) {
  return value && value->isText() && *value->text() == expected;
}

// The kind of file that "format" names, as an ending without its dot.
std::optional<FileKind> kindOfFormat(const DescriptorObject& resource) {
  const auto format = resource.at(property::format);
  if (!format || !format->isText()) return std::nullopt;
  const Outcome<FileKind> kind = fileKind("." + *format->text());
  return kind ? std::optional<FileKind>(*kind) : std::nullopt;
}

void readType(const DescriptorValue& value, DescribedTable&) { (void)value.word(tableTypeWords); }

void readFormat(const DescriptorValue& value, DescribedTable&) {
  const std::optional<std::string> format = value.text();
  if (!format || fileKind("." + *format) || isParquetName("." + *format)) return;
  value.reject("^1 is \"^2\", and only text tables and Parquet files are read.", {*format},
               "Convert the file to \"csv\".");
}

void readMediaType(const DescriptorValue& value, DescribedTable&) {
  const std::optional<std::string> written = value.text();
  if (!written) return;
  const std::size_t slash = written->find('/', 1);
  if (slash != std::string::npos && slash + 1 < written->size()) return;
  value.reject("^1 is \"^2\", and no media type.", {*written}, "Write one such as \"text/csv\".");
}

void readEncoding(const DescriptorValue& value, DescribedTable& table) {
  const std::string name = value.textWithoutNul().value_or("");
  if (name.empty()) value.reject("^1 is empty.", "Write the name of an encoding such as \"utf-8\", or leave it out.");
  const bool isUtf8 = std::find(utf8Names.begin(), utf8Names.end(), text::foldedName(name)) != utf8Names.end();
  table.dialect.encoding = isUtf8 ? "" : name;
}

void readBytes(const DescriptorValue& value, DescribedTable& table) {
  table.bytes = value.wholeNumber(0, std::numeric_limits<std::int64_t>::max());
}

void readHash(const DescriptorValue& value, DescribedTable&) {
  constexpr std::string_view hexDigits = "0123456789abcdefABCDEF";
  constexpr std::size_t plainDigits = 32;
  const std::optional<std::string> written = value.text();
  if (!written || written->empty()) return;
  const std::size_t colon = written->rfind(':');
  const std::string_view digits = std::string_view(*written).substr(colon == std::string::npos ? 0 : colon + 1);
  const bool areHex = !digits.empty() && digits.find_first_not_of(hexDigits) == std::string_view::npos;
  const bool hasPrefix = colon != std::string::npos && colon != 0;
  if (areHex && (hasPrefix || (colon == std::string::npos && digits.size() == plainDigits))) return;
  value.reject("^1 is \"^2\", and no hash.", {*written},
               "Write 32 hexadecimal digits, or the algorithm, a colon and its digits.");
}

void readCompression(const DescriptorValue& value, DescribedTable& table) {
  const auto packing = value.word(packingWords);
  if (!packing) return;
  table.packing = *packing;
  if (!*packing) value.reject("^1 is \"zip\", and archives are not read.", "Pack the file with gzip instead.");
}

struct ResourceRow {
  std::string_view name;
  void (*read)(const DescriptorValue& value, DescribedTable& table);
};
constexpr auto resourceRows = std::to_array<ResourceRow>({
    {property::type, readType},
    {property::format, readFormat},
    {property::mediaType, readMediaType},
    {property::bytes, readBytes},
    {property::hash, readHash},
    {property::compression, readCompression},
});

// Calls `read` with the object that stands there, or in the file that is named there.
template <class Read>
void withObject(const DescriptorValue& value, Read read) {
  if (!value.isText()) {
    if (const auto object = value.object()) read(*object);
    return;
  }
  const std::optional<std::string> path = pathInside(value);
  if (!path) return;
  const Outcome<JsonDocument> document = readJsonFile(besideDescriptor(value.document().path, *path));
  if (!document) {
    value.findings().reject(document.problem());
    return;
  }
  if (const auto object = DescriptorValue(*document, value.findings()).object()) read(*object);
}

// A file whose name does not say what parts its fields is parted as its format says, else by commas.
void settleDelimiter(const Resource& resource, TableDialect& dialect) {
  if (dialect.delimiter) return;
  if (const std::optional<FileKind> kind = kindOfFormat(resource.object)) {
    dialect.delimiter = std::string(1, kind->delimiter);
  } else if (isTextOf(resource.object.at(property::mediaType), tabMediaType)) {
    dialect.delimiter = "\t";
  } else if (!resource.paths.empty() && !fileKind(resource.paths.front())) {
    dialect.delimiter = ",";
  }
}

// A resource's own word comes first; a schema in a file of its own may have brought one as well, but not both.
void readDatasetPart(const DescriptorObject& holder, DescribedTable& table, bool& isRead) {
  const auto value = holder.at(property::statisticsDataset);
  if (!value) return;
  if (isRead) {
    value->reject("^1 stands in the resource and in its schema.", "Leave it to one of them.");
    return;
  }
  isRead = true;
  readStatisticsDataset(*value, table);
}

}  // namespace

bool looksLikeTable(const Resource& resource) {
  const DescriptorObject& object = resource.object;
  if (const auto type = object.at(property::type)) return isTextOf(type, tableType);
  if (isTextOf(object.at(property::profile), tableProfile) || object.has(property::schema)) return true;
  if (kindOfFormat(object) || isTextOf(object.at(property::format), "parquet")) return true;
  return !resource.paths.empty() && (fileKind(resource.paths.front()) || isParquetName(resource.paths.front()));
}

DescribedTable describedTable(const Resource& resource) {
  const DescriptorObject& object = resource.object;
  DescribedTable table;
  table.descriptorPath = object.value().document().path;
  for (const ResourceRow& row : resourceRows) {
    if (const auto value = object.at(row.name)) row.read(*value, table);
  }
  if (const auto dialect = object.at(property::dialect)) {
    withObject(*dialect, [&](const DescriptorObject& found) { table.dialect = tableDialect(found); });
  }
  if (const auto encoding = object.at(property::encoding)) readEncoding(*encoding, table);
  table.kind = kindOfFormat(object);
  settleDelimiter(resource, table.dialect);

  bool hasDatasetPart = false;
  if (const auto schema = object.at(property::schema)) {
    withObject(*schema, [&](const DescriptorObject& found) {
      readSchema(found, table);
      readDatasetPart(found, table, hasDatasetPart);
    });
  }
  readDatasetPart(object, table, hasDatasetPart);
  if (resource.paths.size() != 1) table.bytes = std::nullopt;
  return table;
}

std::vector<std::string> dataPaths(const Resource& resource) {
  const DescriptorObject& object = resource.object;
  std::vector<std::string> paths;
  if (const auto data = object.at(property::data)) {
    data->reject("^1 holds the data themselves, and data are read from files.",
                 "Write them into a CSV file beside the descriptor and name it by \"path\".");
    return paths;
  }
  const auto value = object.has(property::path) ? object.at(property::path) : object.at(property::url);
  if (!value) return paths;
  if (resource.isElsewhere) {
    rejectAddress(*value);
    return paths;
  }
  for (const std::string& path : resource.paths) {
    if (!staysInside(*value, path)) return paths;
    paths.push_back(besideDescriptor(value->document().path, path));
  }
  return paths;
}

}  // namespace workbench::data
