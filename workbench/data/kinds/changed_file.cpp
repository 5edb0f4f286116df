#include "workbench/data/kinds/changed_file.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// Slots that lie side by side in a case of the file, and where they lie in one without the dropped variables.
struct SlotRun {
  std::uint32_t from;
  std::uint32_t to;
  std::uint32_t slots;
};

std::vector<SlotRun> keptSlots(const Dictionary& whole, const std::vector<std::size_t>& columns) {
  const CaseLayout layout(whole);
  std::vector<SlotRun> runs;
  std::uint32_t to = 0;
  for (const std::size_t column : columns) {
    const std::uint32_t from = layout.slotOfVariable[column];
    const std::uint32_t slots = whole.variables()[column].slots();
    if (!runs.empty() && runs.back().from + runs.back().slots == from) {
      runs.back().slots += slots;
    } else {
      runs.push_back({from, to, slots});
    }
    to += slots;
  }
  return runs;
}

// Cases without the slots of dropped variables.
class KeptSlotsReader final : public CaseReader {
 public:
  KeptSlotsReader(std::unique_ptr<CaseReader> reader, std::size_t caseSlots, std::vector<SlotRun> runs)
      : reader_(std::move(reader)), whole_(caseSlots), runs_(std::move(runs)) {}

  std::optional<std::int64_t> caseCount() const override { return reader_->caseCount(); }

  void fill(CaseBlock& block) override {
    std::size_t filled = 0;
    for (; filled < block.capacity(); ++filled) {
      const OBS* const oneCase = next();
      if (oneCase == nullptr) break;
      for (const SlotRun& run : runs_) std::copy_n(oneCase + run.from, run.slots, block.at(filled) + run.to);
    }
    block.setCases(filled);
  }

 private:
  // Null when there is none any more.
  const OBS* next() {
    if (next_ == whole_.cases()) {
      reader_->fill(whole_);
      next_ = 0;
    }
    return next_ == whole_.cases() ? nullptr : whole_.at(next_++);
  }

  std::unique_ptr<CaseReader> reader_;
  CaseBlock whole_;
  std::size_t next_ = 0;
  std::vector<SlotRun> runs_;
};

class ChangedFile final : public DataFile {
 public:
  ChangedFile(std::shared_ptr<const DataFile> file, KeptColumns kept)
      : file_(std::move(file)), columns_(std::move(kept.columns)), warnings_(file_->warnings()) {
    for (std::size_t index = 0; index < columns_.size(); ++index) {
      Variable variable = whole().variables()[columns_[index]];
      variable.name = std::move(kept.names[index]);
      dictionary_.add(std::move(variable));
    }
    dictionary_.attributes = whole().attributes;
    takeRoles();
  }

  const Dictionary& dictionary() const override { return dictionary_; }
  const std::string& path() const override { return file_->path(); }
  std::string dictionaryFile() const override { return file_->dictionaryFile(); }
  std::vector<std::string> furtherFiles() const override { return file_->furtherFiles(); }
  std::optional<std::int64_t> caseCount() const override { return file_->caseCount(); }
  bool isKnownIncreasing(std::int32_t variable) const override { return file_->isKnownIncreasing(ofFile(variable)); }
  std::shared_ptr<const DataFile> broughtIntoOrder(const std::vector<std::int32_t>& variables) const override {
    std::vector<std::int32_t> ofWhole;
    for (const std::int32_t variable : variables) ofWhole.push_back(ofFile(variable));
    std::shared_ptr<const DataFile> ordered = file_->broughtIntoOrder(ofWhole);
    if (!ordered) return nullptr;
    auto changed = std::make_shared<ChangedFile>(*this);
    changed->file_ = std::move(ordered);
    return changed;
  }
  const std::vector<std::string>& warnings() const override { return warnings_; }

  std::unique_ptr<CaseReader> openReader(const VariableSubset& wanted) const override {
    if (columns_.size() == whole().variables().size()) return file_->openReader(wanted);
    std::vector<std::int32_t> ofWhole;
    for (std::int32_t variable = 0; variable < dictionary_.size(); ++variable) {
      if (wanted.has(variable)) ofWhole.push_back(ofFile(variable));
    }
    return std::make_unique<KeptSlotsReader>(file_->openReader(VariableSubset(std::move(ofWhole))),
                                             CaseLayout(whole()).caseSlots, keptSlots(whole(), columns_));
  }

 private:
  const Dictionary& whole() const { return file_->dictionary(); }
  std::int32_t ofFile(std::int32_t variable) const {
    return static_cast<std::int32_t>(columns_[static_cast<std::size_t>(variable)]);
  }

  // The variable's index among those that are kept.
  std::optional<std::int32_t> kept(std::int32_t ofWhole) const {
    const auto found = std::find(columns_.begin(), columns_.end(), static_cast<std::size_t>(ofWhole));
    if (found == columns_.end()) return std::nullopt;
    return static_cast<std::int32_t>(found - columns_.begin());
  }

  void takeRoles() {
    if (whole().filter >= 0)
      dictionary_.filter = keptInRole(whole().filter, "^1: The variable \"^2\" was dropped, which is the filter.");
    if (whole().weight >= 0)
      dictionary_.weight = keptInRole(whole().weight, "^1: The variable \"^2\" was dropped, which is the weight.");
    for (const std::int32_t variable : whole().split) {
      const std::int32_t index =
          keptInRole(variable, "^1: The variable \"^2\" was dropped, which is a split variable.");
      if (index >= 0) dictionary_.split.push_back(index);
    }
  }

  std::int32_t keptInRole(std::int32_t variable, std::string_view ifDropped) {
    if (const auto index = kept(variable)) return *index;
    warnings_.push_back(text::sentence(ifDropped, {path(), whole().at(variable).name}));
    return -1;
  }

  std::shared_ptr<const DataFile> file_;
  std::vector<std::size_t> columns_;  // by variable
  Dictionary dictionary_;
  std::vector<std::string> warnings_;
};

}  // namespace

std::shared_ptr<const DataFile> changedFile(std::shared_ptr<const DataFile> file, KeptColumns kept) {
  return std::make_shared<ChangedFile>(std::move(file), std::move(kept));
}

}  // namespace workbench::data
