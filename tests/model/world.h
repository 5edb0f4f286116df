// What a run finds when it starts: the datasets, how they are open, the host's settings and texts.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "tests/model/dataset.h"

namespace workbench::tests::model {

struct World {
  Dataset active;
  Dataset compared;  // open as "b"; where it has a path, that file holds the same
  std::optional<std::string> activeHandle = "a";
  std::set<std::string> unusablePaths;  // of data files that cannot be written

  double tolerance = 1e-12;
  std::string collation;  // a locale; empty: the order of the bytes
  // Orders two texts without blanks at their end by that locale: negative, 0, positive; never 0 for different texts.
  std::function<int(std::string_view, std::string_view)> collate;

  // Of the message catalog: what the flag variable's label and value labels are.
  std::string flagLabel;
  std::string mismatchedLabel;
  std::string matchedLabel;
  std::string withoutPartnerLabel;
};

}  // namespace workbench::tests::model
