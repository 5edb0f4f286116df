#include "workbench/data/files/field_matching.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_map>

namespace workbench::data {
namespace {

struct FileFields {
  const DescribedTable& table;
  const std::vector<std::string>& header;
  const std::string& path;

  Problem refusal(std::string what) const {
    return {std::move(what), path,
            fmt::format("Correct the fields in {}, or say there with \"fieldsMatch\" how they match.",
                        table.descriptorPath)};
  }
};

Problem otherCount(const FileFields& file) {
  return file.refusal(fmt::format("The file has {} column{}, and {} field{} declared for it.", file.header.size(),
                                  file.header.size() == 1 ? "" : "s", file.table.fields.size(),
                                  file.table.fields.size() == 1 ? " is" : "s are"));
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
    return file.refusal(
        fmt::format("Column {} is called \"{}\", and the field there \"{}\".", column + 1, file.header[column], name));
  }
  return matched;
}

std::string quotedList(const std::vector<std::string>& names) {
  constexpr std::size_t mostNamed = 10;
  std::string list;
  for (std::size_t index = 0; index < std::min(names.size(), mostNamed); ++index) {
    fmt::format_to(std::back_inserter(list), "{}\"{}\"", index == 0 ? "" : ", ", names[index]);
  }
  if (names.size() > mostNamed) fmt::format_to(std::back_inserter(list), " and {} more", names.size() - mostNamed);
  return list;
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
    return file.refusal(fmt::format("No field is declared for {}.", quotedList(undeclared)));
  }
  if (!notHeld.empty() && !mayHaveFewerColumns) {
    return file.refusal(fmt::format("No column holds the declared {}.", quotedList(notHeld)));
  }
  if (undeclared.size() == file.header.size()) return file.refusal("No column has the name of a declared field.");
  if (!notHeld.empty()) {
    matched.warnings.push_back(
        fmt::format("No column holds {}, which {} declares.", quotedList(notHeld), file.table.descriptorPath));
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
