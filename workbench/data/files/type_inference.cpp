#include "workbench/data/files/type_inference.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <unordered_map>

#include "workbench/text/folding.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

using VRIX_Variable_Enumerations::Alignment;
using VRIX_Variable_Enumerations::MeasurementLevel;

constexpr std::size_t mostWarnings = 20;

PrintFormat numberFormat(const ColumnEvidence& evidence) {
  constexpr std::int32_t widest = 40;
  constexpr std::int32_t mostDecimals = 16;
  const std::int32_t decimals = evidence.fractionDigits();
  const std::int32_t width = evidence.wholeWidth() + (decimals == 0 ? 0 : decimals + 1);
  if (decimals <= mostDecimals && width <= widest) return {FormatType::number, width, decimals};
  constexpr std::int32_t aroundDigits = 8;  // "-d." before the decimals, "E+308" behind them
  const std::int32_t scientificDecimals = std::min(evidence.significantDigits() - 1, mostDecimals);
  return {FormatType::scientific, scientificDecimals + aroundDigits, scientificDecimals};
}

PrintFormat clockFormat(FormatType type, std::int32_t wholeWidth, const ColumnEvidence& evidence) {
  const std::int32_t decimals = evidence.secondsDigits();
  return {type, wholeWidth + (decimals == 0 ? 0 : decimals + 1), decimals};
}

PrintFormat formatOf(CellKind kind, const ColumnEvidence& evidence, std::int32_t width) {
  constexpr std::int32_t dateWidth = 10;
  constexpr std::int32_t timeWidth = 8;
  switch (kind) {
    case CellKind::number:
      return numberFormat(evidence);
    case CellKind::date:
      return {FormatType::date, dateWidth, 0};
    case CellKind::time:
      return clockFormat(FormatType::time, timeWidth, evidence);
    case CellKind::dateTime:
      return clockFormat(FormatType::dateTime, dateWidth + 1 + timeWidth, evidence);
    case CellKind::text:
      return {FormatType::text, width, 0};
    case CellKind::empty:
      break;
  }
  return {};
}

std::int32_t displayWidthOf(const PrintFormat& format) {
  constexpr std::int32_t narrowestColumn = 8;
  constexpr std::int32_t widestColumn = 40;
  return std::clamp(format.width, narrowestColumn, widestColumn);
}

std::int32_t textWidth(const ColumnEvidence& evidence) {
  return static_cast<std::int32_t>(std::max<std::size_t>(evidence.longestText(), 1));
}

Variable inferredVariable(std::string name, CellKind kind, const ColumnEvidence& evidence) {
  Variable variable;
  variable.name = std::move(name);
  if (kind == CellKind::text) {
    variable.width = textWidth(evidence);
    variable.alignment = Alignment::left;
    variable.level = MeasurementLevel::nominal;
  }
  variable.format = formatOf(kind, evidence, variable.width);
  variable.displayWidth = displayWidthOf(variable.format);
  return variable;
}

PrintFormat declaredFormat(CellType type, const ColumnEvidence& evidence, std::int32_t width) {
  constexpr std::int32_t narrowestDuration = 8;
  constexpr std::int32_t widestDuration = 40;
  switch (type) {
    case CellType::number:
    case CellType::integer:
    case CellType::boolean:
    case CellType::year:
      return evidence.filled() == 0 ? PrintFormat{} : numberFormat(evidence);
    case CellType::date:
      return formatOf(CellKind::date, evidence, width);
    case CellType::time:
      return formatOf(CellKind::time, evidence, width);
    case CellType::dateTime:
      return formatOf(CellKind::dateTime, evidence, width);
    case CellType::duration:
      return {FormatType::duration,
              std::clamp(static_cast<std::int32_t>(evidence.longestText()), narrowestDuration, widestDuration), 0};
    case CellType::text:
      break;
  }
  return formatOf(CellKind::text, evidence, width);
}

Variable declaredVariable(std::string name, const DescribedField& field, const ColumnEvidence& evidence) {
  const bool isText = field.reading.type == CellType::text;
  Variable variable = field.variable;
  variable.name = std::move(name);
  variable.width = isText ? field.width.value_or(textWidth(evidence)) : 0;
  variable.format = field.format.value_or(declaredFormat(field.reading.type, evidence, variable.width));
  variable.displayWidth = field.displayWidth.value_or(displayWidthOf(variable.format));
  variable.alignment = field.alignment.value_or(isText ? Alignment::left : Alignment::right);
  return variable;
}

std::string nameOf(CellKind kind) {
  switch (kind) {
    case CellKind::date:
      return text::sentence("a date");
    case CellKind::time:
      return text::sentence("a time");
    case CellKind::dateTime:
      return text::sentence("a date with a time");
    default:
      return text::sentence("a number");
  }
}

bool isTyped(CellKind kind) { return kind != CellKind::empty && kind != CellKind::text; }

// The kind that all but a few of the filled cells are.
std::optional<CellKind> almostKind(const ColumnEvidence& evidence) {
  constexpr std::uint64_t fewAtMost = 2;
  constexpr std::uint64_t oneIn = 20;
  for (const CellKind kind : {CellKind::number, CellKind::date, CellKind::time, CellKind::dateTime}) {
    const std::uint64_t others = evidence.filled() - evidence.count(kind);
    const bool areFew = others * oneIn <= evidence.filled() || (others <= fewAtMost && others < evidence.count(kind));
    if (evidence.count(kind) != 0 && areFew) return kind;
  }
  return std::nullopt;
}

// What is said of a column that became text: because of one cell, or because its source says that it is text and no
// cell of it looks like one.
struct TextWarning {
  std::string_view forCell;
  std::string_view forSource;
};

constexpr TextWarning readAsText = {
    "Column \"^1\" is read as text: in ^2, ^3 ^4, ^5.",
    "Column \"^1\" is read as text: ^2 holds texts in it, whatever they look like.",
};
constexpr TextWarning readAsTextForOther = {
    "Column \"^1\" is read as text: in ^2, ^3 ^4, ^5; this file alone would have been read as ^6.",
    "Column \"^1\" is read as text: ^2 holds texts in it, whatever they look like; this file alone would have been "
    "read "
    "as ^3.",
};
constexpr TextWarning readAsTextUnlikeOther = {
    "Column \"^1\" is read as text: in ^2, ^3 ^4, ^5; the other file would have been read as ^6.",
    "Column \"^1\" is read as text: ^2 holds texts in it, whatever they look like; the other file would have been read "
    "as ^3.",
};

// What made the column text, and where: in the table, a cell other than `wanted`.
std::string textWarning(const TextWarning& warning, const std::string& column, const ScannedTable& table,
                        const CellSighting& cell, CellKind wanted) {
  if (cell.line == 0) return text::sentence(warning.forSource, {column, table.path, nameOf(wanted)});
  return text::sentence(warning.forCell, {column, table.path, text::sentence(table.place), fmt::to_string(cell.line),
                                          whyOtherThan(wanted, cell), nameOf(wanted)});
}

// One column with all that is known of it. The partner's evidence is null when it has no such column.
struct Column {
  const std::string& name;
  const ColumnEvidence& own;
  const ColumnEvidence* others;
  const ColumnEvidence& both;
};

// The columns of the other table, found by name without regard to case.
class PartnerColumns {
 public:
  explicit PartnerColumns(const ScannedTable* partner) {
    if (partner == nullptr) return;
    for (std::size_t column = 0; column < partner->names.size(); ++column) {
      byName_.emplace(text::foldedName(partner->names[column]), column);
    }
  }

  std::optional<std::size_t> find(const std::string& name) const {
    const auto found = byName_.find(text::foldedName(name));
    return found == byName_.end() ? std::nullopt : std::optional(found->second);
  }

 private:
  std::unordered_map<std::string, std::size_t> byName_;
};

bool isDeclaredText(const DescribedField* field) { return field != nullptr && field->reading.type == CellType::text; }

// Empty when the column is not text, or is text for good reasons.
std::string whyText(const Column& column, const ScannedTable& file, const ScannedTable* partner) {
  if (column.both.kind() != CellKind::text) return {};
  if (column.others != nullptr && isTyped(column.own.kind())) {
    const CellKind wanted = column.own.kind();
    return textWarning(readAsTextForOther, column.name, *partner, column.others->firstOtherThan(wanted), wanted);
  }
  if (column.others != nullptr && isTyped(column.others->kind())) {
    const CellKind wanted = column.others->kind();
    return textWarning(readAsTextUnlikeOther, column.name, file, column.own.firstOtherThan(wanted), wanted);
  }
  const std::optional<CellKind> wanted = almostKind(column.both);
  if (!wanted) return {};
  const CellSighting& ownCell = column.own.firstOtherThan(*wanted);
  if (ownCell.line != 0) return textWarning(readAsText, column.name, file, ownCell, *wanted);
  if (column.others == nullptr || column.others->firstOtherThan(*wanted).line == 0) return {};
  return textWarning(readAsText, column.name, *partner, column.others->firstOtherThan(*wanted), *wanted);
}

}  // namespace

InferredTypes inferTypes(const ScannedTable& table, const ScannedTable* partner) {
  const PartnerColumns partnerColumns(partner);
  InferredTypes types;
  std::size_t unsaid = 0;
  for (std::size_t index = 0; index < table.names.size(); ++index) {
    const std::string& name = table.names[index];
    const ColumnEvidence& own = table.columns[index];
    const std::optional<std::size_t> found = partnerColumns.find(name);
    const ColumnEvidence* others = found ? &partner->columns[*found] : nullptr;
    ColumnEvidence both = own;
    if (others != nullptr) both.merge(*others);
    if (table.fields[index] != nullptr) {
      types.variables.push_back(declaredVariable(name, *table.fields[index], both));
      continue;
    }
    const DescribedField* const partnerField = found ? partner->fields[*found] : nullptr;
    const bool isTextThere = isDeclaredText(partnerField);
    types.variables.push_back(inferredVariable(name, isTextThere ? CellKind::text : both.kind(), both));

    std::string warning = isTextThere ? std::string() : whyText({name, own, others, both}, table, partner);
    if (warning.empty()) continue;
    if (types.warnings.size() < mostWarnings) {
      types.warnings.push_back(std::move(warning));
    } else {
      ++unsaid;
    }
  }
  if (unsaid != 0) {
    types.warnings.push_back(
        text::sentence("^1 more columns are read as text because of single cells.", {fmt::to_string(unsaid)}));
  }
  return types;
}

std::vector<std::size_t> columnsBecomingText(const ScannedTable& table, const ScannedTable* partner) {
  const PartnerColumns partnerColumns(partner);
  std::vector<std::size_t> columns;
  for (std::size_t index = 0; index < table.names.size(); ++index) {
    if (table.fields[index] != nullptr) {
      if (isDeclaredText(table.fields[index])) columns.push_back(index);
      continue;
    }
    ColumnEvidence both = table.columns[index];
    if (const std::optional<std::size_t> found = partnerColumns.find(table.names[index])) {
      both.merge(partner->columns[*found]);
      if (isDeclaredText(partner->fields[*found])) {
        columns.push_back(index);
        continue;
      }
    }
    if (both.kind() == CellKind::text) columns.push_back(index);
  }
  return columns;
}

}  // namespace workbench::data
