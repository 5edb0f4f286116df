// The case IDs, and the order that cases have by them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/model/naive_dictionary.h"

namespace workbench::tests::model {

enum class Side { active, compared };

class CaseOrder {
 public:
  // Requires: the places are those of variables of one storage type.
  CaseOrder(const World& world, std::vector<CaseIdPlace> ids);

  const std::vector<CaseIdPlace>& ids() const { return ids_; }
  // Whether a case may stand behind the one before it in its dataset (null: it is the first).
  bool mayFollow(Side side, const Case* before, const Case& one) const;
  // Negative: the active case comes first; positive: the comparison case does; 0: they are partners.
  int compare(const Case& active, const Case& compared) const;

 private:
  std::string textOf(std::size_t id, Side side, const Case& one) const;
  int compareTexts(const std::string& left, const std::string& right) const;
  std::size_t placeOf(std::size_t id, Side side) const;
  bool isNumber(std::size_t id) const { return world_.active.variables[ids_[id].active].isNumber(); }

  const World& world_;
  std::vector<CaseIdPlace> ids_;
};

// Where the case ID variables are on either side; nothing when one has no partner of its type.
std::optional<std::vector<CaseIdPlace>> findCaseIds(const World& world, const Options& options);

}  // namespace workbench::tests::model
