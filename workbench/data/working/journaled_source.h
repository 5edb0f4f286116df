// JournaledSource: a source that passes every call on and writes it to the journal when that is on.
//
// All sources that procedures are given are wrapped in one, so what a source itself does needs no journal.
#pragma once

#include <memory>
#include <string>

#include "host/data.h"

namespace workbench::data {

class JournaledSource final : public VRIX_DataSource {
 public:
  // Owns the source. The type is the class under which the procedure knows it.
  JournaledSource(std::unique_ptr<VRIX_DataSource> source, std::string type);
  // Looks at the source; calls are written as those of another object.
  JournaledSource(VRIX_DataSource& source, std::string type, const void* speaksFor);
  ~JournaledSource() override;

  // Under which the journal knows it. Requires: the journal is on.
  std::string name() const;

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

 private:
  std::unique_ptr<VRIX_DataSource> owned_;
  VRIX_DataSource& source_;
  const std::string type_;
  const void* const speaksFor_;
};

}  // namespace workbench::data
