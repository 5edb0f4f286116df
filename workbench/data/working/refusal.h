// What cannot be done, said to the user in one sentence of the run's language.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "host/messages.h"
#include "workbench/runtime/outcome.h"
#include "workbench/text/wording.h"

namespace workbench::data {

// Throws the sentence; its items stand in the places of ^1 to ^9.
[[noreturn]] inline void refuse(std::string_view pattern, std::initializer_list<std::string_view> items = {}) {
  throw ErrorText(text::sentence(pattern, items));
}

// The same as a value.
inline Problem problem(std::string_view pattern, std::initializer_list<std::string_view> items = {}) {
  return {text::sentence(pattern, items), "", ""};
}

}  // namespace workbench::data
