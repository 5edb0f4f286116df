// The names that descriptors give to their properties, exact and case-sensitive.
//
// Readers and writers take them from here; what an object may hold, and how each property is read, stands in a table
// beside its reader.
#pragma once

#include <string_view>

namespace workbench::data::property {

// Of a package and its resources.
inline constexpr std::string_view profileAddress = "$schema";
inline constexpr std::string_view resources = "resources";
inline constexpr std::string_view name = "name";
inline constexpr std::string_view path = "path";
inline constexpr std::string_view url = "url";  // what the earliest descriptors called a path
inline constexpr std::string_view data = "data";
inline constexpr std::string_view type = "type";
inline constexpr std::string_view profile = "profile";  // what earlier descriptors had instead of a type
inline constexpr std::string_view format = "format";
inline constexpr std::string_view mediaType = "mediatype";
inline constexpr std::string_view encoding = "encoding";
inline constexpr std::string_view bytes = "bytes";
inline constexpr std::string_view hash = "hash";
inline constexpr std::string_view compression = "compression";
inline constexpr std::string_view dialect = "dialect";
inline constexpr std::string_view schema = "schema";
inline constexpr std::string_view statisticsDataset = "statistics:dataset";

// Of a dialect.
inline constexpr std::string_view delimiter = "delimiter";  // and of a field that holds lists
inline constexpr std::string_view lineTerminator = "lineTerminator";
inline constexpr std::string_view quoteChar = "quoteChar";
inline constexpr std::string_view doubleQuote = "doubleQuote";
inline constexpr std::string_view escapeChar = "escapeChar";
inline constexpr std::string_view header = "header";
inline constexpr std::string_view headerRows = "headerRows";
inline constexpr std::string_view headerJoin = "headerJoin";
inline constexpr std::string_view commentRows = "commentRows";
inline constexpr std::string_view commentChar = "commentChar";
inline constexpr std::string_view nullSequence = "nullSequence";
inline constexpr std::string_view skipInitialSpace = "skipInitialSpace";

// Of a schema.
inline constexpr std::string_view fields = "fields";
inline constexpr std::string_view fieldsMatch = "fieldsMatch";
inline constexpr std::string_view missingValues = "missingValues";  // and of a field
inline constexpr std::string_view primaryKey = "primaryKey";
inline constexpr std::string_view uniqueKeys = "uniqueKeys";
inline constexpr std::string_view foreignKeys = "foreignKeys";
inline constexpr std::string_view reference = "reference";
inline constexpr std::string_view resource = "resource";

// Of a field.
inline constexpr std::string_view title = "title";
inline constexpr std::string_view decimalChar = "decimalChar";
inline constexpr std::string_view groupChar = "groupChar";
inline constexpr std::string_view bareNumber = "bareNumber";
inline constexpr std::string_view trueValues = "trueValues";
inline constexpr std::string_view falseValues = "falseValues";
inline constexpr std::string_view itemType = "itemType";
inline constexpr std::string_view categories = "categories";
inline constexpr std::string_view categoriesOrdered = "categoriesOrdered";
inline constexpr std::string_view constraints = "constraints";
inline constexpr std::string_view enumeration = "enum";
inline constexpr std::string_view enumLabels = "enumLabels";    // labels before there were categories
inline constexpr std::string_view enumOrdered = "enumOrdered";  // and their order
inline constexpr std::string_view statisticsVariable = "statistics:variable";

// Of an entry of missing values, categories or value labels.
inline constexpr std::string_view value = "value";
inline constexpr std::string_view label = "label";

// Of what the standard has no word for: a variable, and a dataset.
inline constexpr std::string_view storageWidth = "storageWidth";
inline constexpr std::string_view width = "width";
inline constexpr std::string_view decimals = "decimals";
inline constexpr std::string_view columns = "columns";
inline constexpr std::string_view align = "align";
inline constexpr std::string_view level = "level";
inline constexpr std::string_view role = "role";
inline constexpr std::string_view valueLabels = "valueLabels";
inline constexpr std::string_view missing = "missing";
inline constexpr std::string_view low = "low";
inline constexpr std::string_view high = "high";
inline constexpr std::string_view values = "values";
inline constexpr std::string_view attributes = "attributes";
inline constexpr std::string_view filter = "filter";
inline constexpr std::string_view weight = "weight";
inline constexpr std::string_view split = "split";

}  // namespace workbench::data::property
