// KeyFindings: how far some variables of a dataset tell its cases apart, and whether its cases lie in their order.
//
// Two keys are the same when no order of them lies between (sort_order.h). A key is missing when one of its values is:
// a number that is system-missing or user-missing, a text that is blank or user-missing. What is missing is no repeated
// key.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "workbench/data/dictionary.h"
#include "workbench/data/working/sort_order.h"

namespace workbench::data {

using KeyValues = std::vector<std::variant<double, std::string>>;  // texts as compared: cut, without trailing blanks

// One row's place and its key values.
struct SortedRow {
  std::int64_t number = 0;  // from 1
  KeyValues keys;
};

// Keys that more than one case has.
struct RepeatedKeys {
  static constexpr std::size_t mostRows = 5;

  std::int64_t keys = 0;
  std::int64_t cases = 0;  // of all of them
  // Of the lowest of them.
  KeyValues lowest;
  std::int64_t casesOfLowest = 0;
  std::vector<std::int64_t> rowsOfLowest;  // the first few, from 1
};

// Says of what the findings are: the same keys may be looked at again.
struct LookedAt {
  std::vector<SortKey> keys;
  std::string collation;
  friend bool operator==(const LookedAt&, const LookedAt&) = default;
};

struct KeyFindings {
  LookedAt of;
  // Of a dataset that is not in order: the first two neighbours that lie the wrong way round. What is repeated is not
  // known then.
  std::optional<std::pair<SortedRow, SortedRow>> firstOutOfOrder;
  RepeatedKeys repeated;
  std::int64_t missing = 0;          // cases
  std::int64_t firstMissingRow = 0;  // from 1
  bool wasSorted = false;            // since then; rows are counted as they lay before
};

// When the keys of a case are missing.
class MissingKeys {
 public:
  // One declaration per key; none at all: only what is missing without one.
  explicit MissingKeys(std::vector<SortKey> keys, std::vector<MissingValues> declared = {});
  bool isMissing(const OBS* oneCase) const;

 private:
  std::vector<SortKey> keys_;
  std::vector<MissingValues> declared_;
};

KeyValues keyValues(const std::vector<SortKey>& keys, const OBS* oneCase);

}  // namespace workbench::data
