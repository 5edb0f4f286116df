#include "workbench/data/databases/sqlite_cells.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

#include "workbench/data/cells/calendar_text.h"
#include "workbench/text/utf8.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

std::string inUpperCase(std::string text) {
  for (char& letter : text) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  }
  return text;
}

CellKind kindOfDeclared(const std::string& type) {
  const std::string upper = inUpperCase(type);
  const auto has = [&](std::string_view part) { return upper.find(part) != std::string::npos; };
  if (upper.starts_with("DATETIME") || upper.starts_with("TIMESTAMP")) return CellKind::dateTime;
  if (upper == "DATE") return CellKind::date;
  if (upper == "TIME") return CellKind::time;
  if (has("INT")) return CellKind::number;
  if (has("CHAR") || has("CLOB") || has("TEXT")) return CellKind::text;
  if (has("BLOB") || upper.empty() || upper == "ANY") return CellKind::empty;
  return CellKind::number;
}

// In a column of dates a text is read as one, if it is one in a form that ISO has.
bool isCalendarText(CellKind kind, std::string_view text) {
  if (kind == CellKind::date || kind == CellKind::dateTime) return dateOf(text) || dateTimeOf(text);
  return kind == CellKind::time && timeOf(text).has_value();
}

// The shortest text that reads as exactly this number. A whole one beyond 2^53 has an exponent: without one it would
// be taken for digits that a double does not tell apart.
std::string_view realText(double number, std::string& text) {
  constexpr double mostExact = 9007199254740992.0;
  text.resize(32);
  const bool isFar = std::isfinite(number) && std::fabs(number) >= mostExact;
  char* const end = text.data() + text.size();
  const auto written = isFar ? std::to_chars(text.data(), end, number, std::chars_format::scientific)
                             : std::to_chars(text.data(), end, number);
  return {text.data(), static_cast<std::size_t>(written.ptr - text.data())};
}

void appendDigits(std::string_view bytes, std::string& text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  for (const char byte : bytes) {
    text += digits[static_cast<unsigned char>(byte) >> 4U];
    text += digits[static_cast<unsigned char>(byte) & 15U];
  }
}

}  // namespace

KnownColumn sqliteColumn(std::string name, std::string declaredType) {
  const CellKind kind = kindOfDeclared(declaredType);
  if (declaredType.empty()) declaredType = text::sentence("values of any type");
  return {std::move(name), std::move(declaredType), kind, "", std::nullopt};
}

Outcome<Done> SqliteCells::add(SqliteStatement& row, std::uint64_t number, CellBatch& batch) {
  const auto refusal = [&](std::size_t column, std::string_view why) {
    return Problem{text::sentence(why, {columns_[column].name}),
                   text::sentence("^1, row ^2", {path_, fmt::to_string(number)}), text::sentence("Correct the value.")};
  };
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    const int index = static_cast<int>(column);
    switch (row.type(index)) {
      case SQLITE_INTEGER:
        text_ = fmt::to_string(row.integer(index));
        batch.add(text_, false, number);
        break;
      case SQLITE_FLOAT:
        batch.add(realText(row.real(index), text_), false, number);
        break;
      case SQLITE_TEXT: {
        const std::string_view text = row.text(index);
        if (text.find('\0') != std::string_view::npos)
          return refusal(column, "In column \"^1\" the value holds a NUL byte.");
        if (!text::isUtf8(text)) return refusal(column, "In column \"^1\" the value is no UTF-8.");
        if (!text.empty() && !isCalendarText(columns_[column].kind, text)) batch.markText(column);
        batch.add(text, false, number);
        break;
      }
      case SQLITE_BLOB:
        text_.clear();
        appendDigits(row.blob(index), text_);
        batch.markText(column);
        batch.add(text_, false, number);
        hasBytes_[column] = true;
        break;
      default:
        batch.add("", true, number);
    }
    if (batch.ownBytes() > CellBatch::mostBytes)
      return refusal(column, "In column \"^1\" the value is longer than is read.");
  }
  return Done{};
}

std::vector<std::string> SqliteCells::warnings() const {
  std::vector<std::string> names;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    if (hasBytes_[column]) {
      names.push_back(
          text::sentence("Column \"^1\" holds bytes; they are read as the texts of their hexadecimal digits.",
                         {columns_[column].name}));
    }
  }
  return names;
}

}  // namespace workbench::data
