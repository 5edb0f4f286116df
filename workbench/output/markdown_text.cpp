#include "workbench/output/markdown_text.h"

#include <algorithm>
#include <cctype>

#include "workbench/output/display_text.h"

namespace workbench::output {
namespace {

// Shows nothing, and ends what could become a link, a mention or a sign with a name.
constexpr std::string_view seam = "<!-- -->";

bool isWordCharacter(char character) { return std::isalnum(static_cast<unsigned char>(character)) != 0; }

char characterAt(std::string_view text, std::size_t place) { return place < text.size() ? text[place] : '\0'; }

// Inside a word an underscore means nothing, and names have many.
bool isInsideWord(std::string_view text, std::size_t place) {
  return place > 0 && isWordCharacter(text[place - 1]) && isWordCharacter(characterAt(text, place + 1));
}

// ":smile:" becomes a picture; the times in "15:59:55" do not.
bool startsPictureName(std::string_view text, std::size_t place) {
  std::size_t end = place + 1;
  while (isWordCharacter(characterAt(text, end)) || characterAt(text, end) == '_' || characterAt(text, end) == '+' ||
         characterAt(text, end) == '-') {
    ++end;
  }
  const std::string_view name = text.substr(place + 1, end - place - 1);
  if (name.empty() || characterAt(text, end) != ':') return false;
  const bool hasOnlyDigits = std::all_of(name.begin(), name.end(), [](char one) { return one >= '0' && one <= '9'; });
  return !hasOnlyDigits || name == "100" || name == "1234";
}

bool endsWithWww(std::string_view before) {
  constexpr std::size_t length = 3;
  return before.size() >= length &&
         std::all_of(before.end() - length, before.end(), [](char one) { return one == 'w' || one == 'W'; });
}

// Of two or more dollar signs GitHub makes a formula.
bool hasFormula(std::string_view text) { return std::count(text.begin(), text.end(), '$') > 1; }

// What stands in the page for the character at the place.
std::string escaped(std::string_view text, std::size_t place, bool dollarsMakeFormulas) {
  const char character = text[place];
  const char next = characterAt(text, place + 1);
  const auto withSeam = [](std::string_view shown) { return std::string(shown).append(seam); };
  switch (character) {
    case '\n':
      return "<br>";
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\\':
    case '`':
    case '*':
    case '[':
    case ']':
    case '|':
    case '~':
      return {'\\', character};
    case '_':
      return isInsideWord(text, place) ? "_" : "\\_";
    case '#':
      return isWordCharacter(next) ? withSeam("\\#") : "\\#";
    case '@':
      return isWordCharacter(next) ? withSeam("@") : "@";
    case ':':
      return text.substr(place).starts_with("://") || startsPictureName(text, place) ? withSeam(":") : ":";
    case '.':
      return endsWithWww(text.substr(0, place)) ? withSeam(".") : ".";
    case '$':
      return dollarsMakeFormulas ? "<span>$</span>" : "$";
    case ' ': {
      const bool isAtEdge = place == 0 || place + 1 == text.size() || text[place - 1] == '\n' || next == '\n';
      return isAtEdge || text[place - 1] == ' ' ? "&nbsp;" : " ";
    }
    default:
      return {character};
  }
}

// Where a mark ends that would begin a list: "-", "+", "1.", "1)". "=" would make a heading of the line above.
std::size_t listMark(std::string_view text) {
  const char first = characterAt(text, 0);
  if (first == '-' || first == '+' || first == '=') return 0;
  std::size_t end = 0;
  while (end < text.size() && text[end] >= '0' && text[end] <= '9') ++end;
  const char mark = characterAt(text, end);
  return end > 0 && (mark == '.' || mark == ')') ? end : std::string_view::npos;
}

}  // namespace

std::string markdownText(std::string_view text) {
  const std::string shown = visible(text);
  const bool dollarsMakeFormulas = hasFormula(shown);
  std::string page;
  for (std::size_t place = 0; place < shown.size(); ++place) page += escaped(shown, place, dollarsMakeFormulas);
  return page;
}

std::string markdownParagraph(std::string_view text) {
  const std::size_t mark = listMark(text);
  std::string page = markdownText(text);
  if (mark != std::string_view::npos) page.insert(mark, 1, '\\');  // digits before it stand as they are
  return page;
}

}  // namespace workbench::output
