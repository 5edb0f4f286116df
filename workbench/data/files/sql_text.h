// Texts and names as SQL has them.
#pragma once

#include <string>
#include <string_view>

namespace workbench::data {

// A text as a literal of SQL, and a name, in their quotes.
std::string sqlText(std::string_view text);
std::string sqlName(std::string_view name);

}  // namespace workbench::data
