// The host's datasets: a dictionary and cases, to be read or written.
//
// A case is a row of 8-byte slots, strings padded with blanks. Positions of variables in a dictionary are signed
// 32-bit; -1 means that a variable is not there. Sources and iterators are interfaces, so that other sources can stand
// in for the host's own. Unless a declaration says otherwise, what a call cannot do is thrown as ErrorText.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "host/dictionary.h"
#include "host/runtime.h"

// Steps through the cases of a source, in order. Owned by who asked for it; the source outlives it.
//
// The host publishes a block of cases at a time: stepping within a block and addressing a variable are inline here, and
// the host is called only when a block is used up. What is written into a case of the active dataset is taken over when
// its block is left, and at the latest when the iterator is destroyed. Other cases are not to be written.
class HOST_API VRIX_InputCaseIterator {
 public:
  virtual ~VRIX_InputCaseIterator();
  VRIX_InputCaseIterator(const VRIX_InputCaseIterator&) = delete;
  VRIX_InputCaseIterator& operator=(const VRIX_InputCaseIterator&) = delete;

  // Steps to the next case; false when there is none. A reading error is thrown as ErrorText.
  bool NextCase() {
    if (next_ != end_) {
      case_ = next_;
      next_ += caseSlots_;
      ++position_;
      return true;
    }
    return NextBlock();
  }

  // Where the given variable's value lies in the current case: a number, or a string's first slot. Valid until the next
  // step. How far the values of two variables lie apart is the same in all cases of an iterator. Requires: a case is
  // current, and the variable existed when the iterator was made.
  OBS* GetObsPointer(std::int32_t variable) const { return case_ + slotOfVariable_[variable]; }

  // The ordinal of the current case among those delivered, from 0; -1 before the first.
  std::int64_t GetCurrentPosition() const { return position_; }

 protected:
  VRIX_InputCaseIterator() = default;

  // Publishes the next block and steps to its first case (setting all that follows), or returns false at the end.
  virtual bool NextBlock() = 0;

  OBS* case_ = nullptr;                            // the current case
  OBS* next_ = nullptr;                            // the case after it, when it lies in the same block
  OBS* end_ = nullptr;                             // behind the block's last case
  std::size_t caseSlots_ = 0;                      // slots of one case, spare ones included
  const std::uint32_t* slotOfVariable_ = nullptr;  // first slot of every variable; set once, and never changed
  std::int64_t position_ = -1;
};

// The name of a data file, in whatever form its source knows it.
class ExtNameStr {
 public:
  explicit ExtNameStr(std::string generic) : generic_(std::move(generic)) {}
  // The generic form: the path as written, lexically cleaned; empty when the data came from no file.
  const std::string& GetGeneric() const { return generic_; }

 private:
  std::string generic_;
};

// How an iterator is to be made. There is one way.
enum class IteratorOptions : std::int32_t { standard = 0 };

// How a name is looked up. There is one way: without regard to case.
enum class FindOptions : std::int32_t { standard = 0 };

// A dictionary and its cases: a source to read from, or, after MakeVariable and CommitDictionary, one to write to.
class HOST_API VRIX_DataSource {
 public:
  virtual ~VRIX_DataSource();

  // The dictionary.
  virtual std::int32_t GetNVars() const = 0;
  virtual VRIX_Variable& GetVariable(std::int32_t index) const = 0;
  virtual std::int32_t FindVarIndex(std::string_view name, FindOptions options) const = 0;
  virtual std::int32_t GetFilterVarIndex() const = 0;  // -1: no filter
  virtual std::int32_t GetWeightVarIndex() const = 0;  // -1: no weight
  virtual std::int32_t GetNSplitVars() const = 0;
  virtual std::int32_t GetSplitVarIndex(std::int32_t position) const = 0;
  virtual ExtNameStr GetFileSpecExt() const = 0;
  virtual const DatasourceAttributes& GetAttributes() const = 0;
  virtual void SetAttributes(const DatasourceAttributes& attributes) = 0;

  // Adds a variable at the end: of the given type, or like one of any source in all its properties. The reference is
  // valid as long as the source. The new variable's index is stored where the pointer says, when there is one.
  virtual VRIX_Variable& MakeVariable(std::int32_t type, std::int32_t* index) = 0;
  virtual VRIX_Variable& MakeVariable(const VRIX_Variable& like, std::int32_t* index) = 0;
  // The first slot of a variable in a case.
  virtual std::uint32_t ObsIndex(std::int32_t variable) const = 0;

  // Reading. Null when no iterator can be made.
  virtual std::unique_ptr<VRIX_InputCaseIterator> CreateCaseIterator(IteratorOptions options) = 0;

  // Writing. After CommitDictionary no variable can be added; Close completes the output, which the host puts into
  // place when the command has ended.
  virtual void CommitDictionary() = 0;
  virtual std::size_t GetCaseSize() const = 0;   // in slots
  virtual void WriteCase(const OBS* slots) = 0;  // GetCaseSize() slots, copied at the call
  virtual void Close() = 0;
};

// The active dataset as a procedure sees it. There is one at a time, made before anything else looks at the data.
// Requires: a dataset is active (the host starts no procedure without one).
class HOST_API ProcedureDataSource final : public VRIX_DataSource {
 public:
  ProcedureDataSource();
  ProcedureDataSource(const ProcedureDataSource&) = delete;
  ProcedureDataSource& operator=(const ProcedureDataSource&) = delete;
  ~ProcedureDataSource() override;

  // Whether cases that the filter leaves out are passed over (default: they are).
  void SetUseFilter(bool use);
  // Whether the end of a split group is checked for (default: it is). An iterator never stops there.
  void SetSplitEndCheck(bool check);
  // How many variables MakeVariable may add (default 0). More throws ErrorText.
  void SetMaxObsAdded(std::int32_t variables);
  // The name itself, or a valid one made of it that no variable has.
  std::string GoodVarName(std::string_view name) const;

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
  struct State;
  std::unique_ptr<State> state_;
};
