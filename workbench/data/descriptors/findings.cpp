#include "workbench/data/descriptors/findings.h"

#include <fmt/format.h>

#include <algorithm>

namespace workbench::data {
namespace {

// `Field "a":`, `Fields "a", "b":`, `Fields "a", "b", "c" and 17 more:`
std::string namesOf(const std::vector<std::string>& fields) {
  constexpr std::size_t mostNamed = 3;
  const std::size_t named = std::min(fields.size(), mostNamed);
  std::string text = fields.size() == 1 ? "Field " : "Fields ";
  for (std::size_t index = 0; index < named; ++index) {
    text += fmt::format("{}\"{}\"", index == 0 ? "" : ", ", fields[index]);
  }
  if (fields.size() > named) text += fmt::format(" and {} more", fields.size() - named);
  return text + ":";
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
    texts.push_back(warning.fields.empty() ? warning.sentence
                                           : fmt::format("{} {}", namesOf(warning.fields), warning.sentence));
  }
  return texts;
}

}  // namespace workbench::data
