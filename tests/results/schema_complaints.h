// What a schema validator complains of, brought down to what was meant: where a schema offers alternatives, the
// validator complains of each of them, so that one wrong member of a table brings complaints that the table is no
// message.
#pragma once

#include <string>
#include <valijson/validation_results.hpp>
#include <vector>

namespace workbench::tests {

// Each as "/place: complaint"; only those that lie deepest, of the alternatives whose kind the document has.
std::vector<std::string> faultsOfMeantAlternatives(const valijson::ValidationResults& results);

}  // namespace workbench::tests
