#include "workbench/output/html_text.h"

#include <algorithm>
#include <array>

#include "workbench/output/display_text.h"

namespace workbench::output {
namespace {

// Elements within a line; behind the end of any other a new line starts.
constexpr auto withinLines = std::to_array<std::string_view>(
    {"a", "b", "bdi", "button", "code", "small", "span", "strong", "sup", "td", "th", "time"});

void writeStartTag(std::ostream& out, std::string_view name, std::initializer_list<HtmlAttribute> attributes) {
  out << '<' << name;
  for (const HtmlAttribute& attribute : attributes) {
    if (!attribute.value.empty()) out << ' ' << attribute.name << "=\"" << htmlEscaped(attribute.value) << '"';
  }
  out << '>';
}

}  // namespace

std::string htmlEscaped(std::string_view text) {
  std::string escaped;
  for (const char character : visible(text)) {
    switch (character) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '\'':
        escaped += "&#39;";
        break;
      default:
        escaped += character;
    }
  }
  return escaped;
}

HtmlElement::HtmlElement(std::ostream& out, std::string_view name, std::initializer_list<HtmlAttribute> attributes)
    : out_(out), name_(name) {
  writeStartTag(out, name, attributes);
}

HtmlElement::~HtmlElement() {
  out_ << "</" << name_ << '>';
  if (std::find(withinLines.begin(), withinLines.end(), name_) == withinLines.end()) out_ << '\n';
}

void writeHtml(std::ostream& out, std::string_view name, std::initializer_list<HtmlAttribute> attributes,
               std::string_view text) {
  const HtmlElement element(out, name, attributes);
  out << htmlEscaped(text);
}

void writeShape(std::ostream& out, std::string_view name, std::initializer_list<HtmlAttribute> attributes) {
  writeStartTag(out, name, attributes);
  out << "</" << name << '>';
}

}  // namespace workbench::output
