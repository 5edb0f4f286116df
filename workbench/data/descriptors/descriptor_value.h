// DescriptorValue: checked access to a value of a descriptor.
//
// Every question that the value does not answer as expected is a problem that names the property, its place (a JSON
// pointer), what was expected and what to do; it is noted among the findings, and the answer is nothing.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
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

  // Notes a problem of this value. What is a sentence to be looked up, in which ^1 stands for the subject (the
  // property's name or its entry) and ^2 to ^4 for the items. A remedy is looked up as well, unless it is
  // a text that was.
  void reject(std::string_view what, std::string_view remedy) const { reject(what, {}, remedy); }
  void reject(std::string_view what, std::initializer_list<std::string_view> items, std::string_view remedy) const;
  // A problem of this place, in a sentence of its own, where ^1 is the first item.
  void rejectWith(std::string_view what, std::string_view remedy) const { rejectWith(what, {}, remedy); }
  void rejectWith(std::string_view what, std::initializer_list<std::string_view> items, std::string_view remedy) const;
  DescriptorFindings& findings() const { return *findings_; }
  const JsonDocument& document() const { return *document_; }
  std::string shown() const;  // its JSON text

 private:
  friend class DescriptorObject;
  DescriptorValue(const DescriptorValue& parent, const Json& json, std::string place, std::string subject);

  std::string kind() const;  // "a number"
  void noteProblem(std::string what, std::string_view remedy) const;
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
std::string listedOr(const std::vector<std::string>& words);
// "a", "b" and "c"
std::string listedAnd(const std::vector<std::string>& words);

// The remedy, looked up, with `Did you mean "b"?` behind it when a word is near.
std::string remedyWithHint(std::string_view remedy, std::string_view word, const std::vector<std::string>& known);

template <class Meaning, std::size_t size>
std::optional<Meaning> DescriptorValue::word(const std::array<WordRow<Meaning>, size>& rows) const {
  std::vector<std::string> words;
  for (const WordRow<Meaning>& row : rows) words.emplace_back(row.word);
  const std::optional<std::size_t> index = wordIndex(words);
  if (!index) return std::nullopt;
  return rows[*index].meaning;
}

}  // namespace workbench::data
