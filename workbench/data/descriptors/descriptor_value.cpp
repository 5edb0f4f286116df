#include "workbench/data/descriptors/descriptor_value.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "workbench/text/nearest_word.h"

namespace workbench::data {
namespace {

constexpr std::int64_t largestExactInteger = std::int64_t{1} << 53;

// Nothing when the number is not whole or beyond what doubles tell apart. JSON knows one kind of numbers: 3 and 3.0 are
// the same.
std::optional<std::int64_t> wholeNumberOf(const Json& json) {
  if (json.is_number_float()) {
    const double number = json.get<double>();
    if (number != std::floor(number) || std::fabs(number) > static_cast<double>(largestExactInteger)) {
      return std::nullopt;
    }
    return static_cast<std::int64_t>(number);
  }
  if (json.is_number_unsigned() && json.get<std::uint64_t>() > static_cast<std::uint64_t>(largestExactInteger)) {
    return std::nullopt;
  }
  const auto number = json.get<std::int64_t>();
  if (number < -largestExactInteger || number > largestExactInteger) return std::nullopt;
  return number;
}

}  // namespace

DescriptorValue::DescriptorValue(const JsonDocument& document, DescriptorFindings& findings)
    : document_(&document), findings_(&findings), json_(document.root.get()), subject_("The descriptor") {}

DescriptorValue::DescriptorValue(const DescriptorValue& parent, const Json& json, std::string place,
                                 std::string subject)
    : document_(parent.document_),
      findings_(parent.findings_),
      json_(&json),
      place_(std::move(place)),
      subject_(std::move(subject)) {}

bool DescriptorValue::isText() const { return json_->is_string(); }
bool DescriptorValue::isTruth() const { return json_->is_boolean(); }
bool DescriptorValue::isNumber() const { return json_->is_number(); }
bool DescriptorValue::isList() const { return json_->is_array(); }
bool DescriptorValue::isObject() const { return json_->is_object(); }
bool DescriptorValue::isNull() const { return json_->is_null(); }

std::optional<std::string> DescriptorValue::text() const {
  if (isText()) return json_->get<std::string>();
  reject(fmt::format("is {}, and has to be a text.", kind()), "Write a text in quotes.");
  return std::nullopt;
}

std::optional<std::string> DescriptorValue::textWithoutNul() const {
  std::optional<std::string> written = text();
  if (!written || written->find('\0') == std::string::npos) return written;
  reject("holds a NUL character.", "Remove it.");
  return std::nullopt;
}

std::optional<bool> DescriptorValue::truth() const {
  if (isTruth()) return json_->get<bool>();
  reject(fmt::format("is {}, and has to be true or false.", kind()), "Write one of them, without quotes.");
  return std::nullopt;
}

std::optional<double> DescriptorValue::number() const {
  if (!isNumber()) {
    reject(fmt::format("is {}, and has to be a number.", kind()), "Write a number without quotes.");
    return std::nullopt;
  }
  if (document_->roundedNumbers.contains(place_) || (json_->is_number_integer() && !wholeNumberOf(*json_))) {
    reject("is a number that no double holds as it is written.",
           "Write one of at most 15 digits, a whole one up to 2^53.");
    return std::nullopt;
  }
  return json_->get<double>();
}

std::optional<std::int64_t> DescriptorValue::wholeNumber(std::int64_t least, std::int64_t most) const {
  const std::optional<std::int64_t> whole = isNumber() ? wholeNumberOf(*json_) : std::nullopt;
  if (whole && *whole >= least && *whole <= most) return whole;
  const std::string range =
      most >= largestExactInteger ? fmt::format("{} or more", least) : fmt::format("{} to {}", least, most);
  reject(fmt::format("{} a whole number of {}.", isNumber() ? "is not" : fmt::format("is {}, and has to be", kind()),
                     range),
         "Write such a number without quotes.");
  return std::nullopt;
}

std::optional<std::vector<DescriptorValue>> DescriptorValue::list() const {
  if (!isList()) {
    reject(fmt::format("is {}, and has to be a list.", kind()), "Put it into brackets, even a single entry.");
    return std::nullopt;
  }
  std::vector<DescriptorValue> entries;
  entries.reserve(json_->size());
  const std::string subject = place_.empty() ? "An entry" : fmt::format("An entry of {}", subject_);
  for (std::size_t index = 0; index < json_->size(); ++index) {
    entries.push_back({*this, (*json_)[index], pointerTo(place_, index), subject});
  }
  return entries;
}

std::optional<std::vector<std::string>> DescriptorValue::texts() const {
  const auto entries = list();
  if (!entries) return std::nullopt;
  std::vector<std::string> all;
  for (const DescriptorValue& entry : *entries) {
    std::optional<std::string> written = entry.text();
    if (!written) return std::nullopt;
    all.push_back(*std::move(written));
  }
  return all;
}

std::optional<DescriptorObject> DescriptorValue::object() const {
  if (isObject()) return DescriptorObject(*this);
  reject(fmt::format("is {}, and has to be an object.", kind()), "Put its properties into braces.");
  return std::nullopt;
}

void DescriptorValue::reject(const std::string& what, const std::string& remedy) const {
  rejectWith(fmt::format("{} {}", subject_, what), remedy);
}

void DescriptorValue::rejectWith(std::string sentence, std::string remedy) const {
  const std::string where = place_.empty() ? document_->path : fmt::format("{}, {}", document_->path, place_);
  findings_->reject({std::move(sentence), where, std::move(remedy)});
}

std::string DescriptorValue::shown() const { return json_->dump(); }

std::string DescriptorValue::kind() const {
  if (isText()) return "a text";
  if (isTruth()) return json_->get<bool>() ? "true" : "false";
  if (isNumber()) return "a number";
  if (isList()) return "a list";
  return isObject() ? "an object" : "null";
}

std::optional<std::size_t> DescriptorValue::wordIndex(const std::vector<std::string>& words) const {
  const std::optional<std::string> written = text();
  if (!written) return std::nullopt;
  const auto found = std::find(words.begin(), words.end(), *written);
  if (found != words.end()) return static_cast<std::size_t>(found - words.begin());
  const bool isOnly = words.size() == 1;
  reject(fmt::format("is \"{}\", and has to be {}{}.", *written, isOnly ? "" : "one of ", listed(words)),
         (isOnly ? "Write this word." : "Write one of these words.") + nearestHint(*written, words));
  return std::nullopt;
}

std::optional<DescriptorValue> DescriptorObject::at(std::string_view name) const {
  const auto found = value_.json_->find(name);
  if (found == value_.json_->end()) return std::nullopt;
  return DescriptorValue(value_, *found, pointerTo(value_.place_, name), fmt::format("\"{}\"", name));
}

std::optional<DescriptorValue> DescriptorObject::required(std::string_view name) const {
  std::optional<DescriptorValue> member = at(name);
  if (!member) value_.reject(fmt::format("has no \"{}\".", name), fmt::format("Add \"{}\".", name));
  return member;
}

std::vector<std::pair<std::string, DescriptorValue>> DescriptorObject::members() const {
  std::vector<std::pair<std::string, DescriptorValue>> all;
  for (const auto& [name, json] : value_.json_->items()) {
    all.emplace_back(name, DescriptorValue(value_, json, pointerTo(value_.place_, name), fmt::format("\"{}\"", name)));
  }
  return all;
}

void DescriptorObject::rejectOthers(const std::vector<std::string_view>& known) const {
  for (const auto& [name, member] : members()) {
    if (std::find(known.begin(), known.end(), name) != known.end()) continue;
    const std::vector<std::string> words(known.begin(), known.end());
    member.reject(fmt::format("is no part of {}.", value_.subject_),
                  fmt::format("Its parts are {}.{}", listed(words, "and"), nearestHint(name, words)));
    return;
  }
}

std::string listed(const std::vector<std::string>& words, std::string_view last) {
  std::string text;
  for (std::size_t index = 0; index < words.size(); ++index) {
    if (index != 0) text += index + 1 == words.size() ? fmt::format(" {} ", last) : ", ";
    text += fmt::format("\"{}\"", words[index]);
  }
  return text;
}

std::string nearestHint(std::string_view word, const std::vector<std::string>& known) {
  const std::optional<std::string> nearest = text::nearestWord(word, known);
  return nearest ? fmt::format(" Did you mean \"{}\"?", *nearest) : "";
}

}  // namespace workbench::data
