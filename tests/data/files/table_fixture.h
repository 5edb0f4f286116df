// Tables over files for tests: by a dialect, with what is declared of some columns, read by either reader.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/data/cells/reading_builder.h"
#include "tests/data/files/file_fixture.h"
#include "tests/data/files/scanner_fixture.h"
#include "workbench/data/files/case_readers.h"
#include "workbench/data/files/csv_case_reader.h"
#include "workbench/data/files/scanned_case_reader.h"

namespace workbench::data {

// What is declared of columns, by their names; of others nothing is.
using Declared = std::map<std::string, DeclaredColumn>;

inline DeclareColumns declaring(Declared declared) {
  return [declared = std::move(declared)](const std::vector<std::string>& names) -> Outcome<DeclaredColumns> {
    DeclaredColumns columns;
    for (const std::string& name : names) {
      const auto found = declared.find(name);
      columns.push_back(found == declared.end() ? std::nullopt : std::optional(found->second));
    }
    return columns;
  };
}

inline DeclaredColumn as(const CellReading& reading) { return {reading, {}, {}}; }

using SharedTable = std::shared_ptr<const CsvTable>;

// Columns that are named are left out; every other one feeds a variable of its own: a number where a number is
// declared, else a text as wide as its longest cell needs. Null and a failed test when the files are not sound.
inline SharedTable tableOf(const std::vector<std::string>& paths, const TableDialect& dialect,
                           const Declared& declared = {}, const std::vector<std::string>& leftOut = {}) {
  const FileKind kind = *fileKind(paths.front());
  const auto evidence = evidenceOfParts(paths, kind, dialect, declaring(declared));
  if (!evidence) {
    ADD_FAILURE() << evidence.problem().text();
    return nullptr;
  }
  std::vector<CsvPart> parts;
  for (std::size_t index = 0; index < paths.size(); ++index) parts.push_back({paths[index], evidence->parts[index]});
  const FileEvidence& whole = *evidence->whole;
  Dictionary dictionary;
  std::vector<CsvColumn> columns;
  for (std::size_t column = 0; column < whole.header.size(); ++column) {
    CsvColumn& how = columns.emplace_back();
    if (std::find(leftOut.begin(), leftOut.end(), whole.header[column]) != leftOut.end()) continue;
    Variable variable;
    variable.name = dictionary.goodName(whole.header[column]);
    if (whole.declared[column]) how.reading = whole.declared[column]->reading;
    if (!how.reading || how.reading->type == CellType::text) {
      variable.width = static_cast<std::int32_t>(std::max<std::size_t>(whole.columns[column].longestText(), 1));
    }
    how.variable = dictionary.add(std::move(variable));
  }
  return std::make_shared<const CsvTable>(paths.front(), std::move(parts), kind, std::move(columns),
                                          std::move(dictionary));
}

// All cases as texts, like those of a file.
inline std::string casesBy(CaseReader& reader, const CsvTable& table) {
  CaseBlock block(table.layout.caseSlots);
  std::string all;
  for (reader.fill(block); block.cases() != 0; reader.fill(block)) {
    for (std::size_t index = 0; index < block.cases(); ++index) {
      if (!all.empty()) all += " / ";
      for (std::int32_t variable = 0; variable < table.dictionary.size(); ++variable) {
        const OBS* value = block.at(index) + table.layout.slotOfVariable[static_cast<std::size_t>(variable)];
        all += fmt::format("{}{}", variable == 0 ? "" : " ", cellText(table.dictionary.at(variable), value));
      }
    }
  }
  return all;
}

inline std::string casesOfScanner(const SharedTable& table) {
  ScannedCaseReader reader(table);
  return casesBy(reader, *table);
}

inline std::string casesOfDuckDb(const SharedTable& table) {
  CsvCaseReader reader(table);
  return casesBy(reader, *table);
}

// By the reader that is for the table.
inline std::string casesOf(const SharedTable& table) {
  if (table == nullptr) return "no table";
  const std::unique_ptr<CaseReader> reader = openCaseReader(table);
  return casesBy(*reader, *table);
}

}  // namespace workbench::data
