// The host's data service: dictionaries, variables, cases, and the files and datasets that hold them.
//
// A dataset is a dictionary and cases. A case is a row of 8-byte slots: a number takes one, a string variable of width
// w bytes takes (w + 7) / 8, padded with blanks. Positions of variables in a dictionary are signed 32-bit; -1 means
// that a variable is not there. Sources and iterators are interfaces, so that other sources can stand in for the host's
// own. Unless a declaration says otherwise, what a call cannot do is thrown as ErrorText.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/runtime.h"

// One slot of a case.
union OBS {
  double number;
  char text[8];
};
static_assert(sizeof(OBS) == 8 && alignof(OBS) == 8);

// A counted reference: a pointee counts its own references through Retain and Release.
template <class Object>
class RefCountPtr {
 public:
  RefCountPtr() = default;
  explicit RefCountPtr(Object* object) : object_(object) {
    if (object_ != nullptr) object_->Retain();
  }
  RefCountPtr(const RefCountPtr& other) : RefCountPtr(other.object_) {}
  RefCountPtr(RefCountPtr&& other) noexcept : object_(other.object_) { other.object_ = nullptr; }
  RefCountPtr& operator=(RefCountPtr other) noexcept {
    Object* mine = object_;
    object_ = other.object_;
    other.object_ = mine;
    return *this;
  }
  ~RefCountPtr() {
    if (object_ != nullptr) object_->Release();
  }

  bool IsValid() const { return object_ != nullptr; }
  Object& operator*() const { return *object_; }
  Object* operator->() const { return object_; }

 private:
  Object* object_ = nullptr;
};

// What the numbers of a variable's properties mean. A variable may hold a number that stands for none of them.
namespace VRIX_Variable_Enumerations {
enum class Alignment : std::int32_t { left = 0, right = 1, center = 2 };
enum class MeasurementLevel : std::int32_t { unknown = 0, nominal = 1, ordinal = 2, scale = 3, flag = 4, typeless = 5 };
enum class Role : std::int32_t {
  input = 0,
  target = 1,
  both = 2,
  none = 3,
  partition = 4,
  split = 5,
  frequency = 6,
  recordID = 7,
};
}  // namespace VRIX_Variable_Enumerations

// The types of print formats. Those up to customE (text excepted) are plain number formats: near-equal numbers may
// count as equal under them. Dates and times are numbers shown as such: days, or seconds, since 1970-01-01T00:00:00.
enum class FormatType : std::int32_t {
  text = 1,
  comma = 3,
  dollar = 4,
  number = 5,
  restricted = 16,
  scientific = 17,
  percent = 31,
  dot = 32,
  customA = 33,
  customB = 34,
  customC = 35,
  customD = 36,
  customE = 37,
  date = 41,      // days since 1970-01-01, shown as 2026-11-21
  time = 42,      // seconds since midnight, shown as 15:59:55
  dateTime = 43,  // seconds since 1970-01-01T00:00:00, shown as 2026-11-21T15:59:55
  duration = 44,  // months times 2^40 plus seconds (a month is no number of days), shown as P1M2DT3H
};

// The host's table of print formats, one row per type: the name is what dictionaries call it.
struct FormatTypeRow {
  FormatType type;
  const char* name;
};
inline constexpr FormatTypeRow formatTypeRows[] = {
    {FormatType::text, "A"},
    {FormatType::comma, "COMMA"},
    {FormatType::dollar, "DOLLAR"},
    {FormatType::number, "F"},
    {FormatType::restricted, "N"},
    {FormatType::scientific, "E"},
    {FormatType::percent, "PCT"},
    {FormatType::dot, "DOT"},
    {FormatType::customA, "CCA"},
    {FormatType::customB, "CCB"},
    {FormatType::customC, "CCC"},
    {FormatType::customD, "CCD"},
    {FormatType::customE, "CCE"},
    {FormatType::date, "DATE"},
    {FormatType::time, "TIME"},
    {FormatType::dateTime, "DATETIME"},
    {FormatType::duration, "DURATION"},
};

// The name of a variable, as text.
class VrixVarName {
 public:
  explicit VrixVarName(std::string_view text) : text_(text) {}
  const std::string& GetText() const { return text_; }

 private:
  std::string text_;
};

// Named lists of texts. Names are kept in the order in which they were added; equality has no order of names, but an
// order of the values under a name, and leaves out no name.
class HOST_API DatasourceAttributes {
 public:
  DatasourceAttributes();
  DatasourceAttributes(const DatasourceAttributes&);
  DatasourceAttributes& operator=(const DatasourceAttributes&);
  ~DatasourceAttributes();

  std::int32_t Size() const;
  // Requires for both: 0 <= index < Size(). Valid until this object changes.
  const std::string& Name(std::int32_t index) const;
  const std::vector<std::string>& Values(std::int32_t index) const;
  // A name that is there already gets the new values.
  void Add(std::string_view name, std::vector<std::string> values);

  friend HOST_API bool operator==(const DatasourceAttributes& left, const DatasourceAttributes& right);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// The labels of values, all numbers or all texts (trailing blanks of a text are no part of it). Walked in ascending
// order of the values. A value type: copies are independent. Equality: the same values with the same labels.
class HOST_API VRIX_ValueLabelMap {
 public:
  // For variables of this type: 0 for numbers, else a string width in bytes.
  explicit VRIX_ValueLabelMap(std::int32_t type);
  VRIX_ValueLabelMap(const VRIX_ValueLabelMap&);  // the copy has no references counted
  VRIX_ValueLabelMap& operator=(const VRIX_ValueLabelMap&) = delete;
  ~VRIX_ValueLabelMap();

  void Add(double value, std::string_view label);  // a value that is there already gets the new label
  void Add(std::string_view value, std::string_view label);

  // Puts the walk before the first pair.
  void Reset();
  // The next pair of the walk; false when there is none. The label belongs to the map.
  bool GetNextPair(double& value, const std::string*& label);
  bool GetNextPair(std::string& value, const std::string*& label);
  // The label of a value, or null. It belongs to the map.
  const std::string* GetLabel(double value) const;
  const std::string* GetLabel(std::string_view value) const;

  void Retain();
  void Release();

  friend HOST_API bool operator==(const VRIX_ValueLabelMap& left, const VRIX_ValueLabelMap& right);

 private:
  struct State;
  std::unique_ptr<State> state_;
  std::int32_t references_ = 0;
};

// One variable of a dictionary. It belongs to its source and lives as long as that.
class HOST_API VRIX_Variable {
 public:
  virtual ~VRIX_Variable();

  virtual const std::string& GetName() const = 0;
  // 0 for a number, else the string's width in bytes.
  virtual std::int32_t GetType() const = 0;
  virtual void GetFormatEx(FormatType& type, std::int32_t& width, std::int32_t& decimals) const = 0;
  virtual VRIX_Variable_Enumerations::MeasurementLevel GetMeasurementLevel() const = 0;
  // Null when the variable has no label.
  virtual const std::string* GetLabel() const = 0;
  // Not valid when the variable has no value labels.
  virtual RefCountPtr<VRIX_ValueLabelMap> GetValueLabels() const = 0;
  // How many user-missing values there are: 0 to 3 discrete ones; -2 a range (low, high); -3 a range and a discrete
  // value. -1 and everything else: not known. The values belong to the variable; unused ones are null.
  virtual std::int32_t GetMissingValues(const OBS*& first, const OBS*& second, const OBS*& third) const = 0;
  virtual std::int32_t GetDisplayWidth() const = 0;
  virtual VRIX_Variable_Enumerations::Alignment GetAlignment() const = 0;
  virtual VRIX_Variable_Enumerations::Role GetRole() const = 0;
  virtual const DatasourceAttributes& GetAttributes() const = 0;

  // For a variable that MakeVariable has just made.
  virtual void SetName(std::string_view name) = 0;
  virtual void SetFormat(FormatType type, std::int32_t width, std::int32_t decimals) = 0;
  virtual void SetMeasurementLevel(VRIX_Variable_Enumerations::MeasurementLevel level) = 0;
  virtual void SetLabel(std::string_view label) = 0;
  virtual void AddValueLabel(double value, std::string_view label) = 0;
};

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

// A dataset or data file as a user names it in a command. Not valid before Init succeeded.
class HOST_API UserCaseFileSpec {
 public:
  UserCaseFileSpec();
  UserCaseFileSpec(const UserCaseFileSpec&) = delete;
  UserCaseFileSpec& operator=(const UserCaseFileSpec&) = delete;
  ~UserCaseFileSpec();

  // For input: a quoted string is a data file, a word an open dataset's handle, "*" the working file.
  // False when it does not exist; ErrorText() then says so. Nothing is opened.
  bool Init(std::string_view name, bool isQuoted, bool forOutput);
  // For output: a well-formed handle is a dataset, anything else a data file. False when the place cannot be written.
  // An encrypted password was made by the host's own encoder.
  bool Init(std::string_view name, bool isQuoted, bool forOutput, std::string_view password, bool passwordIsEncrypted);

  bool IsValid() const;
  bool IsDataset() const;
  bool IsFile() const;
  bool IsWorkingFile() const;
  // What to show: the handle, or the path as written, lexically cleaned. Valid as long as this object is unchanged.
  const std::string& DocumentationString() const;
  // Why Init failed, in one sentence.
  const std::string& ErrorText() const;

 private:
  friend class UserOutputCaseFile;
  struct State;
  std::unique_ptr<State> state_;
};

// An output opened over a valid specification. A file is written beside its place and moved there by the host when the
// command has ended well. Destroying it without a Close of its source abandons it.
class HOST_API UserOutputCaseFile {
 public:
  // Throws ErrorText when it cannot be opened. Requires: the spec is valid and outlives this object.
  explicit UserOutputCaseFile(const UserCaseFileSpec& spec);
  UserOutputCaseFile(const UserOutputCaseFile&) = delete;
  UserOutputCaseFile& operator=(const UserOutputCaseFile&) = delete;
  ~UserOutputCaseFile();

  // Belongs to this object.
  VRIX_DataSource& GetDataSource() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Told of trouble in a file that can still be read. A procedure may pass none.
class FileErrorMonitor;

// Opens data files.
class HOST_API SystemFileDataSource {
 public:
  // The file as a source, owned by the caller and deleted through its virtual destructor. The password may be empty.
  // Throws ErrorText when the file cannot be opened.
  static VRIX_DataSource* GetSystemFile(std::string_view path, std::string_view password, bool forReading,
                                        FileErrorMonitor* monitor);
};
