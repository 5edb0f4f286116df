// What the descriptors of host/parser.h hold: a grammar as plain values.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/parser.h"
#include "workbench/text/folding.h"

struct ParamDescriptor::State {
  // A bound that a number has to keep; whether the bound itself is still allowed.
  struct Bound {
    double value = 0;
    bool isInclusive = true;
  };

  std::string name;
  UPSpecTypes::ParamSpec spec = UPSpecTypes::ParamSpec::wordOrString;
  bool required = false;
  bool takesValue = true;
  std::vector<std::string> allowed;  // words
  std::optional<Bound> lower;
  std::optional<Bound> upper;
};

struct SubComDescriptor::State {
  std::string name;
  UPSpecTypes::SubComSpec spec = UPSpecTypes::SubComSpec::keywordsOnly;
  bool required = false;
  bool mayRepeat = false;
  std::optional<ParamDescriptor::State> exportParam;
  std::vector<ParamDescriptor::State> keywords;
};

struct CommandDescriptor::State {
  std::string name;
  std::string title;
  std::vector<SubComDescriptor::State> subcommands;
};

namespace workbench::language {

// The last one of that name, or null.
template <class Named>
const Named* findNamed(const std::vector<Named>& all, std::string_view name) {
  for (auto candidate = all.rbegin(); candidate != all.rend(); ++candidate) {
    if (text::sameName(candidate->name, name)) return &*candidate;
  }
  return nullptr;
}

// Every name once, in the order in which it was first added; a subcommand without a name has none.
template <class Named>
std::vector<std::string> namesOf(const std::vector<Named>& all) {
  std::vector<std::string> names;
  for (const Named& one : all) {
    const bool isFirst = &one == &*std::find_if(all.begin(), all.end(), [&](const Named& other) {
      return text::sameName(other.name, one.name);
    });
    if (isFirst && !one.name.empty()) names.push_back(one.name);
  }
  return names;
}

}  // namespace workbench::language
