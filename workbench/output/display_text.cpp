#include "workbench/output/display_text.h"

#include <fmt/format.h>
#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <memory>
#include <stdexcept>

#include "workbench/text/utf8.h"
#include "workbench/text/wording.h"

namespace workbench::output {
namespace {

constexpr std::string_view ellipsis = "\xE2\x80\xA6";
constexpr std::string_view replacement = "\xEF\xBF\xBD";

bool isPlainAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char character) { return character >= 0x20 && character < 0x7f; });
}

// The character at the place, which moves behind it; negative when there is none that is UTF-8.
UChar32 nextCharacter(std::string_view text, std::size_t& place) {
  const workbench::text::Character character = workbench::text::characterAt(text, place);
  place += character.bytes;
  return character.codePoint;
}

// Where the text may be divided, its end included.
class Breaks {
 public:
  using Make = icu::BreakIterator* (*)(const icu::Locale&, UErrorCode&);

  explicit Breaks(Make make) {
    UErrorCode status = U_ZERO_ERROR;
    iterator_.reset(make(icu::Locale::getRoot(), status));
    if (U_FAILURE(status)) throw std::runtime_error(text::sentence("ICU's data for dividing texts cannot be loaded."));
  }

  std::vector<std::size_t> of(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    UText opened = UTEXT_INITIALIZER;
    utext_openUTF8(&opened, text.data(), static_cast<std::int64_t>(text.size()), &status);
    iterator_->setText(&opened, status);
    std::vector<std::size_t> places;
    iterator_->first();
    for (std::int32_t at = iterator_->next(); at != icu::BreakIterator::DONE; at = iterator_->next()) {
      places.push_back(static_cast<std::size_t>(at));
    }
    utext_close(&opened);
    return places;
  }

 private:
  std::unique_ptr<icu::BreakIterator> iterator_;
};

std::vector<std::size_t> characterBreaks(std::string_view text) {
  static thread_local Breaks breaks(&icu::BreakIterator::createCharacterInstance);
  return breaks.of(text);
}

std::vector<std::size_t> lineBreaks(std::string_view text) {
  static thread_local Breaks breaks(&icu::BreakIterator::createLineInstance);
  return breaks.of(text);
}

int widthOf(UChar32 character) {
  switch (u_charType(character)) {
    case U_NON_SPACING_MARK:
    case U_ENCLOSING_MARK:
    case U_FORMAT_CHAR:
      return 0;
    default:
      break;
  }
  const int eastAsian = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return eastAsian == U_EA_WIDE || eastAsian == U_EA_FULLWIDTH ? 2 : 1;
}

// Of one user-perceived character: its base takes the columns; marks and joined parts take none.
int clusterWidth(std::string_view cluster) {
  constexpr UChar32 emojiStyle = 0xFE0F;
  std::size_t place = 0;
  const UChar32 base = nextCharacter(cluster, place);
  int width = base < 0 ? 1 : widthOf(base);
  if (base >= 0 && u_hasBinaryProperty(base, UCHAR_REGIONAL_INDICATOR) && place < cluster.size()) width = 2;  // a flag
  while (place < cluster.size()) {
    const UChar32 character = nextCharacter(cluster, place);
    if (character == emojiStyle) width = 2;
    if (u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH) == U_EA_HALFWIDTH) ++width;  // a narrow voicing mark
  }
  return width;
}

bool isNumberPart(char character) {
  return std::isdigit(static_cast<unsigned char>(character)) != 0 ||
         std::string_view(".,:+-%$eET/").find(character) != std::string_view::npos;
}

// The marks of locales that are no ASCII: between groups of digits, and before a percent sign.
std::string withoutWideMarks(std::string_view word) {
  std::string rest(word);
  for (const std::string_view mark : {"\xC2\xA0", "\xE2\x80\xAF", "\xE2\x80\x99"}) {
    for (std::size_t at = rest.find(mark); at != std::string::npos; at = rest.find(mark, at))
      rest.erase(at, mark.size());
  }
  return rest;
}

bool isNumber(std::string_view word) {
  const std::string bare = isPlainAscii(word) ? std::string() : withoutWideMarks(word);
  if (!bare.empty()) word = bare;
  return std::all_of(word.begin(), word.end(), isNumberPart) &&
         std::any_of(word.begin(), word.end(), [](char character) { return character >= '0' && character <= '9'; });
}

// Whether a break at this place would go through a number.
bool isWithinNumber(std::string_view line, std::size_t place) {
  if (place == 0 || place >= line.size()) return false;
  const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
  const char before = line[place - 1];
  const char after = line[place];
  return isNumberPart(before) && isNumberPart(after) && (isDigit(before) || isDigit(after));
}

std::string_view withoutTrailingBlanks(std::string_view line) { return line.substr(0, line.find_last_not_of(' ') + 1); }

// The pieces of one line that may stand on lines of their own: between two of them it may be broken.
std::vector<std::string_view> piecesOf(std::string_view line, int width) {
  std::vector<std::string_view> pieces;
  std::size_t start = 0;
  for (const std::size_t place : lineBreaks(line)) {
    if (isWithinNumber(line, place)) continue;
    const std::string_view piece = line.substr(start, place - start);
    start = place;
    const std::string_view word = withoutTrailingBlanks(piece);
    if (displayWidth(word) <= width || isNumber(word)) {
      pieces.push_back(piece);
      continue;
    }
    std::size_t first = 0;
    for (const std::size_t end : characterBreaks(piece)) {
      pieces.push_back(piece.substr(first, end - first));
      first = end;
    }
  }
  return pieces;
}

void wrapLine(std::string_view line, int width, std::vector<std::string>& lines) {
  if (displayWidth(line) <= width) {
    lines.emplace_back(line);
    return;
  }
  std::string current;
  int taken = 0;
  for (const std::string_view piece : piecesOf(line, width)) {
    if (!current.empty() && taken + displayWidth(withoutTrailingBlanks(piece)) > width) {
      lines.emplace_back(withoutTrailingBlanks(current));
      current.clear();
      taken = 0;
    }
    current += piece;
    taken += displayWidth(piece);
  }
  lines.emplace_back(withoutTrailingBlanks(current));
}

// Calls with every line of the text.
template <class Use>
void forEachLine(std::string_view text, Use use) {
  for (;;) {
    const std::size_t end = text.find('\n');
    use(text.substr(0, end));
    if (end == std::string_view::npos) return;
    text.remove_prefix(end + 1);
  }
}

std::string blanksUpTo(std::string_view line, int width) {
  return std::string(static_cast<std::size_t>(std::max(0, width - displayWidth(line))), ' ');
}

}  // namespace

std::string visible(std::string_view text) {
  if (isPlainAscii(text)) return std::string(text);
  std::string result;
  for (std::size_t place = 0; place < text.size();) {
    const std::size_t start = place;
    const UChar32 character = nextCharacter(text, place);
    const std::string_view bytes = text.substr(start, place - start);
    if (character < 0) {
      result += replacement;
    } else if (character == '\n') {
      result += '\n';
    } else if (character < 0x20 || character == 0x7f) {
      workbench::text::appendCharacter(result, character == 0x7f ? 0x2421 : 0x2400 + character);
    } else if (u_charType(character) == U_CONTROL_CHAR || u_charType(character) == U_LINE_SEPARATOR ||
               u_charType(character) == U_PARAGRAPH_SEPARATOR || u_hasBinaryProperty(character, UCHAR_BIDI_CONTROL)) {
      result += fmt::format("<U+{:04X}>", static_cast<unsigned>(character));
    } else {
      result += bytes;
    }
  }
  return result;
}

int displayWidth(std::string_view line) {
  if (isPlainAscii(line)) return static_cast<int>(line.size());
  int width = 0;
  std::size_t start = 0;
  for (const std::size_t end : characterBreaks(line)) {
    width += clusterWidth(line.substr(start, end - start));
    start = end;
  }
  return width;
}

std::string shortened(std::string_view line, int width) {
  if (displayWidth(line) <= width) return std::string(line);
  int taken = 1;  // the ellipsis
  std::size_t start = 0;
  for (const std::size_t end : characterBreaks(line)) {
    taken += clusterWidth(line.substr(start, end - start));
    if (taken > width) break;
    start = end;
  }
  return std::string(withoutTrailingBlanks(line.substr(0, start))).append(ellipsis);
}

std::string beginning(std::string_view text, std::size_t mostUnits) {
  if (text.size() <= mostUnits) return std::string(text);  // no character has more units than bytes
  std::size_t units = 0;
  std::size_t start = 0;
  for (const std::size_t end : characterBreaks(text)) {
    for (std::size_t place = start; place < end;) units += nextCharacter(text, place) > 0xFFFF ? 2 : 1;
    if (units > mostUnits) break;
    start = end;
  }
  return std::string(text.substr(0, start));
}

std::vector<std::string> wrapped(std::string_view text, int width) {
  std::vector<std::string> lines;
  forEachLine(text, [&](std::string_view line) { wrapLine(line, std::max(1, width), lines); });
  return lines;
}

int widestNumber(std::string_view text) {
  int widest = 0;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find_first_of(" \n", start), text.size());
    const std::string_view word = text.substr(start, end - start);
    if (static_cast<int>(word.size()) > widest && isNumber(word)) widest = std::max(widest, displayWidth(word));
    start = end + 1;
  }
  return widest;
}

int widestLine(std::string_view text) {
  int widest = 0;
  forEachLine(text, [&](std::string_view line) { widest = std::max(widest, displayWidth(line)); });
  return widest;
}

std::string paddedRight(std::string_view line, int width) { return std::string(line) + blanksUpTo(line, width); }

std::string paddedLeft(std::string_view line, int width) { return blanksUpTo(line, width).append(line); }

}  // namespace workbench::output
