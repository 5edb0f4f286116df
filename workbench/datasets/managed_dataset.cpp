#include "workbench/datasets/managed_dataset.h"

#include <fmt/format.h>

#include <utility>

#include "workbench/data/working/dataset_source.h"
#include "workbench/data/working/journaled_source.h"
#include "workbench/data/working/refusal.h"
#include "workbench/runtime/journal.h"

namespace workbench::datasets {

ManagedDataset::ManagedDataset(std::string handle, std::shared_ptr<data::Dataset> dataset)
    : handle_(std::move(handle)), dataset_(std::move(dataset)) {}

void ManagedDataset::close() { remainder_ = std::make_unique<Remainder>(*this); }

void ManagedDataset::Release() {
  if (--references_ == 0) delete this;
}

std::string ManagedDataset::GetHandle() const {
  if (journal().isOn()) journal().line(fmt::format("SvrDMDataset({0}).GetHandle() -> \"{0}\"", handle_));
  return handle_;
}

std::unique_ptr<VRIX_DataSource> ManagedDataset::OpenView(bool forWriting) {
  if (!dataset_) data::refuse("The dataset ^1 is closed.", {handle_});
  const auto kind = forWriting ? data::SourceKind::writableView : data::SourceKind::readOnlyView;
  auto view =
      std::make_unique<data::JournaledSource>(std::make_unique<data::DatasetSource>(dataset_, kind), "VRIX_DataSource");
  if (journal().isOn()) {
    journal().line(fmt::format("{} = SvrDMDataset({}).OpenView({})", view->name(), handle_, forWriting));
  }
  return view;
}

}  // namespace workbench::datasets
