// UserOutputCaseFile: an output opened over what a user named.
#include <fmt/format.h>

#include <optional>
#include <utility>

#include "host/data.h"
#include "host/datasets.h"
#include "workbench/data/output_set.h"
#include "workbench/data/working/journal_call.h"
#include "workbench/data/working/journaled_source.h"
#include "workbench/data/working/output_source.h"
#include "workbench/data/working/refusal.h"
#include "workbench/data/working/user_case_file_spec_state.h"
#include "workbench/runtime/current_run.h"
#include "workbench/text/folding.h"

using workbench::currentRun;
using workbench::journal;
using workbench::Outcome;
using workbench::data::CaseFileSpec;
using workbench::data::JournaledSource;
using workbench::data::OutputSet;
using workbench::data::OutputSource;

namespace {

bool isActiveDataset(const std::string& handle) {
  const workbench::Journal::Pause pause(journal());
  SvrDMDataset* const active = currentRun().adapter == nullptr ? nullptr : currentRun().adapter->GetActiveDataset();
  return active != nullptr && workbench::text::sameName(active->GetHandle(), handle);
}

std::shared_ptr<OutputSet::Output> announce(const CaseFileSpec& spec) {
  if (currentRun().outputs == nullptr) {
    workbench::data::refuse("^1 cannot be written while no command is running.", {spec.name});
  }
  OutputSet& outputs = *currentRun().outputs;
  if (spec.kind == CaseFileSpec::Kind::dataset && isActiveDataset(spec.name)) {
    workbench::data::refuse("^1 is the active dataset and cannot be replaced; choose another name.", {spec.name});
  }
  auto output = spec.kind == CaseFileSpec::Kind::file ? outputs.addFile(spec.name) : outputs.addDataset(spec.name);
  if (!output) throw ErrorText(output.problem().text());
  return *output;
}

std::unique_ptr<VRIX_DataSource> open(const std::optional<CaseFileSpec>& spec) {
  if (!spec || !spec->isForOutput) {
    workbench::data::refuse("An output can only be opened over a valid specification of an output.");
  }
  return std::make_unique<OutputSource>(*spec, announce(*spec));
}

}  // namespace

struct UserOutputCaseFile::State {
  explicit State(const std::optional<CaseFileSpec>& spec) : source(open(spec), "VRIX_DataSource") {}
  JournaledSource source;
};

UserOutputCaseFile::UserOutputCaseFile(const UserCaseFileSpec& spec) {
  const auto specName = [&spec] { return journal().nameOf(&spec, "UserCaseFileSpec"); };
  if (!journal().isOn()) {
    state_ = std::make_unique<State>(spec.state_->spec);
    return;
  }
  try {
    state_ = std::make_unique<State>(spec.state_->spec);
  } catch (const ErrorText& error) {
    journal().line(fmt::format("UserOutputCaseFile({}) throws ErrorText({})", specName(),
                               workbench::Journal::quoted(error.GetText())));
    throw;
  }
  journal().line(fmt::format("{} = UserOutputCaseFile({})", journal().created(this, "UserOutputCaseFile"), specName()));
}

UserOutputCaseFile::~UserOutputCaseFile() { journal().destroyed(this); }

VRIX_DataSource& UserOutputCaseFile::GetDataSource() const {
  if (journal().isOn()) {
    journal().line(
        fmt::format("{}.GetDataSource() -> {}", journal().nameOf(this, "UserOutputCaseFile"), state_->source.name()));
  }
  return state_->source;
}
