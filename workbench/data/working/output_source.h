// OutputSource: a source that is written to: first its variables, then its cases, then Close.
//
// Cases go to a new data file or are kept in memory as a new dataset; either is completed by Close and put into place
// by the command's OutputSet. Destroying it without Close abandons it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/data.h"
#include "workbench/data/case_reader.h"
#include "workbench/data/output_set.h"
#include "workbench/data/working/case_file_spec.h"
#include "workbench/data/working/dictionary_variable.h"
#include "workbench/data/working/handed_out.h"
#include "workbench/data/working/kept_cases.h"

namespace workbench::data {

class OutputSource final : public VRIX_DataSource, public VariableEditor, public HandedOut {
 public:
  // Requires: the spec is one for output; the output was announced for it.
  OutputSource(CaseFileSpec spec, std::shared_ptr<OutputSet::Output> output);
  ~OutputSource() override;

  void letGo() noexcept override;

  std::int32_t GetNVars() const override;
  VRIX_Variable& GetVariable(std::int32_t index) const override;
  std::int32_t FindVarIndex(std::string_view name, FindOptions options) const override;
  std::int32_t GetFilterVarIndex() const override { return -1; }
  std::int32_t GetWeightVarIndex() const override { return -1; }
  std::int32_t GetNSplitVars() const override { return 0; }
  std::int32_t GetSplitVarIndex(std::int32_t position) const override;
  ExtNameStr GetFileSpecExt() const override;
  const DatasourceAttributes& GetAttributes() const override { return attributes_; }
  void SetAttributes(const DatasourceAttributes& attributes) override;
  VRIX_Variable& MakeVariable(std::int32_t type, std::int32_t* index) override;
  VRIX_Variable& MakeVariable(const VRIX_Variable& like, std::int32_t* index) override;
  std::uint32_t ObsIndex(std::int32_t variable) const override;
  std::unique_ptr<VRIX_InputCaseIterator> CreateCaseIterator(IteratorOptions options) override;
  void CommitDictionary() override;
  std::size_t GetCaseSize() const override { return caseSlots_; }
  void WriteCase(const OBS* slots) override;
  void Close() override;

  void changeVariable(std::int32_t index, const Variable& changed) override;

 private:
  enum class Stage { dictionary, cases, closed };

  VRIX_Variable& add(Variable variable, std::int32_t* index);
  std::string freeName(std::string_view name) const;
  void checkIndex(std::int32_t index) const;
  void checkStage(Stage wanted) const;
  void keep(const OBS* slots);
  void flush();
  bool isFile() const { return spec_.kind == CaseFileSpec::Kind::file; }

  const CaseFileSpec spec_;
  std::shared_ptr<OutputSet::Output> output_;  // null: let go
  Stage stage_ = Stage::dictionary;

  std::vector<std::unique_ptr<DictionaryVariable>> variables_;
  std::unordered_map<std::string, std::int32_t> byFoldedName_;
  std::vector<std::uint32_t> slotOfVariable_;
  std::size_t caseSlots_ = 0;
  DatasourceAttributes attributes_;

  std::unique_ptr<CaseWriter> writer_;  // of a file
  std::optional<CaseBlock> block_;      // of a file: cases on their way to it
  Dictionary dictionary_;               // of a dataset, once committed
  std::optional<CaseKeeper> keeper_;    // of a dataset
};

}  // namespace workbench::data
