#include "tests/output/fakes.h"

#include <sstream>
#include <utility>

#include "tests/results/results_schema.h"
#include "workbench/output/json_writer.h"
#include "workbench/runtime/current_run.h"

namespace workbench::output {

FakeVariable& FakeVariable::labelled(std::string label) {
  label_ = std::move(label);
  return *this;
}

FakeVariable& FakeVariable::formatted(FormatType format, std::int32_t width, std::int32_t decimals) {
  SetFormat(format, width, decimals);
  return *this;
}

FakeVariable& FakeVariable::valueLabel(double value, std::string_view label) {
  if (!valueLabels_.IsValid()) valueLabels_ = RefCountPtr(new VRIX_ValueLabelMap(type_));
  valueLabels_->Add(value, label);
  return *this;
}

FakeVariable& FakeVariable::valueLabel(std::string_view value, std::string_view label) {
  if (!valueLabels_.IsValid()) valueLabels_ = RefCountPtr(new VRIX_ValueLabelMap(type_));
  valueLabels_->Add(value, label);
  return *this;
}

void FakeVariable::GetFormatEx(FormatType& type, std::int32_t& width, std::int32_t& decimals) const {
  type = format_;
  width = width_;
  decimals = decimals_;
}

VRIX_Variable_Enumerations::MeasurementLevel FakeVariable::GetMeasurementLevel() const {
  return VRIX_Variable_Enumerations::MeasurementLevel::scale;
}

RefCountPtr<VRIX_ValueLabelMap> FakeVariable::GetValueLabels() const { return valueLabels_; }

std::int32_t FakeVariable::GetMissingValues(const OBS*& first, const OBS*& second, const OBS*& third) const {
  first = second = third = nullptr;
  return 0;
}

VRIX_Variable_Enumerations::Alignment FakeVariable::GetAlignment() const {
  return VRIX_Variable_Enumerations::Alignment::right;
}

VRIX_Variable_Enumerations::Role FakeVariable::GetRole() const { return VRIX_Variable_Enumerations::Role::input; }

void FakeVariable::SetFormat(FormatType type, std::int32_t width, std::int32_t decimals) {
  format_ = type;
  width_ = width;
  decimals_ = decimals;
}

RunningCommand::RunningCommand(std::string name) : command_(std::make_unique<Command>()) {
  command_->name = std::move(name);
  currentRun().command = command_.get();
}

RunningCommand::~RunningCommand() {
  currentRun().command = nullptr;
  if (command_ != nullptr) intoDocument();
}

const Table& RunningCommand::table(std::size_t item) const {
  return *std::get<std::unique_ptr<Table>>(command_->items.at(item));
}

Document RunningCommand::intoDocument() {
  Document document;
  document.commands.push_back(std::move(command_));
  if (document.commands.front()->outcome != Command::Outcome::completed) document.verdict = Verdict::trouble;
  std::ostringstream written;
  writeJson(written, document, english());
  tests::expectValidResults(written.str());
  return document;
}

const text::Wording& english() {
  static const std::unique_ptr<text::Wording> wording = std::move(*text::Wording::load("en"));
  return *wording;
}

BpComposite both(const BpCellText& first, const BpCellText& second) {
  BpComposite composite("(1) ^1\n(2) ^2", false);
  composite.Add(first);
  composite.Add(second);
  composite.Finish();
  return composite;
}

}  // namespace workbench::output
