#include "workbench/data/descriptors/dialect_reading.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>

#include "workbench/data/descriptors/property_names.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// A dialect on its way, and what has to be known of it besides.
struct DialectDraft {
  TableDialect dialect;
  bool hasHeader = true;
  bool givesQuote = false;
};

constexpr auto lineEnds = std::to_array<std::string_view>({"\n", "\r\n", "\r"});

// A text that parts or encloses what stands in a line.
std::optional<std::string> mark(const DescriptorValue& value) {
  std::optional<std::string> written = value.textWithoutNul();
  if (!written) return std::nullopt;
  if (written->empty()) {
    value.reject("^1 is empty, and has to be a text of one character or more.",
                 "Leave it out, or write the characters.");
    return std::nullopt;
  }
  if (written->find_first_of("\r\n") == std::string::npos) return written;
  value.reject("^1 holds a line end, and has to stand within a line.", "Write other characters.");
  return std::nullopt;
}

std::optional<char> oneCharacter(const DescriptorValue& value) {
  constexpr unsigned char endOfAscii = 0x80;
  const std::optional<std::string> written = mark(value);
  if (!written) return std::nullopt;
  if (written->size() == 1 && static_cast<unsigned char>(written->front()) < endOfAscii) return written->front();
  value.reject("^1 is \"^2\", and has to be exactly one ASCII character.", {*written},
               "Write a single character such as \\\".");
  return std::nullopt;
}

std::vector<std::uint64_t> rowNumbers(const DescriptorValue& value) {
  std::vector<std::uint64_t> rows;
  for (const DescriptorValue& entry : value.list().value_or(std::vector<DescriptorValue>{})) {
    const auto row = entry.wholeNumber(1, std::numeric_limits<std::int64_t>::max());
    if (row) rows.push_back(static_cast<std::uint64_t>(*row));
  }
  std::sort(rows.begin(), rows.end());
  if (const auto twin = std::adjacent_find(rows.begin(), rows.end()); twin != rows.end()) {
    value.reject("^1 names row ^2 twice.", {fmt::to_string(*twin)}, "Name every row once.");
  }
  return rows;
}

void readDelimiter(const DescriptorValue& value, DialectDraft& draft) { draft.dialect.delimiter = mark(value); }

void readLineTerminator(const DescriptorValue& value, DialectDraft&) {
  const std::optional<std::string> written = value.text();
  if (!written || std::find(lineEnds.begin(), lineEnds.end(), *written) != lineEnds.end()) return;
  value.reject("^1 is none of the line ends that are read.", R"(Write "\n", "\r\n" or "\r".)");
}

// No quotes at all can be said in no other way than by an empty text or null.
void readQuote(const DescriptorValue& value, DialectDraft& draft) {
  const bool isNone = value.isNull() || (value.isText() && value.text()->empty());
  draft.dialect.quote = isNone ? std::nullopt : oneCharacter(value);
  draft.givesQuote = !isNone;
}

void readDoubleQuote(const DescriptorValue& value, DialectDraft& draft) {
  draft.dialect.doubleQuote = value.truth().value_or(true);
}

void readEscape(const DescriptorValue& value, DialectDraft& draft) { draft.dialect.escape = oneCharacter(value); }

void readHeader(const DescriptorValue& value, DialectDraft& draft) { draft.hasHeader = value.truth().value_or(true); }

void readHeaderRows(const DescriptorValue& value, DialectDraft& draft) {
  draft.dialect.headerRows = rowNumbers(value);
  if (!draft.dialect.headerRows.empty()) return;
  value.reject("^1 names no row.", "Name the rows of the header, or write \"header\": false where there is none.");
}

void readHeaderJoin(const DescriptorValue& value, DialectDraft& draft) {
  draft.dialect.headerJoin = value.textWithoutNul().value_or("");
}

void readCommentRows(const DescriptorValue& value, DialectDraft& draft) {
  draft.dialect.commentRows = rowNumbers(value);
}

void readCommentText(const DescriptorValue& value, DialectDraft& draft) {
  draft.dialect.commentText = mark(value).value_or("");
}

void readNullSequence(const DescriptorValue& value, DialectDraft& draft) {
  draft.dialect.nullSequence = value.textWithoutNul();
}

void readSkipInitialSpace(const DescriptorValue& value, DialectDraft& draft) {
  draft.dialect.skipInitialSpace = value.truth().value_or(false);
}

struct DialectRow {
  std::string_view name;
  void (*read)(const DescriptorValue& value, DialectDraft& draft);
};
constexpr auto dialectRows = std::to_array<DialectRow>({
    {property::delimiter, readDelimiter},
    {property::lineTerminator, readLineTerminator},
    {property::quoteChar, readQuote},
    {property::doubleQuote, readDoubleQuote},
    {property::escapeChar, readEscape},
    {property::header, readHeader},
    {property::headerRows, readHeaderRows},
    {property::headerJoin, readHeaderJoin},
    {property::commentRows, readCommentRows},
    {property::commentChar, readCommentText},
    {property::nullSequence, readNullSequence},
    {property::skipInitialSpace, readSkipInitialSpace},
});

bool holds(const std::string& text, std::optional<char> character) {
  return character && text.find(*character) != std::string::npos;
}

void checkMarks(const DescriptorObject& object, const DialectDraft& draft) {
  const TableDialect& dialect = draft.dialect;
  constexpr const char* chooseAnother = "Choose another character for one of them.";
  if (dialect.delimiter && (holds(*dialect.delimiter, dialect.quote) || holds(*dialect.delimiter, dialect.escape))) {
    object.value().rejectWith("The delimiter holds the quote or the escape character.", chooseAnother);
  }
  if (dialect.escape && dialect.escape == dialect.quote) {
    object.value().rejectWith("\"escapeChar\" and \"quoteChar\" are the same character.",
                              "Leave \"escapeChar\" out: quotes inside quotes are doubled.");
  }
  if (dialect.escape && draft.givesQuote) {
    object.value().findings().warn(text::sentence(
        "The dialect gives both \"quoteChar\" and \"escapeChar\", which exclude each other; the escape character is "
        "taken to work inside quotes as well."));
  }
}

void checkRows(const DescriptorObject& object, const TableDialect& dialect) {
  for (const std::uint64_t row : dialect.headerRows) {
    if (!std::binary_search(dialect.commentRows.begin(), dialect.commentRows.end(), row)) continue;
    object.value().rejectWith("Row ^1 cannot be a header row and a comment row.", {fmt::to_string(row)},
                              "Take it out of \"headerRows\" or of \"commentRows\".");
  }
}

}  // namespace

TableDialect tableDialect(const DescriptorObject& object) {
  DialectDraft draft;
  for (const DialectRow& row : dialectRows) {
    if (const auto value = object.at(row.name)) row.read(*value, draft);
  }
  if (!draft.hasHeader) draft.dialect.headerRows.clear();
  checkMarks(object, draft);
  checkRows(object, draft.dialect);
  return std::move(draft.dialect);
}

}  // namespace workbench::data
