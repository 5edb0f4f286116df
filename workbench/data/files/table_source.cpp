#include "workbench/data/files/table_source.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "workbench/data/descriptors/find_description.h"
#include "workbench/data/descriptors/missing_codes.h"
#include "workbench/data/files/column_names.h"
#include "workbench/data/files/protected_name.h"
#include "workbench/data/files/table_reference.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// What the file's name says, but where the descriptor says whether it holds JSON lines: that may be all that is known.
Outcome<FileKind> kindOf(const std::string& path, const DescribedTable* description) {
  Outcome<FileKind> kind = fileKind(path);
  if (description == nullptr || !description->kind) return kind;
  if (!kind && description->kind->form == TextForm::jsonLines) return *description->kind;
  if (kind) kind->form = description->kind->form;
  return kind;
}

// All files of a table are of one kind.
Outcome<FileKind> commonKind(const std::vector<std::string>& dataPaths, const DescribedTable* description) {
  Outcome<FileKind> kind = kindOf(dataPaths.front(), description);
  if (!kind) return kind;
  for (const std::string& path : dataPaths) {
    const Outcome<FileKind> other = kindOf(path, description);
    if (!other) return other;
    const bool isSame =
        other->form == kind->form && other->delimiter == kind->delimiter && other->packing == kind->packing;
    if (isSame) continue;
    return Problem{text::sentence("The file is of another kind than ^1, and both are said to hold one table.",
                                  {dataPaths.front()}),
                   path, text::sentence("Let all files of a table be of one kind.")};
  }
  if (description != nullptr && description->packing) kind->packing = *description->packing;
  return kind;
}

// Fields are the first columns, in their order: in JSON lines keys have none, and one that is nowhere is a value that
// is missing everywhere.
void describeJsonLines(DescribedTable& table) {
  std::vector<std::string> keys;
  for (const DescribedField& field : table.fields) {
    const std::string& name = field.variable.name;
    if (std::find(keys.begin(), keys.end(), name) == keys.end()) keys.push_back(name);
  }
  table.dialect = jsonLinesDialect(table.dialect.encoding, std::move(keys));
}

// Category values and discrete missing values are what a cell may be. A range cannot be listed: then nothing is said.
void restrictValues(DeclaredColumn& column, const DescribedField& field) {
  const MissingValues& missing = field.variable.missing;
  if (!field.categories || missing.code < 0) return;
  column.numbers = field.categories->numbers;
  column.texts = field.categories->texts;
  for (const OBS& value : discreteValues(missing)) {
    if (field.reading.type != CellType::text) {
      column.numbers.push_back(value.number);
    } else {
      column.texts.emplace_back(missingText(value));
    }
  }
}

DeclareColumns declarationsOf(std::shared_ptr<const DescribedTable> description, std::string path) {
  if (description == nullptr || description->fields.empty()) return nullptr;
  return [description = std::move(description),
          path = std::move(path)](const std::vector<std::string>& header) -> Outcome<DeclaredColumns> {
    const Outcome<MatchedFields> matched = matchFields(*description, header, path);
    if (!matched) return matched.problem();
    DeclaredColumns columns(header.size());
    for (std::size_t column = 0; column < header.size(); ++column) {
      const std::optional<std::size_t> index = matched->fieldOfColumn[column];
      if (!index) continue;
      const DescribedField& field = description->fields[*index];
      columns[column] = DeclaredColumn{field.reading, {}, {}};
      restrictValues(*columns[column], field);
    }
    return columns;
  };
}

// A warning of so many cells, the first of which is shown.
std::string cellWarning(std::string_view ofOne, std::string_view ofMany, const std::string& column, std::uint64_t count,
                        const CellSighting& first) {
  return text::sentence(count == 1 ? ofOne : ofMany,
                        {column, first.quoted(), fmt::to_string(first.line), fmt::to_string(count)});
}

void warnOfFindings(TableSource& source) {
  const FileEvidence& evidence = *source.evidence.whole;
  for (std::size_t column = 0; column < evidence.findings.size(); ++column) {
    const DeclaredFindings& findings = evidence.findings[column];
    const std::string& name = source.names[column];
    if (findings.outside != 0) {
      source.warnings.push_back(
          cellWarning("Column \"^1\": the value ^2 in line ^3 is no category of the field.",
                      "Column \"^1\": ^4 values, the first of them ^2 in line ^3, are no category of the field.", name,
                      findings.outside, findings.firstOutside));
    }
    if (findings.oddGroups != 0) {
      source.warnings.push_back(cellWarning(
          "Column \"^1\": the value ^2 in line ^3 is grouped otherwise than by three digits.",
          "Column \"^1\": ^4 values, the first of them ^2 in line ^3, are grouped otherwise than by three digits.",
          name, findings.oddGroups, findings.firstOddGroups));
    }
    if (findings.zoned.value_or(false)) {
      source.warnings.push_back(
          text::sentence("Column \"^1\": its times bear a zone; they are read as times in UTC.", {name}));
    }
  }
}

void warnOfLines(TableSource& source) {
  for (const SharedEvidence& part : source.evidence.parts) {
    if (part->skippedLines == 0) continue;
    source.warnings.push_back(text::sentence(
        part->skippedLines == 1 ? "1 blank line stands between others, the first in line ^2; it was skipped."
                                : "^1 blank lines stand between others, the first in line ^2; they were skipped.",
        {fmt::to_string(part->skippedLines), fmt::to_string(part->firstSkippedLine)}));
  }
  const std::optional<std::int64_t> told = source.description ? source.description->bytes : std::nullopt;
  const std::int64_t size = source.evidence.parts.front()->identity.size;
  // A package counts the bytes of the file; of a protected one we see the plain content.
  if (told && *told != size && !isProtectedName(source.dataPaths.front())) {
    source.warnings.push_back(
        text::sentence("The file has ^1 bytes, and ^2 says ^3.",
                       {fmt::to_string(size), source.description->descriptorPath, fmt::to_string(*told)}));
  }
}

void nameColumns(TableSource& source) {
  std::vector<std::string> wanted = source.evidence.whole->header;
  for (std::size_t column = 0; column < wanted.size(); ++column) {
    if (const DescribedField* field = source.fieldOf(column)) wanted[column] = field->variable.name;
  }
  ColumnNames names = columnNames(wanted);
  source.names = std::move(names.names);
  for (std::string& warning : names.warnings) source.warnings.push_back(std::move(warning));
}

void warnOfKeys(TableSource& source) {
  const FileEvidence& evidence = *source.evidence.whole;
  for (const std::string& remark : evidence.remarks) source.warnings.push_back(remark);
  if (evidence.cases == 0) return;
  for (const std::string& key : evidence.unseenKeys) {
    source.warnings.push_back(
        text::sentence("No line has the key \"^1\", which ^2 declares; all its values are missing.",
                       {key, source.description->descriptorPath}));
  }
}

}  // namespace

Outcome<std::optional<DescribedTable>> descriptionOf(const std::string& path) {
  const std::optional<TableReference> reference = packageReference(path);
  if (!reference) return descriptionBeside(path);
  Outcome<DescribedTable> described = describedResource(reference->file, reference->table);
  if (!described) return described.problem();
  return std::optional(std::move(*described));
}

Outcome<TableSource> examineTable(const std::string& path) {
  TableSource source;
  source.path = path;
  source.dataPaths = {path};

  // 1. What is said of the table.
  if (!packageReference(path)) {
    if (const Outcome<FileKind> kind = fileKind(path); !kind) return kind.problem();
  }
  Outcome<std::optional<DescribedTable>> described = descriptionOf(path);
  if (!described) return described.problem();
  if (*described) source.dataPaths = (*described)->dataPaths;
  const Outcome<FileKind> kind = commonKind(source.dataPaths, *described ? &**described : nullptr);
  if (!kind) return kind.problem();
  source.kind = *kind;
  if (*described) {
    if (kind->form == TextForm::jsonLines) describeJsonLines(**described);
    source.description = std::make_shared<const DescribedTable>(std::move(**described));
    source.warnings = source.description->warnings;
  }
  const DescribedTable* const description = source.description.get();

  // 2. What stands in it.
  Outcome<TableEvidence> evidence =
      evidenceOfParts(source.dataPaths, source.kind, description == nullptr ? TableDialect() : description->dialect,
                      declarationsOf(source.description, source.dataPaths.front()));
  if (!evidence) return evidence.problem();
  source.evidence = std::move(*evidence);

  // 3. How both belong together.
  const std::vector<std::string>& header = source.evidence.whole->header;
  const DescribedTable undescribed;
  Outcome<MatchedFields> fields =
      matchFields(description == nullptr ? undescribed : *description, header, source.dataPaths.front());
  if (!fields) return fields.problem();
  source.fields = std::move(*fields);
  for (const std::string& warning : source.fields.warnings) source.warnings.push_back(warning);
  nameColumns(source);
  warnOfLines(source);
  warnOfKeys(source);
  warnOfFindings(source);
  return source;
}

}  // namespace workbench::data
