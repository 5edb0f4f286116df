#include "workbench/datasets/dataset_manager.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "workbench/data/working/handle.h"
#include "workbench/data/working/host_note.h"
#include "workbench/data/working/refusal.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/folding.h"

namespace workbench::datasets {
namespace {

// Says that added variables go with a dataset that is closed.
void warnOfLoss(const data::Dataset& dataset, std::string_view name) {
  if (!dataset.hasUnsavedVariables()) return;
  data::addHostNote(BpErrorLevel::warning,
                    text::sentence("^1 was closed; the variables that were added to it had not been saved.", {name}));
}

}  // namespace

DatasetManager::~DatasetManager() {
  while (!entries_.empty()) remove(entries_.begin());
}

Outcome<Done> DatasetManager::open(std::shared_ptr<data::Dataset> dataset, const std::optional<std::string>& handle) {
  if (handle && !data::isWellFormedHandle(*handle)) {
    return data::problem("^1 cannot name a dataset; a handle is a letter, then letters, digits and \"_\".", {*handle});
  }
  if (handle) put(*handle, dataset);
  makeActive(std::move(dataset));
  return Done{};
}

Outcome<Done> DatasetManager::activate(std::string_view handle) {
  const auto entry = entryOf(handle);
  if (entry == entries_.end()) return data::problem("No open dataset has the name ^1.", {handle});
  makeActive(entry->second->dataset());
  return Done{};
}

Outcome<Done> DatasetManager::close(std::string_view handle) {
  const auto entry = entryOf(handle);
  if (entry == entries_.end()) return data::problem("No open dataset has the name ^1.", {handle});
  warnOfLoss(*entry->second->dataset(), entry->second->handle());
  if (entry->second->dataset() == active_) active_.reset();
  remove(entry);
  return Done{};
}

std::optional<std::string> DatasetManager::activeHandle() const {
  const auto entry = activeEntry();
  if (entry == entries_.end()) return std::nullopt;
  return entry->second->handle();
}

std::shared_ptr<data::Dataset> DatasetManager::find(std::string_view handle) const {
  const auto entry = entryOf(handle);
  return entry == entries_.end() ? nullptr : entry->second->dataset();
}

std::vector<std::string> DatasetManager::handles() const {
  std::vector<std::string> handles;
  for (const auto& [folded, entry] : entries_) handles.push_back(entry->handle());
  return handles;
}

std::unique_ptr<data::ActiveSource> DatasetManager::makeActiveSource() const {
  return active_ ? data::makeActiveSource(active_) : nullptr;
}

SvrDMItemPtr DatasetManager::GetDataSet(std::string_view name) {
  const auto entry = entryOf(name);
  SvrDMItemPtr found = entry == entries_.end() ? SvrDMItemPtr() : SvrDMItemPtr(&*entry->second);
  if (journal().isOn()) {
    journal().line(fmt::format("ServerDataManager.GetDataSet({}) -> {}", Journal::quoted(name),
                               found.IsValid() ? fmt::format("SvrDMDataset({})", entry->second->handle()) : "empty"));
  }
  return found;
}

SvrDMDataset* DatasetManager::GetActiveDataset() {
  const auto entry = activeEntry();
  SvrDMDataset* const found = entry == entries_.end() ? nullptr : &*entry->second;
  if (journal().isOn()) {
    journal().line(fmt::format("HostAdapter.GetActiveDataset() -> {}",
                               found ? fmt::format("SvrDMDataset({})", entry->second->handle()) : "null"));
  }
  return found;
}

void DatasetManager::openOutput(const std::string& handle, std::shared_ptr<data::Dataset> dataset) {
  put(handle, std::move(dataset));
}

DatasetManager::Entries::const_iterator DatasetManager::entryOf(std::string_view handle) const {
  return entries_.find(text::foldedName(handle));
}

DatasetManager::Entries::const_iterator DatasetManager::activeEntry() const {
  return std::find_if(entries_.begin(), entries_.end(),
                      [this](const auto& entry) { return active_ && entry.second->dataset() == active_; });
}

// Opens the dataset under the handle, in the place of another one where there is one.
void DatasetManager::put(const std::string& handle, std::shared_ptr<data::Dataset> dataset) {
  if (const auto replaced = entryOf(handle); replaced != entries_.end()) {
    data::addHostNote(BpErrorLevel::note,
                      text::sentence("The open dataset ^1 was replaced.", {replaced->second->handle()}));
    warnOfLoss(*replaced->second->dataset(), replaced->second->handle());
    if (replaced->second->dataset() == active_) active_.reset();
    remove(replaced);
  }
  entries_.emplace(text::foldedName(handle), Entry(new ManagedDataset(handle, std::move(dataset))));
}

void DatasetManager::remove(Entries::const_iterator entry) {
  entry->second->close();
  entries_.erase(entry);
}

void DatasetManager::makeActive(std::shared_ptr<data::Dataset> dataset) {
  const bool closesUnnamed = active_ && active_ != dataset && activeEntry() == entries_.end();
  if (closesUnnamed)
    warnOfLoss(*active_, active_->path().empty() ? text::sentence("The active dataset") : active_->path());
  active_ = std::move(dataset);
}

}  // namespace workbench::datasets
