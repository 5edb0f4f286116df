#include "workbench/data/files/table_dialect.h"

#include <string_view>
#include <utility>

#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr std::string_view lineBreaks("\r\n\0", 3);

bool holdsLineBreak(std::string_view text) { return text.find_first_of(lineBreaks) != std::string_view::npos; }

bool isAsciiCharacter(char character) {
  return static_cast<unsigned char>(character) < 0x80U && !holdsLineBreak({&character, 1});
}

}  // namespace

TableDialect jsonLinesDialect(std::string encoding, std::vector<std::string> keys) {
  TableDialect dialect;
  dialect.encoding = std::move(encoding);
  dialect.form = TextForm::jsonLines;
  dialect.keys = std::move(keys);
  return dialect;
}

std::optional<std::string> contradictionIn(const TableDialect& dialect) {
  if (dialect.quote && !isAsciiCharacter(*dialect.quote))
    return text::sentence("The dialect has a quote character that is no plain character.");
  if (dialect.escape && !isAsciiCharacter(*dialect.escape))
    return text::sentence("The dialect has an escape character that is no plain character.");
  if (dialect.quote && dialect.quote == dialect.escape)
    return text::sentence("The dialect has one character for quotes and for escapes.");
  if (holdsLineBreak(dialect.commentText))
    return text::sentence("The dialect has a line break in what comments begin with.");
  if (!dialect.delimiter) return std::nullopt;
  const std::string_view delimiter = *dialect.delimiter;
  if (delimiter.empty()) return text::sentence("The dialect has nothing between fields.");
  if (holdsLineBreak(delimiter)) return text::sentence("The dialect has a line break between fields.");
  if (dialect.quote && delimiter.find(*dialect.quote) != std::string_view::npos) {
    return text::sentence("The dialect has the quote character between fields.");
  }
  if (dialect.escape && delimiter.find(*dialect.escape) != std::string_view::npos) {
    return text::sentence("The dialect has the escape character between fields.");
  }
  return std::nullopt;
}

}  // namespace workbench::data
