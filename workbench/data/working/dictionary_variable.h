// DictionaryVariable: one variable of a dictionary as procedures see it.
//
// It holds a copy of what is known of the variable, so that references and texts that a procedure took stay valid while
// other variables are added. Setters are for a variable that MakeVariable has just made: they pass the changed variable
// to an editor first, which may refuse it, and are refused themselves where there is no editor.
#pragma once

#include <cstdint>

#include "host/data.h"
#include "workbench/data/dictionary.h"

namespace workbench::data {

// Takes over what setters change. Throws ErrorText when the change cannot be made.
class VariableEditor {
 public:
  virtual ~VariableEditor() = default;
  virtual void changeVariable(std::int32_t index, const Variable& changed) = 0;
};

class DictionaryVariable final : public VRIX_Variable {
 public:
  // The editor outlives this object; null when the variable cannot be changed.
  DictionaryVariable(Variable variable, std::int32_t index, VariableEditor* editor);
  ~DictionaryVariable() override;

  const Variable& variable() const { return variable_; }

  const std::string& GetName() const override;
  std::int32_t GetType() const override;
  void GetFormatEx(FormatType& type, std::int32_t& width, std::int32_t& decimals) const override;
  VRIX_Variable_Enumerations::MeasurementLevel GetMeasurementLevel() const override;
  const std::string* GetLabel() const override;
  RefCountPtr<VRIX_ValueLabelMap> GetValueLabels() const override;
  std::int32_t GetMissingValues(const OBS*& first, const OBS*& second, const OBS*& third) const override;
  std::int32_t GetDisplayWidth() const override;
  VRIX_Variable_Enumerations::Alignment GetAlignment() const override;
  VRIX_Variable_Enumerations::Role GetRole() const override;
  const DatasourceAttributes& GetAttributes() const override;

  void SetName(std::string_view name) override;
  void SetFormat(FormatType type, std::int32_t width, std::int32_t decimals) override;
  void SetMeasurementLevel(VRIX_Variable_Enumerations::MeasurementLevel level) override;
  void SetLabel(std::string_view label) override;
  void AddValueLabel(double value, std::string_view label) override;

 private:
  template <class Change>
  void edit(Change change);
  template <class... Arguments>
  void journalCall(const char* call, const Arguments&... arguments) const;

  Variable variable_;
  std::int32_t index_;
  VariableEditor* editor_;
  mutable RefCountPtr<VRIX_ValueLabelMap> labels_;  // made when first asked for
};

// A numeric variable (width 0) or a string variable as MakeVariable makes it, with nothing said about it yet.
Variable plainVariable(std::string name, std::int32_t width);

// All that any source says of a variable, as a value.
Variable variableLike(const VRIX_Variable& like);

}  // namespace workbench::data
