// Session: what lives as long as the program works: the open datasets, the loaded plug-ins, the results so far.
#pragma once

#include <memory>

#include "workbench/app/plugin_loader.h"
#include "workbench/datasets/dataset_manager.h"
#include "workbench/output/document.h"
#include "workbench/text/wording.h"

namespace workbench::app {

struct Session {
  output::Document document;
  datasets::DatasetManager datasets;
  Plugins plugins;
  std::unique_ptr<text::Wording> wording;  // never null while a job runs
};

}  // namespace workbench::app
