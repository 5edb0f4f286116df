#include "workbench/data/files/field_matching.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_map>

#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

struct FileFields {
  const DescribedTable& table;
  const std::vector<std::string>& header;
  const std::string& path;

  Problem refusal(std::string_view what, std::initializer_list<std::string_view> items = {}) const {
    return {text::sentence(what, items), path,
            text::sentence("Correct the fields in ^1, or say there with \"fieldsMatch\" how they match.",
                           {table.descriptorPath})};
  }
};

// English bends with both numbers.
std::string_view patternOfCounts(std::size_t columns, std::size_t fields) {
  if (columns == 1 && fields == 1) return "The file has ^1 column, and ^2 field is declared for it.";
  if (columns == 1) return "The file has ^1 column, and ^2 fields are declared for it.";
  if (fields == 1) return "The file has ^1 columns, and ^2 field is declared for it.";
  return "The file has ^1 columns, and ^2 fields are declared for it.";
}

Problem otherCount(const FileFields& file) {
  const std::size_t columns = file.header.size();
  const std::size_t fields = file.table.fields.size();
  return file.refusal(patternOfCounts(columns, fields), {fmt::to_string(columns), fmt::to_string(fields)});
}

// By order; what is left over on a side may be left over.
Outcome<MatchedFields> matchByOrder(const FileFields& file) {
  const std::size_t columns = file.header.size();
  const std::size_t fields = file.table.fields.size();
  const FieldsMatch match = file.table.fieldsMatch;
  const bool mayHaveMoreColumns = match == FieldsMatch::subset || match == FieldsMatch::partial;
  const bool mayHaveFewerColumns = match == FieldsMatch::superset || match == FieldsMatch::partial;
  if ((columns > fields && !mayHaveMoreColumns) || (columns < fields && !mayHaveFewerColumns)) return otherCount(file);
  MatchedFields matched;
  matched.fieldOfColumn.resize(columns);
  for (std::size_t column = 0; column < std::min(columns, fields); ++column) matched.fieldOfColumn[column] = column;
  return matched;
}

Outcome<MatchedFields> matchExactly(const FileFields& file) {
  Outcome<MatchedFields> matched = matchByOrder(file);
  if (!matched) return matched;
  for (std::size_t column = 0; column < file.header.size(); ++column) {
    const std::string& name = file.table.fields[column].variable.name;
    if (file.header[column] == name) continue;
    return file.refusal("Column ^1 is called \"^2\", and the field there \"^3\".",
                        {fmt::to_string(column + 1), file.header[column], name});
  }
  return matched;
}

std::string quotedList(const std::vector<std::string>& names) {
  constexpr std::size_t mostNamed = 10;
  std::string list;
  for (std::size_t index = 0; index < std::min(names.size(), mostNamed); ++index) {
    fmt::format_to(std::back_inserter(list), "{}\"{}\"", index == 0 ? "" : ", ", names[index]);
  }
  if (names.size() <= mostNamed) return list;
  return text::sentence("^1 and ^2 more", {list, fmt::to_string(names.size() - mostNamed)});
}

Outcome<MatchedFields> matchByName(const FileFields& file) {
  const FieldsMatch match = file.table.fieldsMatch;
  std::unordered_map<std::string, std::size_t> fieldOfName;
  for (std::size_t field = 0; field < file.table.fields.size(); ++field) {
    fieldOfName.emplace(file.table.fields[field].variable.name, field);
  }

  // 1. Every column takes the field of its name, once.
  MatchedFields matched;
  std::vector<bool> isHeld(file.table.fields.size());
  std::vector<std::string> undeclared;
  for (const std::string& name : file.header) {
    const auto found = fieldOfName.find(name);
    const bool isTaken = found != fieldOfName.end() && !isHeld[found->second];
    matched.fieldOfColumn.push_back(isTaken ? std::optional(found->second) : std::nullopt);
    if (isTaken) {
      isHeld[found->second] = true;
    } else {
      undeclared.push_back(name);
    }
  }
  std::vector<std::string> notHeld;
  for (std::size_t field = 0; field < isHeld.size(); ++field) {
    if (!isHeld[field]) notHeld.push_back(file.table.fields[field].variable.name);
  }

  // 2. What is left over may be left over, or not.
  const bool mayHaveMoreColumns = match == FieldsMatch::subset || match == FieldsMatch::partial;
  const bool mayHaveFewerColumns = match == FieldsMatch::superset || match == FieldsMatch::partial;
  if (!undeclared.empty() && !mayHaveMoreColumns) {
    return file.refusal("No field is declared for ^1.", {quotedList(undeclared)});
  }
  if (!notHeld.empty() && !mayHaveFewerColumns) {
    return file.refusal("No column holds the declared ^1.", {quotedList(notHeld)});
  }
  if (undeclared.size() == file.header.size()) return file.refusal("No column has the name of a declared field.");
  if (!notHeld.empty()) {
    matched.warnings.push_back(
        text::sentence("No column holds ^1, which ^2 declares.", {quotedList(notHeld), file.table.descriptorPath}));
  }
  return matched;
}

}  // namespace

Outcome<MatchedFields> matchFields(const DescribedTable& table, const std::vector<std::string>& header,
                                   const std::string& path) {
  const FileFields file{table, header, path};
  if (table.fields.empty()) return MatchedFields{std::vector<std::optional<std::size_t>>(header.size()), {}};
  if (table.dialect.headerRows.empty()) return matchByOrder(file);
  return table.fieldsMatch == FieldsMatch::exact ? matchExactly(file) : matchByName(file);
}

}  // namespace workbench::data
