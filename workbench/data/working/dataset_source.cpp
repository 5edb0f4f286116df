#include "workbench/data/working/dataset_source.h"

#include <fmt/format.h>

#include <limits>
#include <new>
#include <utility>

#include "workbench/data/working/dataset_iterator.h"
#include "workbench/data/working/file_place.h"
#include "workbench/data/working/refusal.h"
#include "workbench/data/working/variable_names.h"

namespace workbench::data {

DatasetSource::DatasetSource(std::shared_ptr<Dataset> dataset, SourceKind kind)
    : dataset_(std::move(dataset)),
      kind_(kind),
      maxAdded_(kind == SourceKind::writableView ? std::numeric_limits<std::int32_t>::max() : 0),
      firstAdded_(dataset_->dictionary().size()) {
  variables_.reserve(dataset_->dictionary().variables().size());
  for (const Variable& variable : dataset_->dictionary().variables()) {
    variables_.push_back(std::make_unique<DictionaryVariable>(variable, GetNVars(), nullptr));
  }
}

DatasetSource::~DatasetSource() = default;

void DatasetSource::letGo() noexcept {
  dataset_.reset();
  variables_.clear();
}

void DatasetSource::beginProcedure() {
  useFilter_ = true;
  maxAdded_ = 0;
  firstAdded_ = dataset().dictionary().size();
}

void DatasetSource::setMaxObsAdded(std::int32_t variables) {
  if (variables < 0) refuse("^1 is no number of variables that can be added.", {fmt::to_string(variables)});
  maxAdded_ = variables;
}

std::string DatasetSource::goodVarName(std::string_view name) const { return dataset().dictionary().goodName(name); }

std::int32_t DatasetSource::GetNVars() const { return static_cast<std::int32_t>(variables_.size()); }

VRIX_Variable& DatasetSource::GetVariable(std::int32_t index) const {
  checkIndex(index);
  return *variables_[static_cast<std::size_t>(index)];
}

std::int32_t DatasetSource::FindVarIndex(std::string_view name, FindOptions) const {
  return dataset().dictionary().find(name);
}

std::int32_t DatasetSource::GetFilterVarIndex() const { return dataset().dictionary().filter; }

std::int32_t DatasetSource::GetWeightVarIndex() const { return dataset().dictionary().weight; }

std::int32_t DatasetSource::GetNSplitVars() const {
  return static_cast<std::int32_t>(dataset().dictionary().split.size());
}

std::int32_t DatasetSource::GetSplitVarIndex(std::int32_t position) const {
  if (position < 0 || position >= GetNSplitVars()) {
    refuse("There is no split variable at position ^1.", {fmt::to_string(position)});
  }
  return dataset().dictionary().split[static_cast<std::size_t>(position)];
}

ExtNameStr DatasetSource::GetFileSpecExt() const { return ExtNameStr(cleanedPath(dataset().path())); }

const DatasourceAttributes& DatasetSource::GetAttributes() const { return dataset().dictionary().attributes; }

void DatasetSource::SetAttributes(const DatasourceAttributes& attributes) {
  if (kind_ == SourceKind::readOnlyView) refuseWriting();
  dataset().dictionary().attributes = attributes;
}

VRIX_Variable& DatasetSource::MakeVariable(std::int32_t type, std::int32_t* index) {
  checkStorageWidth(type);
  return add(plainVariable(dataset().dictionary().goodName(nameOfNewVariable), type), index);
}

VRIX_Variable& DatasetSource::MakeVariable(const VRIX_Variable& like, std::int32_t* index) {
  Variable variable = variableLike(like);
  variable.name = dataset().dictionary().goodName(variable.name);
  return add(std::move(variable), index);
}

std::uint32_t DatasetSource::ObsIndex(std::int32_t variable) const {
  checkIndex(variable);
  return dataset().layout().slotOfVariable[static_cast<std::size_t>(variable)];
}

std::unique_ptr<VRIX_InputCaseIterator> DatasetSource::CreateCaseIterator(IteratorOptions) {
  dataset();
  IteratorUse use;
  use.useFilter = kind_ == SourceKind::active && useFilter_;
  if (kind_ != SourceKind::readOnlyView) use.firstWritable = firstAdded_;
  try {
    return std::make_unique<DatasetIterator>(dataset_, use);
  } catch (const std::bad_alloc&) {
    refuse("There is not enough memory to read ^1.", {nameForPeople(*dataset_)});
  }
}

void DatasetSource::CommitDictionary() { refuseWriting(); }

std::size_t DatasetSource::GetCaseSize() const { return dataset().layout().caseSlots; }

void DatasetSource::WriteCase(const OBS*) { refuseWriting(); }

void DatasetSource::Close() { refuseWriting(); }

void DatasetSource::changeVariable(std::int32_t index, const Variable& changed) {
  const Dictionary& dictionary = dataset().dictionary();
  checkVariableName(changed.name);
  if (const std::int32_t known = dictionary.find(changed.name); known != -1 && known != index) {
    refuse("There is a variable ^1 already; choose another name.", {dictionary.at(known).name});
  }
  dataset().changeAddedVariable(index, changed);
}

Dataset& DatasetSource::dataset() const {
  if (!dataset_) refuse("The data can no longer be used; the command that asked for them has ended.");
  return *dataset_;
}

VRIX_Variable& DatasetSource::add(Variable variable, std::int32_t* index) {
  if (kind_ == SourceKind::readOnlyView) refuseWriting();
  if (GetNVars() - firstAdded_ >= maxAdded_) {
    refuse("No more than ^1 variables may be added to the active dataset here; SetMaxObsAdded says how many.",
           {fmt::to_string(maxAdded_)});
  }
  const std::int32_t added = dataset().addVariable(variable);
  variables_.push_back(std::make_unique<DictionaryVariable>(std::move(variable), added, this));
  if (index != nullptr) *index = added;
  return *variables_.back();
}

void DatasetSource::checkIndex(std::int32_t index) const {
  dataset();
  if (index < 0 || index >= GetNVars()) refuse("There is no variable with the index ^1.", {fmt::to_string(index)});
}

void DatasetSource::refuseWriting() const { refuse("These data are open for reading; they cannot be written to."); }

std::unique_ptr<ActiveSource> makeActiveSource(std::shared_ptr<Dataset> dataset) {
  return std::make_unique<DatasetSource>(std::move(dataset), SourceKind::active);
}

}  // namespace workbench::data
