// A run in which the sources of both datasets are in the test's hand: what their iterators do, and whether there are
// any.
//
// The datasets are those of a ProcedureRun; without a setting everything is as the host's own sources have it.
#pragma once

#include <functional>
#include <memory>

#include "tests/procedure/procedure_run.h"
#include "tests/support/wrapped_source.h"
#include "workbench/data/working/dataset_source.h"
#include "workbench/data/working/journaled_source.h"

namespace workbench::tests {

class FakedRun : public ProcedureRun {
 public:
  FakedRun(const DatasetBuilder& activeCases, const DatasetBuilder& comparedCases)
      : ProcedureRun(activeCases, comparedCases),
        compared_(manager().find("b")),
        activeSource(manager().makeActiveSource()),
        datasets_(manager(), [this] { return comparisonView(); }) {
    fakeActive = &activeSource;
    fakeManager = &datasets_;
  }

 private:
  std::shared_ptr<data::Dataset> compared_;

 public:
  WrappedSource activeSource;
  // Called for the view of the comparison dataset when it is opened.
  std::function<void(WrappedSource&)> onComparisonView;

 private:
  std::unique_ptr<VRIX_DataSource> comparisonView() {
    auto view = std::make_unique<WrappedSource>(
        std::make_unique<data::DatasetSource>(compared_, data::SourceKind::readOnlyView));
    if (onComparisonView) onComparisonView(*view);
    return std::make_unique<data::JournaledSource>(std::move(view), "VRIX_DataSource");
  }

  DatasetsWithOne datasets_;
};

}  // namespace workbench::tests
