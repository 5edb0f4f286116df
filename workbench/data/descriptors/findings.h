// DescriptorFindings: what is to be said of a descriptor.
//
// The first problem ends a descriptor's use; what is read behind it counts for nothing, so readers may go on with
// whatever is at hand and ask once at their end. Warnings are of what could not be taken over.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

class DescriptorFindings {
 public:
  // Keeps the first problem only.
  void reject(Problem problem);
  const std::optional<Problem>& problem() const { return problem_; }

  // The sentence goes on from the field's name. The same sentence about several fields becomes one that names them.
  void warn(const std::string& sentence, const std::string& field);
  // A whole sentence, about no field.
  void warn(const std::string& sentence);
  // In the order in which they were first given.
  std::vector<std::string> warnings() const;

 private:
  struct Warning {
    std::string sentence;
    std::vector<std::string> fields;
  };

  std::optional<Problem> problem_;
  std::vector<Warning> warnings_;
  std::unordered_map<std::string, std::size_t> warningOfSentence_;
};

}  // namespace workbench::data
