// The pattern language of composite texts.
//
// "^n" is the n-th item. "[first:rest:]n" is the n-th item when that is a list: its first element shown by `first`, in
// which "%1" stands for it, every further one by `rest`, in which "^1" does. Everything else, and whatever cannot be
// filled (a number without an item, a list where a text is asked for or a text where a list is, an unclosed bracket),
// stands for itself.
#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace workbench::output {

// An item of a pattern: a text, or a list of texts.
using PatternItem = std::variant<std::string, std::vector<std::string>>;

std::string filledPattern(std::string_view pattern, const std::vector<PatternItem>& items);

}  // namespace workbench::output
