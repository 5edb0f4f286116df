// The host's dataset services that are no methods of the manager: how procedures reach it, and views of its datasets.
#include <fmt/format.h>

#include "host/datasets.h"
#include "workbench/data/working/refusal.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"

using workbench::currentRun;
using workbench::journal;

SvrDMDataset::~SvrDMDataset() = default;
ServerDataManager::~ServerDataManager() = default;
HostAdapter::~HostAdapter() = default;

ServerDataManager& ServerDataManager::GetInstance() {
  if (journal().isOn()) journal().line("ServerDataManager::GetInstance()");
  if (currentRun().datasets == nullptr) workbench::data::refuse("No datasets are managed while no command is running.");
  return *currentRun().datasets;
}

HostAdapter& GetAdapter() {
  if (journal().isOn()) journal().line("GetAdapter()");
  if (currentRun().adapter == nullptr) workbench::data::refuse("The host cannot be asked while no command is running.");
  return *currentRun().adapter;
}

struct SvrDMInputDataSource::State {
  SvrDMItemPtr dataset;
  std::unique_ptr<VRIX_DataSource> view;  // goes before the reference

  std::string handle() const {
    const workbench::Journal::Pause pause(journal());
    return dataset->GetHandle();
  }
};

SvrDMInputDataSource::SvrDMInputDataSource(const SvrDMItemPtr& dataset, bool forWriting)
    : state_(std::make_unique<State>()) {
  state_->dataset = dataset;
  const std::string handle = state_->handle();
  {
    const workbench::Journal::Pause pause(journal());
    state_->view = dataset->OpenView(forWriting);
  }
  if (!journal().isOn()) return;
  journal().line(fmt::format("{} = SvrDMInputDataSource(SvrDMDataset({}), {})",
                             journal().created(this, "SvrDMInputDataSource"), handle, forWriting));
}

SvrDMInputDataSource::~SvrDMInputDataSource() { journal().destroyed(this); }

VRIX_DataSource& SvrDMInputDataSource::operator*() const {
  if (journal().isOn()) {
    journal().line(fmt::format("*{} -> {}", journal().nameOf(this, "SvrDMInputDataSource"),
                               journal().nameOf(state_->view.get(), "VRIX_DataSource")));
  }
  return *state_->view;
}

std::string SvrDMInputDataSource::GetHandle() const {
  std::string handle = state_->handle();
  if (journal().isOn()) {
    journal().line(fmt::format("{}.GetHandle() -> {}", journal().nameOf(this, "SvrDMInputDataSource"),
                               workbench::Journal::quoted(handle)));
  }
  return handle;
}
