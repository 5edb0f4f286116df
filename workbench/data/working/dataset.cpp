#include "workbench/data/working/dataset.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "workbench/data/working/kept_blocks.h"
#include "workbench/data/working/prefetched_blocks.h"
#include "workbench/data/working/read_watch.h"
#include "workbench/runtime/activity.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

std::vector<std::string> allFilesOf(const DataFile& file) {
  std::vector<std::string> files = file.furtherFiles();
  files.push_back(file.path());
  return files;
}

}  // namespace

Dataset::Dataset(std::shared_ptr<const DataFile> file)
    : dictionary_(file->dictionary()),
      layout_(dictionary_),
      baseVariables_(dictionary_.size()),
      file_(std::move(file)),
      path_(file_->path()),
      dictionaryFile_(file_->dictionaryFile()),
      fileInUse_(std::make_unique<FileInUse>(allFilesOf(*file_))) {}

Dataset::Dataset(Dictionary dictionary, std::shared_ptr<const KeptCases> cases)
    : dictionary_(std::move(dictionary)),
      layout_(dictionary_),
      baseVariables_(dictionary_.size()),
      kept_(std::move(cases)) {}

std::optional<std::int64_t> Dataset::caseCount() const { return kept_ ? kept_->cases() : file_->caseCount(); }

std::int32_t Dataset::addVariable(Variable variable) {
  columns_.emplace_back(variable.width);
  const std::int32_t index = dictionary_.add(std::move(variable));
  layout_ = CaseLayout(dictionary_);
  hasUnsavedVariables_ = true;
  return index;
}

void Dataset::changeAddedVariable(std::int32_t index, const Variable& changed) {
  assert(index >= baseVariables_ && changed.width == dictionary_.at(index).width);  // views see to it
  hasUnsavedVariables_ = true;
  if (changed.name == dictionary_.at(index).name) {
    dictionary_.at(index) = changed;
    return;
  }
  // A dictionary looks variables up by their names, so a new name makes a new dictionary.
  Dictionary renamed;
  for (std::int32_t other = 0; other < dictionary_.size(); ++other) {
    renamed.add(other == index ? changed : dictionary_.at(other));
  }
  renamed.attributes = dictionary_.attributes;
  renamed.filter = dictionary_.filter;
  renamed.weight = dictionary_.weight;
  renamed.split = dictionary_.split;
  dictionary_ = std::move(renamed);
}

void Dataset::replaceCases(std::shared_ptr<const KeptCases> cases) {
  kept_ = std::move(cases);
  file_.reset();
  keyFindings_.reset();
  columns_.clear();
  baseVariables_ = dictionary_.size();
}

std::shared_ptr<const DataFile> Dataset::fileInOrderOf(const std::vector<std::int32_t>& variables) const {
  return file_ && columns_.empty() ? file_->broughtIntoOrder(variables) : nullptr;
}

std::shared_ptr<const DataFile> Dataset::replaceFile(std::shared_ptr<const DataFile> file) {
  keyFindings_.reset();
  return std::exchange(file_, std::move(file));
}

bool Dataset::isKnownIncreasing(std::int32_t variable) const {
  return file_ && variable < baseVariables_ && file_->isKnownIncreasing(variable);
}

std::unique_ptr<BlockSupply> Dataset::openBaseCases(std::size_t stride, CaseUse use,
                                                    const VariableSubset& wanted) const {
  if (file_) return std::make_unique<PrefetchedBlocks>(file_->openReader(wanted), stride, path_);
  // Added variables are laid over what is supplied.
  return supplyKept(kept_, stride, columns_.empty() ? use : CaseUse::mayBeWritten, nameForPeople(*this));
}

std::string nameForPeople(const Dataset& dataset) {
  return dataset.path().empty() ? text::sentence("the dataset in memory") : dataset.path();
}

DatasetPass::DatasetPass(const Dataset& dataset, CaseUse use, VariableSubset wanted)
    : dataset_(dataset),
      layout_(dataset.layout()),
      wanted_(std::move(wanted)),
      supply_(dataset.openBaseCases(std::max<std::size_t>(layout_.caseSlots, 1), use, wanted_)),
      expectedCases_(dataset.caseCount().value_or(0)) {
  activity().expect(Activity::Unit::cases, expectedCases_);
}

// Of a pass that is left early nothing more is to be expected.
DatasetPass::~DatasetPass() {
  activity().expect(Activity::Unit::cases, std::min<std::int64_t>(0, nextRow_ - expectedCases_));
}

CaseSpan DatasetPass::next() {
  firstRow_ = nextRow_;
  const CaseSpan span = supply_->next();
  nextRow_ += static_cast<std::int64_t>(span.count);
  if (span.count == 0) return span;
  for (auto added = static_cast<std::size_t>(dataset_.baseVariables()); added < layout_.slotOfVariable.size();
       ++added) {
    const auto variable = static_cast<std::int32_t>(added);
    if (!wanted_.has(variable)) continue;
    dataset_.column(variable).layOver(firstRow_, span.cases + layout_.slotOfVariable[added], span.count,
                                      span.caseSlots);
  }
  activity().add(Activity::Unit::cases, static_cast<std::int64_t>(span.count));
  reportReading(dataset_.path(), nextRow_, dataset_.caseCount());
  return span;
}

}  // namespace workbench::data
