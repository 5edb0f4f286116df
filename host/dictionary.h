// The host's dictionaries: variables and their properties.
//
// A string variable of width w bytes takes (w + 7) / 8 slots of a case, a number one. Unless a declaration says
// otherwise, what a call cannot do is thrown as ErrorText.
#pragma once

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
