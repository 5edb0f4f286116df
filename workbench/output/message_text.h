// What people see of messages and notes, in one language.
#pragma once

#include <string>
#include <string_view>

#include "workbench/output/document.h"
#include "workbench/output/text_rendering.h"
#include "workbench/text/wording.h"

namespace workbench::output {

// What a message is: "Error 7414 (line 3, column 14)".
std::string messageLabel(const Message& message, const text::Wording& wording);

// A note as a sentence.
std::string noteSentence(const Note& note, const text::Wording& wording, TextStyle style);

}  // namespace workbench::output
