// The results as one JSON object: what scripts read. Nothing in it is rounded or translated away.
#pragma once

#include <iosfwd>
#include <nlohmann/json_fwd.hpp>

#include "workbench/output/document.h"
#include "workbench/text/wording.h"

namespace workbench::output {

// Writes all that the commands issued; tables that were destroyed are left out.
void writeJson(std::ostream& out, const Document& document, const text::Wording& wording);

// A text as it stands there.
nlohmann::ordered_json jsonText(const Text& text, const text::Wording& wording);

// A number so that reading it back gives the same double; null for the system-missing value and for what JSON cannot
// hold.
nlohmann::ordered_json jsonNumber(double value);

}  // namespace workbench::output
