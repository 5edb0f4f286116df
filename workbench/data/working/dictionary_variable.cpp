#include "workbench/data/working/dictionary_variable.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "workbench/data/descriptors/missing_codes.h"
#include "workbench/data/working/refusal.h"
#include "workbench/runtime/journal.h"

namespace workbench::data {
namespace {

int numberOf(auto enumeration) { return static_cast<int>(enumeration); }

}  // namespace

DictionaryVariable::DictionaryVariable(Variable variable, std::int32_t index, VariableEditor* editor)
    : variable_(std::move(variable)), index_(index), editor_(editor) {}

DictionaryVariable::~DictionaryVariable() = default;

const std::string& DictionaryVariable::GetName() const {
  journalCall("GetName()");
  return variable_.name;
}

std::int32_t DictionaryVariable::GetType() const {
  journalCall("GetType()");
  return variable_.width;
}

void DictionaryVariable::GetFormatEx(FormatType& type, std::int32_t& width, std::int32_t& decimals) const {
  journalCall("GetFormatEx(type, width, decimals)");
  type = variable_.format.type;
  width = variable_.format.width;
  decimals = variable_.format.decimals;
}

VRIX_Variable_Enumerations::MeasurementLevel DictionaryVariable::GetMeasurementLevel() const {
  journalCall("GetMeasurementLevel()");
  return variable_.level;
}

const std::string* DictionaryVariable::GetLabel() const {
  journalCall("GetLabel()");
  return variable_.label ? &*variable_.label : nullptr;
}

RefCountPtr<VRIX_ValueLabelMap> DictionaryVariable::GetValueLabels() const {
  journalCall("GetValueLabels()");
  if (variable_.numberLabels.empty() && variable_.textLabels.empty()) return {};
  if (!labels_.IsValid()) {
    labels_ = RefCountPtr<VRIX_ValueLabelMap>(new VRIX_ValueLabelMap(variable_.width));
    for (const auto& [value, label] : variable_.numberLabels) labels_->Add(value, label);
    for (const auto& [value, label] : variable_.textLabels) labels_->Add(value, label);
  }
  return labels_;
}

std::int32_t DictionaryVariable::GetMissingValues(const OBS*& first, const OBS*& second, const OBS*& third) const {
  journalCall("GetMissingValues(first, second, third)");
  const MissingValues& missing = variable_.missing;
  const std::size_t used = missingCount(missing.code).value_or(0);
  first = used >= 1 ? &missing.values[0] : nullptr;
  second = used >= 2 ? &missing.values[1] : nullptr;
  third = used >= 3 ? &missing.values[2] : nullptr;
  return missing.code;
}

std::int32_t DictionaryVariable::GetDisplayWidth() const {
  journalCall("GetDisplayWidth()");
  return variable_.displayWidth;
}

VRIX_Variable_Enumerations::Alignment DictionaryVariable::GetAlignment() const {
  journalCall("GetAlignment()");
  return variable_.alignment;
}

VRIX_Variable_Enumerations::Role DictionaryVariable::GetRole() const {
  journalCall("GetRole()");
  return variable_.role;
}

const DatasourceAttributes& DictionaryVariable::GetAttributes() const {
  journalCall("GetAttributes()");
  return variable_.attributes;
}

void DictionaryVariable::SetName(std::string_view name) {
  if (journal().isOn()) journalCall("SetName({})", Journal::quoted(name));
  edit([name](Variable& changed) { changed.name = name; });
}

void DictionaryVariable::SetFormat(FormatType type, std::int32_t width, std::int32_t decimals) {
  journalCall("SetFormat({}, {}, {})", numberOf(type), width, decimals);
  edit([=](Variable& changed) { changed.format = {type, width, decimals}; });
}

void DictionaryVariable::SetMeasurementLevel(VRIX_Variable_Enumerations::MeasurementLevel level) {
  journalCall("SetMeasurementLevel({})", numberOf(level));
  edit([level](Variable& changed) { changed.level = level; });
}

void DictionaryVariable::SetLabel(std::string_view label) {
  if (journal().isOn()) journalCall("SetLabel({})", Journal::quoted(label));
  edit([label](Variable& changed) { changed.label = label; });
}

void DictionaryVariable::AddValueLabel(double value, std::string_view label) {
  if (journal().isOn()) journalCall("AddValueLabel({}, {})", value, Journal::quoted(label));
  if (!variable_.isNumeric()) {
    refuse("The string variable ^1 cannot have a label for the number ^2.", {variable_.name, fmt::to_string(value)});
  }
  edit([value, label](Variable& changed) {
    auto& labels = changed.numberLabels;
    const auto place = std::lower_bound(labels.begin(), labels.end(), value,
                                        [](const auto& entry, double sought) { return entry.first < sought; });
    if (place != labels.end() && place->first == value) {
      place->second = label;
    } else {
      labels.emplace(place, value, label);
    }
  });
  labels_ = {};
}

template <class Change>
void DictionaryVariable::edit(Change change) {
  if (editor_ == nullptr) {
    refuse("The variable ^1 cannot be changed here; only a variable that was just made can be.", {variable_.name});
  }
  Variable changed = variable_;
  change(changed);
  editor_->changeVariable(index_, changed);
  variable_ = std::move(changed);
}

template <class... Arguments>
void DictionaryVariable::journalCall(const char* call, const Arguments&... arguments) const {
  if (!journal().isOn()) return;
  journal().line(fmt::format("VRIX_Variable({}).{}", variable_.name, fmt::format(fmt::runtime(call), arguments...)));
}

Variable plainVariable(std::string name, std::int32_t width) {
  Variable variable;
  variable.name = std::move(name);
  variable.width = width;
  if (width > 0) {
    variable.format = {FormatType::text, width, 0};
    variable.alignment = VRIX_Variable_Enumerations::Alignment::left;
    variable.level = VRIX_Variable_Enumerations::MeasurementLevel::nominal;
  }
  return variable;
}

Variable variableLike(const VRIX_Variable& like) {
  const Journal::Pause pause(journal());  // the procedure asked for one thing: a variable like this
  Variable variable;
  variable.name = like.GetName();
  variable.width = like.GetType();
  like.GetFormatEx(variable.format.type, variable.format.width, variable.format.decimals);
  variable.level = like.GetMeasurementLevel();
  if (const std::string* label = like.GetLabel()) variable.label = *label;
  if (const auto shared = like.GetValueLabels(); shared.IsValid()) {
    VRIX_ValueLabelMap labels(*shared);  // a copy has a walk of its own
    const std::string* label = nullptr;
    if (variable.isNumeric()) {
      for (double value = 0; labels.GetNextPair(value, label);) variable.numberLabels.emplace_back(value, *label);
    } else {
      for (std::string value; labels.GetNextPair(value, label);) variable.textLabels.emplace_back(value, *label);
    }
  }
  const OBS* missing[3] = {};
  variable.missing.code = like.GetMissingValues(missing[0], missing[1], missing[2]);
  for (std::size_t place = 0; place < 3; ++place) {
    if (missing[place] != nullptr) variable.missing.values[place] = *missing[place];
  }
  variable.displayWidth = like.GetDisplayWidth();
  variable.alignment = like.GetAlignment();
  variable.role = like.GetRole();
  variable.attributes = like.GetAttributes();
  return variable;
}

}  // namespace workbench::data
