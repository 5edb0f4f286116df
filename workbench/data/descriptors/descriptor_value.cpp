#include "workbench/data/descriptors/descriptor_value.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "workbench/text/nearest_word.h"
#include "workbench/text/wording.h"

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

// The pattern sets the last word behind those before it.
std::string listed(const std::vector<std::string>& words, std::string_view pattern) {
  std::string text;
  for (std::size_t index = 0; index < words.size(); ++index) {
    const std::string word = fmt::format("\"{}\"", words[index]);
    if (index == 0) {
      text = word;
    } else {
      text = index + 1 == words.size() ? text::sentence(pattern, {text, word}) : text + ", " + word;
    }
  }
  return text;
}

}  // namespace

DescriptorValue::DescriptorValue(const JsonDocument& document, DescriptorFindings& findings)
    : document_(&document),
      findings_(&findings),
      json_(document.root.get()),
      subject_(text::sentence("The descriptor")) {}

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
  reject("^1 is ^2, and has to be a text.", {kind()}, "Write a text in quotes.");
  return std::nullopt;
}

std::optional<std::string> DescriptorValue::textWithoutNul() const {
  std::optional<std::string> written = text();
  if (!written || written->find('\0') == std::string::npos) return written;
  reject("^1 holds a NUL character.", "Remove it.");
  return std::nullopt;
}

std::optional<bool> DescriptorValue::truth() const {
  if (isTruth()) return json_->get<bool>();
  reject("^1 is ^2, and has to be true or false.", {kind()}, "Write one of them, without quotes.");
  return std::nullopt;
}

std::optional<double> DescriptorValue::number() const {
  if (!isNumber()) {
    reject("^1 is ^2, and has to be a number.", {kind()}, "Write a number without quotes.");
    return std::nullopt;
  }
  if (document_->roundedNumbers.contains(place_) || (json_->is_number_integer() && !wholeNumberOf(*json_))) {
    reject("^1 is a number that no double holds as it is written.",
           "Write one of at most 15 digits, a whole one up to 2^53.");
    return std::nullopt;
  }
  return json_->get<double>();
}

std::optional<std::int64_t> DescriptorValue::wholeNumber(std::int64_t least, std::int64_t most) const {
  const std::optional<std::int64_t> whole = isNumber() ? wholeNumberOf(*json_) : std::nullopt;
  if (whole && *whole >= least && *whole <= most) return whole;
  const bool isOpen = most >= largestExactInteger;
  const std::string first = fmt::to_string(least);
  const std::string last = fmt::to_string(most);
  constexpr std::string_view remedy = "Write such a number without quotes.";
  if (isNumber() && isOpen) {
    reject("^1 is not a whole number of ^2 or more.", {first}, remedy);
  } else if (isNumber()) {
    reject("^1 is not a whole number of ^2 to ^3.", {first, last}, remedy);
  } else if (isOpen) {
    reject("^1 is ^2, and has to be a whole number of ^3 or more.", {kind(), first}, remedy);
  } else {
    reject("^1 is ^2, and has to be a whole number of ^3 to ^4.", {kind(), first, last}, remedy);
  }
  return std::nullopt;
}

std::optional<std::vector<DescriptorValue>> DescriptorValue::list() const {
  if (!isList()) {
    reject("^1 is ^2, and has to be a list.", {kind()}, "Put it into brackets, even a single entry.");
    return std::nullopt;
  }
  std::vector<DescriptorValue> entries;
  entries.reserve(json_->size());
  const std::string subject =
      place_.empty() ? text::sentence("An entry") : text::sentence("An entry of ^1", {subject_});
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
  reject("^1 is ^2, and has to be an object.", {kind()}, "Put its properties into braces.");
  return std::nullopt;
}

void DescriptorValue::reject(std::string_view what, std::initializer_list<std::string_view> items,
                             std::string_view remedy) const {
  const auto item = [&](std::size_t index) { return index < items.size() ? items.begin()[index] : std::string_view(); };
  noteProblem(text::sentence(what, {subject_, item(0), item(1), item(2)}), remedy);
}

void DescriptorValue::rejectWith(std::string_view what, std::initializer_list<std::string_view> items,
                                 std::string_view remedy) const {
  noteProblem(text::sentence(what, items), remedy);
}

void DescriptorValue::noteProblem(std::string what, std::string_view remedy) const {
  const std::string where = place_.empty() ? document_->path : fmt::format("{}, {}", document_->path, place_);
  findings_->reject({std::move(what), where, text::sentence(remedy)});
}

std::string DescriptorValue::shown() const { return json_->dump(); }

std::string DescriptorValue::kind() const {
  if (isText()) return text::sentence("a text");
  if (isTruth()) return json_->get<bool>() ? "true" : "false";
  if (isNumber()) return text::sentence("a number");
  if (isList()) return text::sentence("a list");
  return isObject() ? text::sentence("an object") : "null";
}

std::optional<std::size_t> DescriptorValue::wordIndex(const std::vector<std::string>& words) const {
  const std::optional<std::string> written = text();
  if (!written) return std::nullopt;
  const auto found = std::find(words.begin(), words.end(), *written);
  if (found != words.end()) return static_cast<std::size_t>(found - words.begin());
  if (words.size() == 1) {
    reject("^1 is \"^2\", and has to be ^3.", {*written, listedOr(words)},
           remedyWithHint("Write this word.", *written, words));
  } else {
    reject("^1 is \"^2\", and has to be one of ^3.", {*written, listedOr(words)},
           remedyWithHint("Write one of these words.", *written, words));
  }
  return std::nullopt;
}

std::optional<DescriptorValue> DescriptorObject::at(std::string_view name) const {
  const auto found = value_.json_->find(name);
  if (found == value_.json_->end()) return std::nullopt;
  return DescriptorValue(value_, *found, pointerTo(value_.place_, name), fmt::format("\"{}\"", name));
}

std::optional<DescriptorValue> DescriptorObject::required(std::string_view name) const {
  std::optional<DescriptorValue> member = at(name);
  if (!member) value_.reject("^1 has no \"^2\".", {name}, text::sentence("Add \"^1\".", {name}));
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
    const std::string parts = text::sentence("Its parts are ^1.", {listedAnd(words)});
    member.reject("^1 is no part of ^2.", {value_.subject_}, remedyWithHint(parts, name, words));
    return;
  }
}

std::string listedOr(const std::vector<std::string>& words) { return listed(words, "^1 or ^2"); }

std::string listedAnd(const std::vector<std::string>& words) { return listed(words, "^1 and ^2"); }

std::string remedyWithHint(std::string_view remedy, std::string_view word, const std::vector<std::string>& known) {
  std::string all = text::sentence(remedy);
  if (const std::optional<std::string> nearest = text::nearestWord(word, known)) {
    all += " " + text::sentence("Did you mean ^1?", {fmt::format("\"{}\"", *nearest)});
  }
  return all;
}

}  // namespace workbench::data
