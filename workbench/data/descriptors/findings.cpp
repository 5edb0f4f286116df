#include "workbench/data/descriptors/findings.h"

#include <fmt/format.h>

#include <algorithm>

#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// `Field "a": ...`, `Fields "a", "b": ...`, `Fields "a", "b", "c" and 17 more: ...`
std::string warningText(const std::string& sentence, const std::vector<std::string>& fields) {
  constexpr std::size_t mostNamed = 3;
  const std::size_t named = std::min(fields.size(), mostNamed);
  if (fields.size() == 1) return text::sentence("Field \"^1\": ^2", {fields.front(), sentence});
  std::string names;
  for (std::size_t index = 0; index < named; ++index) {
    names += fmt::format("{}\"{}\"", index == 0 ? "" : ", ", fields[index]);
  }
  if (fields.size() == named) return text::sentence("Fields ^1: ^2", {names, sentence});
  return text::sentence("Fields ^1 and ^2 more: ^3", {names, fmt::to_string(fields.size() - named), sentence});
}

}  // namespace

void DescriptorFindings::reject(Problem problem) {
  if (!problem_) problem_ = std::move(problem);
}

void DescriptorFindings::warn(const std::string& sentence, const std::string& field) {
  const auto [known, isNew] = warningOfSentence_.emplace(sentence, warnings_.size());
  if (isNew) warnings_.push_back({sentence, {}});
  warnings_[known->second].fields.push_back(field);
}

void DescriptorFindings::warn(const std::string& sentence) { warnings_.push_back({sentence, {}}); }

std::vector<std::string> DescriptorFindings::warnings() const {
  std::vector<std::string> texts;
  for (const Warning& warning : warnings_) {
    texts.push_back(warning.fields.empty() ? warning.sentence : warningText(warning.sentence, warning.fields));
  }
  return texts;
}

}  // namespace workbench::data
