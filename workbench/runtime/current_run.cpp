#include "workbench/runtime/current_run.h"

namespace workbench {

CurrentRun& currentRun() {
  static CurrentRun theRun;
  return theRun;
}

}  // namespace workbench
