// Text and elements of an HTML page.
//
// All texts are UTF-8; what is not is shown as U+FFFD, control characters as their pictures, and those that change the
// direction of writing by number, so that nothing that came from data can act on the page.
#pragma once

#include <initializer_list>
#include <ostream>
#include <string>
#include <string_view>

namespace workbench::output {

// The text as it may stand between tags and in a quoted attribute.
std::string htmlEscaped(std::string_view text);

struct HtmlAttribute {
  std::string_view name;
  std::string value;  // escaped when it is written; an empty one leaves the attribute out
};

// An element: opened when it is made, closed in its destructor. What holds further elements ends its line.
class HtmlElement {
 public:
  HtmlElement(std::ostream& out, std::string_view name, std::initializer_list<HtmlAttribute> attributes = {});
  HtmlElement(const HtmlElement&) = delete;
  HtmlElement& operator=(const HtmlElement&) = delete;
  ~HtmlElement();

 private:
  std::ostream& out_;
  std::string_view name_;
};

// An element that holds nothing but a text.
void writeHtml(std::ostream& out, std::string_view name, std::initializer_list<HtmlAttribute> attributes,
               std::string_view text);
// An element of a drawing that holds nothing.
void writeShape(std::ostream& out, std::string_view name, std::initializer_list<HtmlAttribute> attributes);

}  // namespace workbench::output
