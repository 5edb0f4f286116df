// The style sheet and the script of the HTML report, as they stand in html/, built into the program.
#pragma once

#include <string_view>

namespace workbench::output {

struct HtmlPart {
  std::string_view text;
  std::string_view hash;  // "sha256-...", as a content security policy names the text
};

extern const HtmlPart htmlStyle;
extern const HtmlPart htmlScript;

}  // namespace workbench::output
