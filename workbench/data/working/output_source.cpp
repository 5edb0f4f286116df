#include "workbench/data/working/output_source.h"

#include <fmt/format.h>

#include <algorithm>
#include <new>
#include <utility>

#include "workbench/data/data_file.h"
#include "workbench/data/working/file_place.h"
#include "workbench/data/working/host_note.h"
#include "workbench/data/working/refusal.h"
#include "workbench/data/working/variable_names.h"
#include "workbench/text/folding.h"

namespace workbench::data {

OutputSource::OutputSource(CaseFileSpec spec, std::shared_ptr<OutputSet::Output> output)
    : spec_(std::move(spec)), output_(std::move(output)) {}

OutputSource::~OutputSource() { letGo(); }

void OutputSource::letGo() noexcept {
  if (output_ && stage_ != Stage::closed) output_->abandon();
  output_.reset();
  writer_.reset();
  block_.reset();
  keeper_.reset();
}

std::int32_t OutputSource::GetNVars() const { return static_cast<std::int32_t>(variables_.size()); }

VRIX_Variable& OutputSource::GetVariable(std::int32_t index) const {
  checkIndex(index);
  return *variables_[static_cast<std::size_t>(index)];
}

std::int32_t OutputSource::FindVarIndex(std::string_view name, FindOptions) const {
  const auto found = byFoldedName_.find(text::foldedName(name));
  return found == byFoldedName_.end() ? -1 : found->second;
}

std::int32_t OutputSource::GetSplitVarIndex(std::int32_t position) const {
  refuse("There is no split variable at position ^1.", {fmt::to_string(position)});
}

ExtNameStr OutputSource::GetFileSpecExt() const { return ExtNameStr(isFile() ? spec_.name : std::string()); }

void OutputSource::SetAttributes(const DatasourceAttributes& attributes) {
  checkStage(Stage::dictionary);
  attributes_ = attributes;
}

VRIX_Variable& OutputSource::MakeVariable(std::int32_t type, std::int32_t* index) {
  checkStorageWidth(type);
  return add(plainVariable(freeName(nameOfNewVariable), type), index);
}

VRIX_Variable& OutputSource::MakeVariable(const VRIX_Variable& like, std::int32_t* index) {
  Variable variable = variableLike(like);
  variable.name = freeName(variable.name);
  return add(std::move(variable), index);
}

std::uint32_t OutputSource::ObsIndex(std::int32_t variable) const {
  checkIndex(variable);
  return slotOfVariable_[static_cast<std::size_t>(variable)];
}

std::unique_ptr<VRIX_InputCaseIterator> OutputSource::CreateCaseIterator(IteratorOptions) {
  refuse("^1 is being written; its cases cannot be read yet.", {spec_.name});
}

void OutputSource::CommitDictionary() {
  checkStage(Stage::dictionary);
  Dictionary dictionary;
  for (const auto& variable : variables_) dictionary.add(variable->variable());
  dictionary.attributes = attributes_;
  if (isFile()) {
    auto writer = createDataFile(spec_.name, dictionary, spec_.password);
    if (!writer) throw ErrorText(writer.problem().text());
    writer_ = std::move(*writer);
    for (const std::string& warning : writer_->warnings()) {
      addHostNote(BpErrorLevel::warning, cleanedPath(spec_.name) + ": " + warning);
    }
    block_.emplace(caseSlots_);
  } else {
    dictionary_ = std::move(dictionary);
    keeper_.emplace(caseSlots_);
  }
  stage_ = Stage::cases;
}

void OutputSource::WriteCase(const OBS* slots) {
  checkStage(Stage::cases);
  if (keeper_) {
    keep(slots);
    return;
  }
  std::copy_n(slots, caseSlots_, block_->at(block_->cases()));
  block_->setCases(block_->cases() + 1);
  if (block_->cases() == block_->capacity()) flush();
}

void OutputSource::Close() {
  checkStage(Stage::cases);
  if (isFile()) {
    flush();
    writer_->complete();
    output_->complete(std::move(writer_));
    block_.reset();
  } else {
    output_->complete(std::make_shared<Dataset>(std::move(dictionary_), keeper_->finish()));
    keeper_.reset();
  }
  stage_ = Stage::closed;
}

void OutputSource::changeVariable(std::int32_t index, const Variable& changed) {
  checkStage(Stage::dictionary);
  const std::string& former = variables_[static_cast<std::size_t>(index)]->variable().name;
  if (changed.name == former) return;
  checkVariableName(changed.name);
  if (const std::int32_t known = FindVarIndex(changed.name, FindOptions::standard); known != -1 && known != index) {
    refuse("There is a variable ^1 already; choose another name.", {changed.name});
  }
  byFoldedName_.erase(text::foldedName(former));
  byFoldedName_.emplace(text::foldedName(changed.name), index);
}

VRIX_Variable& OutputSource::add(Variable variable, std::int32_t* index) {
  checkStage(Stage::dictionary);
  const std::int32_t added = GetNVars();
  byFoldedName_.emplace(text::foldedName(variable.name), added);
  slotOfVariable_.push_back(static_cast<std::uint32_t>(caseSlots_));
  caseSlots_ += variable.slots();
  variables_.push_back(std::make_unique<DictionaryVariable>(std::move(variable), added, this));
  if (index != nullptr) *index = added;
  return *variables_.back();
}

// The name, or one made of it that no variable has.
std::string OutputSource::freeName(std::string_view name) const {
  const std::string good = Dictionary().goodName(name);
  std::string candidate = good;
  for (std::int64_t number = 1; FindVarIndex(candidate, FindOptions::standard) != -1; ++number) {
    candidate = fmt::format("{}_{}", good, number);
  }
  return candidate;
}

void OutputSource::checkIndex(std::int32_t index) const {
  if (index < 0 || index >= GetNVars()) refuse("There is no variable with the index ^1.", {fmt::to_string(index)});
}

void OutputSource::checkStage(Stage wanted) const {
  if (!output_) refuse("^1 can no longer be written; the command that opened it has ended.", {spec_.name});
  if (stage_ == wanted) return;
  switch (stage_) {
    case Stage::dictionary:
      refuse("No cases can be written to ^1 before its dictionary is committed.", {spec_.name});
    case Stage::cases:
      refuse("The dictionary of ^1 is committed; it can no longer be changed.", {spec_.name});
    case Stage::closed:
      refuse("^1 is closed; it can no longer be written.", {spec_.name});
  }
}

void OutputSource::keep(const OBS* slots) {
  const OBS nothing{};  // without variables a case has no slot that could be read
  try {
    keeper_->add(caseSlots_ == 0 ? &nothing : slots, 1, std::max<std::size_t>(caseSlots_, 1));
  } catch (const std::bad_alloc&) {
    refuse("There is not enough memory to keep the dataset ^1; save the cases to a data file instead.", {spec_.name});
  }
}

void OutputSource::flush() {
  // Emptied first: who goes on after an append that threw must find room in the block.
  const std::size_t cases = block_->cases();
  block_->setCases(0);
  if (cases != 0) writer_->append(block_->begin(), cases, block_->caseSlots());
}

}  // namespace workbench::data
