// The steps of a run as its journal shows them, in the words of a report.
#pragma once

#include <string>
#include <vector>

namespace workbench::tests::model {

std::vector<std::string> observedSteps(const std::vector<std::string>& journal);

}  // namespace workbench::tests::model
