// What people see of a phrase about numbers, in one language.
#pragma once

#include <string>

#include "workbench/output/document.h"
#include "workbench/text/wording.h"

namespace workbench::output {

std::string shownPhrase(const Phrase& phrase, const text::Wording& wording);

// The whole sentence, without a full stop: "3 of 50 compared cases differ, in 1 of 4 variables; 1 case only in ...".
std::string shownAnswer(const Answer& answer, const text::Wording& wording);

}  // namespace workbench::output
