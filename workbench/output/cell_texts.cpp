// The texts of host/output.h: BpCellText and its kinds, and annotations.
#include <fmt/format.h>

#include <string>
#include <utility>

#include "host/messages.h"
#include "host/output.h"
#include "workbench/output/call_text.h"
#include "workbench/output/text_access.h"
#include "workbench/output/text_state.h"
#include "workbench/output/value_variables.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/wording.h"

namespace {

using workbench::journal;
using workbench::output::CompositeText;
using workbench::output::ListText;
using workbench::output::NumberText;
using workbench::output::StringText;
using workbench::output::Text;
using workbench::output::ValueText;
using workbench::output::VariableText;
using workbench::text::sentence;

std::unique_ptr<bp::TextState> stateOf(auto held) { return std::make_unique<bp::TextState>(Text{std::move(held)}); }

VariableText variableText(const VRIX_Variable& variable, BpVariableShow show) {
  const workbench::Journal::Pause pause(journal());  // what the host asks of a variable is no call of the procedure
  const std::string* label = variable.GetLabel();
  return {variable.GetName(), label != nullptr ? std::optional(*label) : std::nullopt, show};
}

ValueText valueText(const VRIX_Variable& variable, std::variant<double, std::string> value, BpValueShow show) {
  const workbench::Journal::Pause pause(journal());
  ValueText text{workbench::output::valueVariableOf(variable), std::move(value), std::nullopt, show};
  const bool isNumber = text.value.index() == 0;
  if (isNumber != (variable.GetType() == 0)) return text;  // labels are kept for values of the variable's own kind
  const RefCountPtr<VRIX_ValueLabelMap> labels = variable.GetValueLabels();
  if (!labels.IsValid()) return text;
  const std::string* label =
      isNumber ? labels->GetLabel(std::get<double>(text.value)) : labels->GetLabel(std::get<std::string>(text.value));
  if (label != nullptr) text.label = *label;
  return text;
}

std::string withoutTrailingBlanks(std::string_view text) {
  return std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

std::string nameOf(const BpCellText& text) { return journal().nameOf(&text, className(bp::TextAccess::of(text).text)); }

}  // namespace

namespace workbench::output {

const Text& textOf(const BpCellText& text) {
  const bp::TextState& state = bp::TextAccess::of(text);
  if (!state.isFinished) {
    throw ErrorText(text::sentence("The composite text \"^1\" was used before it was finished: call Finish first.",
                                   {std::get<CompositeText>(state.text.held).pattern}));
  }
  return state.text;
}

}  // namespace workbench::output

BpCellText::BpCellText(std::unique_ptr<bp::TextState> state) : state_(std::move(state)) {
  if (!journal().isOn()) return;
  const std::string name = journal().created(this, className(state_->text));
  journal().line(fmt::format("{} = {}", name, asCall(state_->text)));
}

BpCellText::BpCellText(const BpCellText& other) : state_(std::make_unique<bp::TextState>(*other.state_)) {
  state_->annotation = 0;
  if (!journal().isOn()) return;
  const std::string_view type = className(state_->text);
  const std::string name = journal().created(this, type);
  journal().line(fmt::format("{} = {}({})", name, type, nameOf(other)));
}

BpCellText::~BpCellText() {
  if (journal().isOn()) journal().destroyed(this);
}

std::unique_ptr<BpCellText> BpCellText::Replicate() const {
  const Text& text = workbench::output::textOf(*this);
  if (journal().isOn()) journal().line(nameOf(*this) + ".Replicate()");
  // What the state holds follows from the class, so the class follows from it. A list is never a text of its own.
  if (std::holds_alternative<StringText>(text.held)) {
    return std::make_unique<BpString>(static_cast<const BpString&>(*this));
  }
  if (std::holds_alternative<NumberText>(text.held)) {
    return std::make_unique<BpNumber>(static_cast<const BpNumber&>(*this));
  }
  if (std::holds_alternative<VariableText>(text.held)) {
    return std::make_unique<BpVariable>(static_cast<const BpVariable&>(*this));
  }
  if (std::holds_alternative<ValueText>(text.held)) {
    return std::make_unique<BpDataValue>(static_cast<const BpDataValue&>(*this));
  }
  return std::make_unique<BpComposite>(static_cast<const BpComposite&>(*this));
}

BpString::BpString(std::string_view text, bool translate)
    : BpCellText(stateOf(StringText{std::string(text), translate})) {}
BpString::~BpString() = default;

BpNumber::BpNumber(double value, BpFormat format) : BpCellText(stateOf(NumberText{value, format})) {}
BpNumber::~BpNumber() = default;

BpVariable::BpVariable(const VRIX_Variable& variable, BpVariableShow show)
    : BpCellText(stateOf(variableText(variable, show))) {}
BpVariable::~BpVariable() = default;

BpDataValue::BpDataValue(const VRIX_Variable& variable, double number, BpValueShow show)
    : BpCellText(stateOf(valueText(variable, number, show))) {}
BpDataValue::BpDataValue(const VRIX_Variable& variable, std::string_view text, BpValueShow show)
    : BpCellText(stateOf(valueText(variable, withoutTrailingBlanks(text), show))) {}
BpDataValue::~BpDataValue() = default;

namespace {

CompositeText& openComposite(bp::TextState& state, std::string_view call) {
  CompositeText& composite = std::get<CompositeText>(state.text.held);
  if (state.isFinished) {
    throw ErrorText(
        sentence("^1 was called on the composite text \"^2\" after it had been finished.", {call, composite.pattern}));
  }
  return composite;
}

}  // namespace

BpComposite::BpComposite(std::string_view pattern, bool translate)
    : BpCellText(stateOf(CompositeText{std::string(pattern), translate, {}})) {
  state().isFinished = false;
}
BpComposite::~BpComposite() = default;

void BpComposite::Add(const BpCellText& item) {
  const Text& text = workbench::output::textOf(item);
  CompositeText& composite = openComposite(state(), "Add");
  if (journal().isOn()) journal().line(fmt::format("{}.Add({})", nameOf(*this), asArgument(text)));
  std::vector<Text>& target =
      state().isSublistOpen ? std::get<ListText>(composite.items.back().held).items : composite.items;
  target.push_back(text);
}

void BpComposite::Sublist() {
  CompositeText& composite = openComposite(state(), "Sublist");
  if (journal().isOn()) journal().line(nameOf(*this) + ".Sublist()");
  if (state().isSublistOpen) {
    throw ErrorText(sentence("A sublist of the composite text \"^1\" was opened within another: call EndSublist first.",
                             {composite.pattern}));
  }
  composite.items.push_back(Text{ListText{}});
  state().isSublistOpen = true;
}

void BpComposite::EndSublist() {
  const CompositeText& composite = openComposite(state(), "EndSublist");
  if (journal().isOn()) journal().line(nameOf(*this) + ".EndSublist()");
  if (!state().isSublistOpen) {
    throw ErrorText(sentence("EndSublist was called on the composite text \"^1\", of which no sublist is open.",
                             {composite.pattern}));
  }
  state().isSublistOpen = false;
}

void BpComposite::Finish() {
  const CompositeText& composite = openComposite(state(), "Finish");
  if (journal().isOn()) journal().line(nameOf(*this) + ".Finish()");
  if (state().isSublistOpen) {
    throw ErrorText(
        sentence("The composite text \"^1\" was finished while its sublist was open: call EndSublist first.",
                 {composite.pattern}));
  }
  state().isFinished = true;
}

BpAnnotation::BpAnnotation(std::unique_ptr<BpCellText> text) : text_(std::move(text)) {
  static std::uint64_t lastAnnotation = 0;
  if (text_ == nullptr) throw ErrorText(sentence("An annotation was made without a text."));
  bp::TextAccess::of(*text_).annotation = ++lastAnnotation;
  if (!journal().isOn()) return;
  const std::string name = journal().created(this, "BpAnnotation");
  journal().line(fmt::format("{} = BpAnnotation({})", name, nameOf(*text_)));
}

BpAnnotation::~BpAnnotation() {
  if (journal().isOn()) journal().destroyed(this);
}
