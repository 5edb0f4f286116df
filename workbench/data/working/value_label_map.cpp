// VRIX_ValueLabelMap: numbers by value, texts by their bytes without trailing blanks.
#include <map>
#include <optional>

#include "host/data.h"
#include "workbench/data/working/refusal.h"

namespace {

std::string_view withoutTrailingBlanks(std::string_view text) {
  const std::size_t last = text.find_last_not_of(' ');
  return last == std::string_view::npos ? std::string_view() : text.substr(0, last + 1);
}

// A walk remembers the value it stands on, not a place in the map: pairs may be added while it is under way.
template <class Value>
struct WalkedLabels {
  std::map<Value, std::string, std::less<>> labels;
  std::optional<Value> current;

  bool next(Value& value, const std::string*& label) {
    const auto following = current ? labels.upper_bound(*current) : labels.begin();
    if (following == labels.end()) return false;
    current = following->first;
    value = following->first;
    label = &following->second;
    return true;
  }
};

}  // namespace

struct VRIX_ValueLabelMap::State {
  bool isNumeric = true;
  WalkedLabels<double> numbers;
  WalkedLabels<std::string> texts;
};

VRIX_ValueLabelMap::VRIX_ValueLabelMap(std::int32_t type) : state_(std::make_unique<State>()) {
  state_->isNumeric = type == 0;
}

VRIX_ValueLabelMap::VRIX_ValueLabelMap(const VRIX_ValueLabelMap& other)
    : state_(std::make_unique<State>(*other.state_)) {
  Reset();
}

VRIX_ValueLabelMap::~VRIX_ValueLabelMap() = default;

void VRIX_ValueLabelMap::Add(double value, std::string_view label) {
  if (!state_->isNumeric)
    workbench::data::refuse("A value label of a string variable belongs to a text, not to a number.");
  state_->numbers.labels[value] = label;
}

void VRIX_ValueLabelMap::Add(std::string_view value, std::string_view label) {
  if (state_->isNumeric)
    workbench::data::refuse("A value label of a numeric variable belongs to a number, not to a text.");
  state_->texts.labels[std::string(withoutTrailingBlanks(value))] = label;
}

void VRIX_ValueLabelMap::Reset() {
  state_->numbers.current.reset();
  state_->texts.current.reset();
}

bool VRIX_ValueLabelMap::GetNextPair(double& value, const std::string*& label) {
  return state_->numbers.next(value, label);
}

bool VRIX_ValueLabelMap::GetNextPair(std::string& value, const std::string*& label) {
  return state_->texts.next(value, label);
}

const std::string* VRIX_ValueLabelMap::GetLabel(double value) const {
  const auto found = state_->numbers.labels.find(value);
  return found == state_->numbers.labels.end() ? nullptr : &found->second;
}

const std::string* VRIX_ValueLabelMap::GetLabel(std::string_view value) const {
  const auto found = state_->texts.labels.find(withoutTrailingBlanks(value));
  return found == state_->texts.labels.end() ? nullptr : &found->second;
}

void VRIX_ValueLabelMap::Retain() { ++references_; }

void VRIX_ValueLabelMap::Release() {
  if (--references_ == 0) delete this;
}

bool operator==(const VRIX_ValueLabelMap& left, const VRIX_ValueLabelMap& right) {
  return left.state_->numbers.labels == right.state_->numbers.labels &&
         left.state_->texts.labels == right.state_->texts.labels;
}
