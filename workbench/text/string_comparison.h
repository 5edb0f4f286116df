// What the four string comparisons of host/runtime.h share with the rest of the workbench.
//
// A collation is the locale of Settings::collation, or nothing: then texts are ordered by their bytes. With a locale,
// texts that it holds to be equal are ordered by their bytes, so that different texts never compare as equal.
#pragma once

#include <string>
#include <string_view>

#include "workbench/runtime/outcome.h"

namespace workbench::text {

// The text without the blanks at its end.
std::string_view withoutTrailingBlanks(std::string_view text);

// A key whose order byte by byte is the order that VRIXMBstrcoll_A gives to the texts. May be called on any thread as
// long as the settings do not change. Throws ErrorText when the collation of the settings is none.
std::string collationKey(std::string_view text);

// Whether a user may set this collation: a locale whose language has an order ("de", "sv_SE", "de-u-co-phonebk"), or
// nothing.
Outcome<Done> checkCollation(std::string_view locale);

}  // namespace workbench::text
