#include "procedures/profile/change_counts.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <tuple>

namespace profile {

namespace {

constexpr std::size_t prefix = sizeof(std::uint32_t);
constexpr std::size_t bytesBesideKey = 96;  // of an entry, generously

std::string_view withoutTrailingBlanks(std::string_view text) { return text.substr(0, text.find_last_not_of(' ') + 1); }

std::string_view bytesOf(const double& number) { return {reinterpret_cast<const char*>(&number), sizeof number}; }

}  // namespace

double numberOf(const std::string& bytes) {
  double number = 0;
  std::memcpy(&number, bytes.data(), sizeof number);
  return number;
}

void ChangeCounts::add(double from, double to) {
  areNumbers_ = true;
  key_.assign(prefix, '\0').append(bytesOf(from)).append(bytesOf(to));
  count(sizeof from);
}

void ChangeCounts::add(std::string_view from, std::string_view to) {
  const std::string_view before = withoutTrailingBlanks(from);
  key_.assign(prefix, '\0').append(before).append(withoutTrailingBlanks(to));
  count(before.size());
}

void ChangeCounts::count(std::size_t fromSize) {
  ++total_;
  const auto size = static_cast<std::uint32_t>(fromSize);
  std::memcpy(key_.data(), &size, prefix);
  const auto known = counts_.find(std::string_view(key_));
  if (known != counts_.end()) {
    ++known->second;
    return;
  }
  const std::size_t bytes = key_.size() + bytesBesideKey;
  if (counts_.size() >= memory_->changesOfVariable || memory_->bytesLeft < bytes) {
    ++unkept_;
    return;
  }
  memory_->bytesLeft -= bytes;
  counts_.emplace(key_, 1);
}

std::vector<Change> ChangeCounts::mostFrequent(std::size_t most) const {
  std::vector<Change> changes;
  changes.reserve(counts_.size());
  for (const auto& [key, times] : counts_) {
    std::uint32_t fromSize = 0;
    std::memcpy(&fromSize, key.data(), prefix);
    changes.push_back({key.substr(prefix, fromSize), key.substr(prefix + fromSize), times});
  }
  const auto end = changes.begin() + static_cast<std::ptrdiff_t>(std::min(most, changes.size()));
  std::partial_sort(changes.begin(), end, changes.end(),
                    [this](const Change& left, const Change& right) { return isBefore(left, right); });
  changes.erase(end, changes.end());
  return changes;
}

bool ChangeCounts::isBefore(const Change& left, const Change& right) const {
  if (left.count != right.count) return left.count > right.count;
  if (!areNumbers_) return std::tie(left.from, left.to) < std::tie(right.from, right.to);
  const auto values = [](const Change& change) {
    const double from = numberOf(change.from);
    const double to = numberOf(change.to);
    // Zeros of different signs are different values.
    return std::tuple(from, !std::signbit(from), to, !std::signbit(to));
  };
  return values(left) < values(right);
}

}  // namespace profile
