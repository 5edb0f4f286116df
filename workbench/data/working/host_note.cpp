#include "workbench/data/working/host_note.h"

#include <utility>

#include "workbench/output/document.h"
#include "workbench/runtime/current_run.h"

namespace workbench::data {

void addHostNote(BpErrorLevel level, std::string sentence) {
  if (currentRun().command == nullptr) return;
  currentRun().command->items.emplace_back(output::hostMessage(level, std::move(sentence)));
}

}  // namespace workbench::data
