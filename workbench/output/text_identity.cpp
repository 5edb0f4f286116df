#include "workbench/output/text_identity.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>
#include <string_view>

namespace workbench::output {
namespace {

std::uint64_t bitsOf(double value) { return std::bit_cast<std::uint64_t>(value); }

bool areSame(const StringText& left, const StringText& right) {
  return left.translate == right.translate && left.key == right.key;
}

bool areSame(const NumberText& left, const NumberText& right) { return bitsOf(left.value) == bitsOf(right.value); }

bool areSame(const VariableText& left, const VariableText& right) { return left.name == right.name; }

bool areSame(const ValueText& left, const ValueText& right) {
  if (left.variable != right.variable && left.variable->name != right.variable->name) return false;
  const double* number = std::get_if<double>(&left.value);
  const double* otherNumber = std::get_if<double>(&right.value);
  if (number != nullptr && otherNumber != nullptr) return bitsOf(*number) == bitsOf(*otherNumber);
  return left.value == right.value;
}

bool areSame(const std::vector<Text>& left, const std::vector<Text>& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), haveSameIdentity);
}

bool areSame(const CompositeText& left, const CompositeText& right) {
  return left.translate == right.translate && left.pattern == right.pattern && areSame(left.items, right.items);
}

bool areSame(const ListText& left, const ListText& right) { return areSame(left.items, right.items); }

std::size_t hashOf(std::string_view text) { return std::hash<std::string_view>{}(text); }
std::size_t hashOf(double value) { return std::hash<std::uint64_t>{}(bitsOf(value)); }
std::size_t hashOf(const std::string& text) { return hashOf(std::string_view(text)); }

std::size_t combined(std::size_t left, std::size_t right) {
  return left ^ (right + 0x9e3779b97f4a7c15ULL + (left << 6) + (left >> 2));
}

std::size_t hashOf(const std::vector<Text>& items) {
  std::size_t hash = items.size();
  for (const Text& item : items) hash = combined(hash, identityHash(item));
  return hash;
}

std::size_t hashOf(const StringText& text) { return hashOf(text.key); }
std::size_t hashOf(const NumberText& text) { return hashOf(text.value); }
std::size_t hashOf(const VariableText& text) { return hashOf(text.name); }
std::size_t hashOf(const ValueText& text) {
  return combined(hashOf(text.variable->name), std::visit([](const auto& value) { return hashOf(value); }, text.value));
}
std::size_t hashOf(const CompositeText& text) { return combined(hashOf(text.pattern), hashOf(text.items)); }
std::size_t hashOf(const ListText& text) { return hashOf(text.items); }

}  // namespace

bool haveSameIdentity(const Text& left, const Text& right) {
  if (left.held.index() != right.held.index()) return false;
  return std::visit([&](const auto& held) { return areSame(held, std::get<std::decay_t<decltype(held)>>(right.held)); },
                    left.held);
}

std::size_t identityHash(const Text& text) {
  return combined(text.held.index(), std::visit([](const auto& held) { return hashOf(held); }, text.held));
}

}  // namespace workbench::output
