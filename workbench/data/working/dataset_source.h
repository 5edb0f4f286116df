// DatasetSource: a dataset as a source that procedures read, and to whose dataset they may add variables.
//
// Views of comparison datasets and data files are only read, and their filter is shown but never applied. The active
// dataset's filter is applied unless it is switched off, and as many variables can be added as were announced.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/data.h"
#include "workbench/data/working/active_source.h"
#include "workbench/data/working/dataset.h"
#include "workbench/data/working/dictionary_variable.h"
#include "workbench/data/working/handed_out.h"

namespace workbench::data {

enum class SourceKind {
  active,        // the filter counts; variables can be added within the limit
  readOnlyView,  // nothing can be added
  writableView,  // variables can be added; the filter does not count
};

class DatasetSource final : public ActiveSource, public VariableEditor, public HandedOut {
 public:
  DatasetSource(std::shared_ptr<Dataset> dataset, SourceKind kind);
  ~DatasetSource() override;

  void letGo() noexcept override;

  void beginProcedure() override;
  void setUseFilter(bool use) override { useFilter_ = use; }
  void setSplitEndCheck(bool) override {}  // an iterator never stops at the end of a group, checked for or not
  void setMaxObsAdded(std::int32_t variables) override;
  std::string goodVarName(std::string_view name) const override;

  std::int32_t GetNVars() const override;
  VRIX_Variable& GetVariable(std::int32_t index) const override;
  std::int32_t FindVarIndex(std::string_view name, FindOptions options) const override;
  std::int32_t GetFilterVarIndex() const override;
  std::int32_t GetWeightVarIndex() const override;
  std::int32_t GetNSplitVars() const override;
  std::int32_t GetSplitVarIndex(std::int32_t position) const override;
  ExtNameStr GetFileSpecExt() const override;
  const DatasourceAttributes& GetAttributes() const override;
  void SetAttributes(const DatasourceAttributes& attributes) override;
  VRIX_Variable& MakeVariable(std::int32_t type, std::int32_t* index) override;
  VRIX_Variable& MakeVariable(const VRIX_Variable& like, std::int32_t* index) override;
  std::uint32_t ObsIndex(std::int32_t variable) const override;
  std::unique_ptr<VRIX_InputCaseIterator> CreateCaseIterator(IteratorOptions options) override;
  void CommitDictionary() override;
  std::size_t GetCaseSize() const override;
  void WriteCase(const OBS* slots) override;
  void Close() override;

  void changeVariable(std::int32_t index, const Variable& changed) override;

 private:
  Dataset& dataset() const;
  VRIX_Variable& add(Variable variable, std::int32_t* index);
  void checkIndex(std::int32_t index) const;
  [[noreturn]] void refuseWriting() const;

  std::shared_ptr<Dataset> dataset_;
  SourceKind kind_;
  bool useFilter_ = true;
  std::int32_t maxAdded_ = 0;
  std::int32_t firstAdded_;  // the first variable that was added through this view
  std::vector<std::unique_ptr<DictionaryVariable>> variables_;
};

}  // namespace workbench::data
