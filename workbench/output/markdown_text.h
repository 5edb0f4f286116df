// Texts as they stand in a Markdown page (GitHub's), so that what people see is the text and nothing of it acts: no
// emphasis, code, HTML or picture, no link made of an address, no mention of a person or an issue, no table or list.
#pragma once

#include <string>
#include <string_view>

namespace workbench::output {

// The text as a part of a paragraph, a heading or a table's cell. Its line breaks are <br>; blanks that a page would
// draw as one, or not at all, stay.
std::string markdownText(std::string_view text);

// The same at the beginning of a paragraph, where a text could also begin a list, a quotation or a heading.
std::string markdownParagraph(std::string_view text);

}  // namespace workbench::output
