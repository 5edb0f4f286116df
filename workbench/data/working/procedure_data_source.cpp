// ProcedureDataSource: the active dataset as a procedure sees it. Every call goes on to the run's active source.
#include <fmt/format.h>

#include "host/data.h"
#include "workbench/data/working/active_source.h"
#include "workbench/data/working/journal_call.h"
#include "workbench/data/working/journaled_source.h"
#include "workbench/data/working/refusal.h"
#include "workbench/runtime/current_run.h"

using workbench::currentRun;
using workbench::journal;
using workbench::data::ActiveSource;
using workbench::data::inJournal;
using workbench::data::journaledCall;
using workbench::data::JournaledSource;

namespace {

ActiveSource& activeSource() {
  if (currentRun().activeSource == nullptr) workbench::data::refuse("No dataset is active; open one first.");
  return *currentRun().activeSource;
}

}  // namespace

struct ProcedureDataSource::State {
  State(ActiveSource& activeSource, const void* self)
      : active(activeSource), source(activeSource, "ProcedureDataSource", self) {}

  ActiveSource& active;
  JournaledSource source;
};

ProcedureDataSource::ProcedureDataSource() : state_(std::make_unique<State>(activeSource(), this)) {
  state_->active.beginProcedure();
  if (journal().isOn()) journal().line(journal().created(this, "ProcedureDataSource") + " = ProcedureDataSource()");
}

ProcedureDataSource::~ProcedureDataSource() = default;

void ProcedureDataSource::SetUseFilter(bool use) {
  journaledCall([&] { state_->active.setUseFilter(use); },
                [&] { return fmt::format("{}.SetUseFilter({})", state_->source.name(), inJournal(use)); });
}

void ProcedureDataSource::SetSplitEndCheck(bool check) {
  journaledCall([&] { state_->active.setSplitEndCheck(check); },
                [&] { return fmt::format("{}.SetSplitEndCheck({})", state_->source.name(), inJournal(check)); });
}

void ProcedureDataSource::SetMaxObsAdded(std::int32_t variables) {
  journaledCall([&] { state_->active.setMaxObsAdded(variables); },
                [&] { return fmt::format("{}.SetMaxObsAdded({})", state_->source.name(), variables); });
}

std::string ProcedureDataSource::GoodVarName(std::string_view name) const {
  return journaledCall([&] { return state_->active.goodVarName(name); },
                       [&] { return fmt::format("{}.GoodVarName({})", state_->source.name(), inJournal(name)); });
}

std::int32_t ProcedureDataSource::GetNVars() const { return state_->source.GetNVars(); }

VRIX_Variable& ProcedureDataSource::GetVariable(std::int32_t index) const { return state_->source.GetVariable(index); }

std::int32_t ProcedureDataSource::FindVarIndex(std::string_view name, FindOptions options) const {
  return state_->source.FindVarIndex(name, options);
}

std::int32_t ProcedureDataSource::GetFilterVarIndex() const { return state_->source.GetFilterVarIndex(); }

std::int32_t ProcedureDataSource::GetWeightVarIndex() const { return state_->source.GetWeightVarIndex(); }

std::int32_t ProcedureDataSource::GetNSplitVars() const { return state_->source.GetNSplitVars(); }

std::int32_t ProcedureDataSource::GetSplitVarIndex(std::int32_t position) const {
  return state_->source.GetSplitVarIndex(position);
}

ExtNameStr ProcedureDataSource::GetFileSpecExt() const { return state_->source.GetFileSpecExt(); }

const DatasourceAttributes& ProcedureDataSource::GetAttributes() const { return state_->source.GetAttributes(); }

void ProcedureDataSource::SetAttributes(const DatasourceAttributes& attributes) {
  state_->source.SetAttributes(attributes);
}

VRIX_Variable& ProcedureDataSource::MakeVariable(std::int32_t type, std::int32_t* index) {
  return state_->source.MakeVariable(type, index);
}

VRIX_Variable& ProcedureDataSource::MakeVariable(const VRIX_Variable& like, std::int32_t* index) {
  return state_->source.MakeVariable(like, index);
}

std::uint32_t ProcedureDataSource::ObsIndex(std::int32_t variable) const { return state_->source.ObsIndex(variable); }

std::unique_ptr<VRIX_InputCaseIterator> ProcedureDataSource::CreateCaseIterator(IteratorOptions options) {
  return state_->source.CreateCaseIterator(options);
}

void ProcedureDataSource::CommitDictionary() { state_->source.CommitDictionary(); }

std::size_t ProcedureDataSource::GetCaseSize() const { return state_->source.GetCaseSize(); }

void ProcedureDataSource::WriteCase(const OBS* slots) { state_->source.WriteCase(slots); }

void ProcedureDataSource::Close() { state_->source.Close(); }
