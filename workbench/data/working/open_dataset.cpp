#include "workbench/data/working/open_dataset.h"

#include "workbench/data/working/host_note.h"
#include "workbench/runtime/activity.h"
#include "workbench/text/wording.h"

namespace workbench::data {

Outcome<std::shared_ptr<Dataset>> openDataset(const std::string& path, const OpenOptions& options) {
  const std::string files = options.typesWith ? path + ", " + *options.typesWith : path;
  const Activity::Stage stage(text::sentence("Reading types of ^1", {files}), Activity::Unit::bytes);
  auto file = openDataFile(path, options);
  if (!file) return file.problem();
  for (const std::string& warning : (*file)->warnings()) addHostNote(BpErrorLevel::warning, warning);
  return std::make_shared<Dataset>(*file);
}

}  // namespace workbench::data
