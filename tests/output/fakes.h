// What the tests of the output service stand on: variables that are nowhere, a command that runs, the English wording.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/data.h"
#include "host/output.h"
#include "workbench/output/document.h"
#include "workbench/text/wording.h"

namespace workbench::output {

class FakeVariable final : public VRIX_Variable {
 public:
  explicit FakeVariable(std::string name, std::int32_t type = 0) : name_(std::move(name)), type_(type) {}

  FakeVariable& labelled(std::string label);
  FakeVariable& formatted(FormatType format, std::int32_t width, std::int32_t decimals);
  FakeVariable& valueLabel(double value, std::string_view label);
  FakeVariable& valueLabel(std::string_view value, std::string_view label);

  const std::string& GetName() const override { return name_; }
  std::int32_t GetType() const override { return type_; }
  void GetFormatEx(FormatType& type, std::int32_t& width, std::int32_t& decimals) const override;
  VRIX_Variable_Enumerations::MeasurementLevel GetMeasurementLevel() const override;
  const std::string* GetLabel() const override { return label_ ? &*label_ : nullptr; }
  RefCountPtr<VRIX_ValueLabelMap> GetValueLabels() const override;
  std::int32_t GetMissingValues(const OBS*& first, const OBS*& second, const OBS*& third) const override;
  std::int32_t GetDisplayWidth() const override { return 8; }
  VRIX_Variable_Enumerations::Alignment GetAlignment() const override;
  VRIX_Variable_Enumerations::Role GetRole() const override;
  const DatasourceAttributes& GetAttributes() const override { return attributes_; }
  void SetName(std::string_view name) override { name_ = name; }
  void SetFormat(FormatType type, std::int32_t width, std::int32_t decimals) override;
  void SetMeasurementLevel(VRIX_Variable_Enumerations::MeasurementLevel) override {}
  void SetLabel(std::string_view label) override { label_ = label; }
  void AddValueLabel(double value, std::string_view label) override { valueLabel(value, label); }

 private:
  std::string name_;
  std::int32_t type_;
  std::optional<std::string> label_;
  FormatType format_ = FormatType::number;
  std::int32_t width_ = 8;
  std::int32_t decimals_ = 0;
  RefCountPtr<VRIX_ValueLabelMap> valueLabels_;
  DatasourceAttributes attributes_;
};

// While one lives, its command is the one that runs. When it ends, what was issued has to be a valid results document.
class RunningCommand {
 public:
  explicit RunningCommand(std::string name = "TEST");
  RunningCommand(const RunningCommand&) = delete;
  RunningCommand& operator=(const RunningCommand&) = delete;
  ~RunningCommand();

  Command& operator*() { return *command_; }
  Command* operator->() { return command_.get(); }
  // The table that was opened as the n-th item. Requires: it is a table.
  const Table& table(std::size_t item = 0) const;
  // A document of this command alone; fails the test when it is not valid as JSON.
  Document intoDocument();

 private:
  std::unique_ptr<Command> command_;
};

const text::Wording& english();

inline BpString key(std::string_view text) { return {text, true}; }
inline BpString plain(std::string_view text) { return {text, false}; }
inline BpNumber count(double value) { return {value, BpProcedure::Count()}; }
inline BpNumber percent(double value) { return {value, BpProcedure::Percent()}; }

// A finished composite of two items under "(1) ^1\n(2) ^2".
BpComposite both(const BpCellText& first, const BpCellText& second);

// The message with which the action is refused; "nothing was refused" when it is not.
template <class Action>
std::string refusal(Action action) {
  try {
    action();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "nothing was refused";
}

}  // namespace workbench::output
