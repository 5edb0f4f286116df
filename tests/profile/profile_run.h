// Runs PROFILE DIFFERENCES over small datasets: the active one is open as "a", the comparison one as "b".
#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "tests/procedure/procedure_run.h"

namespace workbench::tests {

struct ProfileRun : ProcedureRun {
  ProfileRun(const std::shared_ptr<data::Dataset>& active, const std::shared_ptr<data::Dataset>& compared) {
    commandName = "PROFILE DIFFERENCES";
    if (!manager().open(compared, "b") || !manager().open(active, "a")) {
      throw std::runtime_error("the datasets of a test could not be opened");
    }
  }
  ProfileRun(const DatasetBuilder& active, const DatasetBuilder& compared) : ProcedureRun(active, compared) {
    commandName = "PROFILE DIFFERENCES";
  }
};

namespace keys {
inline const std::string pairedCases = "PD_PairedCases";
inline const std::string agreement = "PD_AgreementTable";
inline const std::string differences = "PD_DifferencesTable";
inline const std::string changes = "PD_ChangesTable";
}  // namespace keys

}  // namespace workbench::tests
