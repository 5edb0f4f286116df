#include "workbench/data/working/key_findings.h"

#include <algorithm>
#include <cstring>

#include "workbench/data/descriptors/missing_codes.h"
#include "workbench/data/working/case_filter.h"

namespace workbench::data {
namespace {

bool isMissingText(const SortKey& key, const MissingValues& declared, const OBS* oneCase) {
  const OBS& beginning = oneCase[key.slot];
  const auto isDeclared = [&](const OBS& value) { return std::memcmp(value.text, beginning.text, sizeof(OBS)) == 0; };
  return keyText(key, oneCase).empty() || std::ranges::any_of(discreteValues(declared), isDeclared);
}

}  // namespace

MissingKeys::MissingKeys(std::vector<SortKey> keys, std::vector<MissingValues> declared)
    : keys_(std::move(keys)), declared_(std::move(declared)) {
  declared_.resize(keys_.size());
}

bool MissingKeys::isMissing(const OBS* oneCase) const {
  for (std::size_t index = 0; index < keys_.size(); ++index) {
    const SortKey& key = keys_[index];
    const bool isMissingHere = key.isNumeric ? data::isMissing(oneCase[key.slot].number, declared_[index])
                                             : isMissingText(key, declared_[index], oneCase);
    if (isMissingHere) return true;
  }
  return false;
}

KeyValues keyValues(const std::vector<SortKey>& keys, const OBS* oneCase) {
  KeyValues values;
  for (const SortKey& key : keys) {
    if (key.isNumeric) {
      values.emplace_back(oneCase[key.slot].number);
    } else {
      values.emplace_back(std::string(keyText(key, oneCase)));
    }
  }
  return values;
}

}  // namespace workbench::data
