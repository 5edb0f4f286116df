// Sources and iterators that pass every call on to the host's own, with the parts replaced that a test wants different.
//
// A WrappedSource can stand for the active dataset (ProcedureRun::fakeActive) or, through a DatasetsWithOne, for the
// comparison dataset. Requires: the wrapped source's first variable lies in the first slot of its cases.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/datasets.h"
#include "workbench/data/working/active_source.h"

namespace workbench::tests {

// Steps through another iterator's cases one by one. What its parts do by default is what the other iterator does.
class WrappedIterator final : public VRIX_InputCaseIterator {
 public:
  // The first slots of all variables, in the order in which the procedure knows them.
  WrappedIterator(std::unique_ptr<VRIX_InputCaseIterator> inner, std::vector<std::uint32_t> slots);

  // Called before the case of that ordinal (from 0) is read, also before the end is met; may throw.
  std::function<void(std::int64_t)> beforeCase;
  // The position that is reported for the case of that ordinal.
  std::function<std::int64_t(std::int64_t)> position;
  // Called when it is destroyed.
  std::function<void()> whenDestroyed;

  ~WrappedIterator() override;

 protected:
  bool NextBlock() override;

 private:
  std::unique_ptr<VRIX_InputCaseIterator> inner_;
  std::vector<std::uint32_t> slots_;
  std::int64_t ordinal_ = 0;
};

class WrappedSource : public data::ActiveSource {
 public:
  explicit WrappedSource(std::unique_ptr<data::ActiveSource> inner) : owned_(std::move(inner)), inner_(*owned_) {}

  // What the iterators do; called for each that is made.
  std::function<void(WrappedIterator&)> onIterator;
  // No iterator can be made.
  bool withoutIterators = false;
  // Where an added variable is found instead of behind all others: the variable there is hidden by it. -1: behind.
  std::int32_t placeOfAdded = -1;

  void beginProcedure() override { inner_.beginProcedure(); }
  void setUseFilter(bool use) override { inner_.setUseFilter(use); }
  void setSplitEndCheck(bool check) override { inner_.setSplitEndCheck(check); }
  void setMaxObsAdded(std::int32_t variables) override { inner_.setMaxObsAdded(variables); }
  std::string goodVarName(std::string_view name) const override { return inner_.goodVarName(name); }

  std::int32_t GetNVars() const override { return inner_.GetNVars(); }
  VRIX_Variable& GetVariable(std::int32_t index) const override { return inner_.GetVariable(inward(index)); }
  std::int32_t FindVarIndex(std::string_view name, FindOptions options) const override;
  std::int32_t GetFilterVarIndex() const override { return inner_.GetFilterVarIndex(); }
  std::int32_t GetWeightVarIndex() const override { return inner_.GetWeightVarIndex(); }
  std::int32_t GetNSplitVars() const override { return inner_.GetNSplitVars(); }
  std::int32_t GetSplitVarIndex(std::int32_t position) const override { return inner_.GetSplitVarIndex(position); }
  ExtNameStr GetFileSpecExt() const override { return inner_.GetFileSpecExt(); }
  const DatasourceAttributes& GetAttributes() const override { return inner_.GetAttributes(); }
  void SetAttributes(const DatasourceAttributes& attributes) override { inner_.SetAttributes(attributes); }
  VRIX_Variable& MakeVariable(std::int32_t type, std::int32_t* index) override;
  VRIX_Variable& MakeVariable(const VRIX_Variable& like, std::int32_t* index) override;
  std::uint32_t ObsIndex(std::int32_t variable) const override { return inner_.ObsIndex(inward(variable)); }
  std::unique_ptr<VRIX_InputCaseIterator> CreateCaseIterator(IteratorOptions options) override;
  void CommitDictionary() override { inner_.CommitDictionary(); }
  std::size_t GetCaseSize() const override { return inner_.GetCaseSize(); }
  void WriteCase(const OBS* slots) override { inner_.WriteCase(slots); }
  void Close() override { inner_.Close(); }

 private:
  std::int32_t inward(std::int32_t index) const { return added_ >= 0 && index == placeOfAdded ? added_ : index; }
  void placeAdded(std::int32_t* index);

  std::unique_ptr<data::ActiveSource> owned_;
  data::ActiveSource& inner_;
  std::int32_t added_ = -1;
};

// The datasets of another manager, of which the one named "b" is looked at through a view of the test's own making.
class DatasetsWithOne final : public ServerDataManager {
 public:
  using MakeView = std::function<std::unique_ptr<VRIX_DataSource>()>;
  DatasetsWithOne(ServerDataManager& others, MakeView makeView);
  ~DatasetsWithOne() override;

  SvrDMItemPtr GetDataSet(std::string_view name) override;

 private:
  class Shown;

  ServerDataManager& others_;
  std::unique_ptr<Shown> shown_;
};

}  // namespace workbench::tests
