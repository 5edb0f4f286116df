#include "tests/engine/engine_run.h"

#include <fmt/format.h>

#include <stdexcept>

#include "engine/case_id.h"
#include "engine/case_walk.h"
#include "engine/variable_matching.h"
#include "workbench/data/working/dataset_source.h"
#include "workbench/runtime/current_run.h"

namespace workbench::tests {

EngineRun::EngineRun(const DatasetBuilder& active, const DatasetBuilder& compared) : outputs_(&manager_) {
  if (!manager_.open(compared.build(), "b") || !manager_.open(active.build(), "a")) {
    throw std::runtime_error("the datasets of a test could not be opened");
  }
  shownSource_ = manager_.makeActiveSource();
  CurrentRun& current = currentRun();
  current.command = &command_;
  current.datasets = &manager_;
  current.adapter = &manager_;
  current.activeSource = shownSource_.get();
  current.outputs = &outputs_;
  procedure_.emplace("Engine", 1);
  activeSource_.emplace();
  compareSource_ = std::make_unique<data::DatasetSource>(manager_.find("b"), data::SourceKind::readOnlyView);
}

EngineRun::~EngineRun() {
  comparer_.reset();
  compareSource_.reset();
  activeSource_.reset();
  procedure_.reset();
  currentRun() = CurrentRun();
}

std::vector<std::int32_t> EngineRun::indexesOf(const std::vector<std::string>& names) const {
  std::vector<std::int32_t> indexes;
  for (const std::string& name : names) indexes.push_back(activeSource_->FindVarIndex(name, FindOptions::standard));
  return indexes;
}

EngineRun& EngineRun::compare(const std::vector<std::string>& names) {
  options.setCompareVariables(indexesOf(names));
  return *this;
}

EngineRun& EngineRun::pairBy(const std::vector<std::string>& names) {
  options.setCaseIdVariables(indexesOf(names));
  return *this;
}

compdatas::DatasetComparer& EngineRun::comparer() {
  if (!comparer_) {
    comparer_.emplace(options, *procedure_, *activeSource_, withoutComparison ? nullptr : compareSource_.get(),
                      flagName, matched_, mismatched_);
  }
  return *comparer_;
}

bool EngineRun::walk() {
  if (!compdatas::validateCaseIds(comparer())) return false;
  compdatas::matchVariables(comparer());
  BpPivotTable table = procedure_->PivotTable(BpString("Cases", true), BpString("Cases", true), true);
  return compdatas::walkCases(comparer(), table);
}

std::string EngineRun::messages() const {
  std::string all;
  for (const output::Item& item : command_.items) {
    const auto* message = std::get_if<output::Message>(&item);
    if (message == nullptr) continue;
    const auto* text = std::get_if<output::StringText>(&message->text.held);
    all += fmt::format("{}/{} {}\n", message->show, message->level, text == nullptr ? "a composite" : text->key);
  }
  return all;
}

}  // namespace workbench::tests
