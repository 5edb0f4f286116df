// DatasourceAttributes. Most variables have none, so an empty one holds no state.
#include <algorithm>
#include <cassert>
#include <utility>

#include "host/data.h"

struct DatasourceAttributes::State {
  std::vector<std::pair<std::string, std::vector<std::string>>> named;
};

DatasourceAttributes::DatasourceAttributes() = default;

DatasourceAttributes::DatasourceAttributes(const DatasourceAttributes& other)
    : state_(other.state_ ? std::make_unique<State>(*other.state_) : nullptr) {}

DatasourceAttributes& DatasourceAttributes::operator=(const DatasourceAttributes& other) {
  if (this != &other) state_ = other.state_ ? std::make_unique<State>(*other.state_) : nullptr;
  return *this;
}

DatasourceAttributes::~DatasourceAttributes() = default;

std::int32_t DatasourceAttributes::Size() const { return state_ ? static_cast<std::int32_t>(state_->named.size()) : 0; }

const std::string& DatasourceAttributes::Name(std::int32_t index) const {
  assert(index >= 0 && index < Size());  // the caller's part of the contract
  return state_->named[static_cast<std::size_t>(index)].first;
}

const std::vector<std::string>& DatasourceAttributes::Values(std::int32_t index) const {
  assert(index >= 0 && index < Size());  // the caller's part of the contract
  return state_->named[static_cast<std::size_t>(index)].second;
}

void DatasourceAttributes::Add(std::string_view name, std::vector<std::string> values) {
  if (!state_) state_ = std::make_unique<State>();
  const auto known = std::find_if(state_->named.begin(), state_->named.end(),
                                  [name](const auto& entry) { return entry.first == name; });
  if (known != state_->named.end()) {
    known->second = std::move(values);
  } else {
    state_->named.emplace_back(name, std::move(values));
  }
}

bool operator==(const DatasourceAttributes& left, const DatasourceAttributes& right) {
  if (left.Size() != right.Size()) return false;
  if (left.Size() == 0) return true;
  // Names are unique on either side, so equal sizes and every name of one side found in the other is enough.
  return std::all_of(left.state_->named.begin(), left.state_->named.end(), [&right](const auto& entry) {
    return std::any_of(right.state_->named.begin(), right.state_->named.end(),
                       [&entry](const auto& other) { return entry == other; });
  });
}
