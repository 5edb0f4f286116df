// Dataset: a dictionary and where its cases come from.
//
// The cases of its base variables lie in a data file, shared with whoever else reads it, or are kept apart from one.
// Variables that were added later have a column each, laid over the base cases when these are read, so that adding a
// variable never copies a dataset. Cases can be read any number of times. A dataset may have a handle or none: the
// handle belongs to whoever keeps it open.
//
// Invariant: the dictionary's first baseVariables() variables are those of the base, in its order; every further one
// has a column.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "workbench/data/data_file.h"
#include "workbench/data/dictionary.h"
#include "workbench/data/working/added_column.h"
#include "workbench/data/working/block_supply.h"
#include "workbench/data/working/file_in_use.h"
#include "workbench/data/working/kept_cases.h"
#include "workbench/data/working/key_findings.h"

namespace workbench::data {

class Dataset {
 public:
  explicit Dataset(std::shared_ptr<const DataFile> file);
  // Requires: the cases lie as CaseLayout(dictionary) says.
  Dataset(Dictionary dictionary, std::shared_ptr<const KeptCases> cases);

  // What is changed through it: attributes, filter, weight and split. Variables are added and changed below.
  Dictionary& dictionary() { return dictionary_; }
  const Dictionary& dictionary() const { return dictionary_; }
  const CaseLayout& layout() const { return layout_; }
  // The path of the file that the data came from, as written; empty when there is none.
  const std::string& path() const { return path_; }
  // The file that its dictionary came from; empty when there is none.
  const std::string& dictionaryFile() const { return dictionaryFile_; }
  // That file, and others that were read with it, as inputs that no output may replace; null when there is none.
  const FileInUse* fileInUse() const { return fileInUse_.get(); }
  // If known without reading.
  std::optional<std::int64_t> caseCount() const;

  std::int32_t baseVariables() const { return baseVariables_; }
  // Adds a variable at the end, its values missing, and gives its index. Requires: the name is not taken.
  std::int32_t addVariable(Variable variable);
  // Changes an added variable; its storage width stays. Requires: a new name is not taken by another variable.
  void changeAddedVariable(std::int32_t index, const Variable& changed);
  AddedColumn& column(std::int32_t addedVariable) { return columns_[columnOf(addedVariable)]; }
  const AddedColumn& column(std::int32_t addedVariable) const { return columns_[columnOf(addedVariable)]; }

  // Whether a variable was added since the data were opened or last saved.
  bool hasUnsavedVariables() const { return hasUnsavedVariables_; }
  void markSaved() { hasUnsavedVariables_ = false; }

  // Puts cases of all variables, base and added, in the place of what there was. Requires: they lie as layout() says.
  void replaceCases(std::shared_ptr<const KeptCases> cases);
  bool isKept() const { return kept_ != nullptr; }
  // The file with its cases in ascending order of these base variables, as DataFile::broughtIntoOrder says; null: they
  // are kept, or have added variables, or nobody can.
  std::shared_ptr<const DataFile> fileInOrderOf(const std::vector<std::int32_t>& variables) const;
  // Takes that file in the place of the one there was, and gives this.
  std::shared_ptr<const DataFile> replaceFile(std::shared_ptr<const DataFile> file);
  // Whether the variable's values are known to increase from case to case, as DataFile::isKnownIncreasing says.
  bool isKnownIncreasing(std::int32_t variable) const;

  // What was found of keys that are base variables; null when nobody has looked at these cases.
  const KeyFindings* keyFindings() const { return keyFindings_ ? &*keyFindings_ : nullptr; }
  void rememberKeys(KeyFindings findings) { keyFindings_ = std::move(findings); }

  // The base variables' cases, `stride` slots apart or (kept and only read) as they lie. Only the wanted variables are
  // sure to be there. Throws ErrorText.
  std::unique_ptr<BlockSupply> openBaseCases(std::size_t stride, CaseUse use, const VariableSubset& wanted) const;

 private:
  std::size_t columnOf(std::int32_t variable) const { return static_cast<std::size_t>(variable - baseVariables_); }

  Dictionary dictionary_;
  CaseLayout layout_;
  std::int32_t baseVariables_;
  std::shared_ptr<const DataFile> file_;   // either this
  std::shared_ptr<const KeptCases> kept_;  // or this
  std::vector<AddedColumn> columns_;
  std::string path_;
  std::string dictionaryFile_;
  std::unique_ptr<FileInUse> fileInUse_;
  std::optional<KeyFindings> keyFindings_;
  bool hasUnsavedVariables_ = false;
};

// The dataset's file, or that it is kept in memory.
std::string nameForPeople(const Dataset& dataset);

// One pass over all cases of a dataset, with its added variables, block by block.
class DatasetPass {
 public:
  // Requires: the dataset outlives the pass, and its cases are not replaced meanwhile. Variables that are added
  // meanwhile are no part of it.
  DatasetPass(const Dataset& dataset, CaseUse use, VariableSubset wanted = {});
  DatasetPass(const DatasetPass&) = delete;
  DatasetPass& operator=(const DatasetPass&) = delete;
  ~DatasetPass();

  // The next cases, valid until the next call; the slots of the wanted variables lie as layout() says, those of others
  // hold anything. Throws ErrorText.
  CaseSpan next();
  // The row of the first case that next() gave last, from 0.
  std::int64_t firstRow() const { return firstRow_; }
  const CaseLayout& layout() const { return layout_; }

 private:
  const Dataset& dataset_;
  const CaseLayout layout_;
  const VariableSubset wanted_;
  std::unique_ptr<BlockSupply> supply_;
  const std::int64_t expectedCases_;  // 0: not known
  std::int64_t firstRow_ = 0;
  std::int64_t nextRow_ = 0;
};

}  // namespace workbench::data
