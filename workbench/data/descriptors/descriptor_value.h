// DescriptorValue: checked access to a value of a descriptor.
//
// Every question that the value does not answer as expected is a problem that names the property, its place (a JSON
// pointer), what was expected and what to do; it is noted among the findings, and the answer is nothing.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/data/descriptors/findings.h"
#include "workbench/data/descriptors/json_text.h"

namespace workbench::data {

class DescriptorObject;

// A word of a descriptor and what it stands for.
template <class Meaning>
struct WordRow {
  std::string_view word;
  Meaning meaning;
};

// Requires of all objects here: document and findings outlive them.
class DescriptorValue {
 public:
  // The document's outermost value.
  DescriptorValue(const JsonDocument& document, DescriptorFindings& findings);

  bool isText() const;
  bool isTruth() const;
  bool isNumber() const;
  bool isList() const;
  bool isObject() const;
  bool isNull() const;

  std::optional<std::string> text() const;
  // A text that is handed on to where a NUL would end it.
  std::optional<std::string> textWithoutNul() const;
  std::optional<bool> truth() const;
  // Refuses a number that would not be what is written.
  std::optional<double> number() const;
  std::optional<std::int64_t> wholeNumber(std::int64_t least, std::int64_t most) const;
  std::optional<std::vector<DescriptorValue>> list() const;
  std::optional<std::vector<std::string>> texts() const;  // of a list
  std::optional<DescriptorObject> object() const;
  // What the word of the table means that this text is.
  template <class Meaning, std::size_t size>
  std::optional<Meaning> word(const std::array<WordRow<Meaning>, size>& rows) const;

  // Notes a problem of this value: "`subject` `what`", where the subject is the property's name or its entry.
  void reject(const std::string& what, const std::string& remedy) const;
  // A problem of this place, in a sentence of its own.
  void rejectWith(std::string sentence, std::string remedy) const;
  DescriptorFindings& findings() const { return *findings_; }
  const JsonDocument& document() const { return *document_; }
  std::string shown() const;  // its JSON text

 private:
  friend class DescriptorObject;
  DescriptorValue(const DescriptorValue& parent, const Json& json, std::string place, std::string subject);

  std::string kind() const;  // "a number"
  std::optional<std::size_t> wordIndex(const std::vector<std::string>& words) const;

  const JsonDocument* document_;
  DescriptorFindings* findings_;
  const Json* json_;
  std::string place_;
  std::string subject_;  // what it is called in problems
};

// A value that is an object. Its members are looked at by name; others may be there.
class DescriptorObject {
 public:
  const DescriptorValue& value() const { return value_; }

  // Nothing when there is no such member; a member that is null is there.
  std::optional<DescriptorValue> at(std::string_view name) const;
  bool has(std::string_view name) const { return at(name).has_value(); }
  // A member that must be there.
  std::optional<DescriptorValue> required(std::string_view name) const;
  // All of them, in their order.
  std::vector<std::pair<std::string, DescriptorValue>> members() const;
  // Rejects a member of another name: where no others may be, one would be passed over in silence.
  void rejectOthers(const std::vector<std::string_view>& known) const;

 private:
  friend class DescriptorValue;
  explicit DescriptorObject(DescriptorValue value) : value_(std::move(value)) {}
  DescriptorValue value_;
};

// "a", "b" or "c"
std::string listed(const std::vector<std::string>& words, std::string_view last = "or");

// " Did you mean \"b\"?", or nothing when no word is near.
std::string nearestHint(std::string_view word, const std::vector<std::string>& known);

template <class Meaning, std::size_t size>
std::optional<Meaning> DescriptorValue::word(const std::array<WordRow<Meaning>, size>& rows) const {
  std::vector<std::string> words;
  for (const WordRow<Meaning>& row : rows) words.emplace_back(row.word);
  const std::optional<std::size_t> index = wordIndex(words);
  if (!index) return std::nullopt;
  return rows[*index].meaning;
}

}  // namespace workbench::data
