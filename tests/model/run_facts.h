// What a run found out, in numbers, for laws that speak of counts.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/model/observed_run.h"

namespace workbench::tests::model {

struct RunFacts {
  std::string outcome;
  std::vector<std::string> messages;  // as lines of a report
  // Per case of the active dataset; system-missing where none was written.
  std::vector<double> flags;
  std::size_t activeRead = 0;
  std::size_t comparedRead = 0;
  std::size_t pairs = 0;
  std::size_t mismatched = 0;
  std::map<std::string, std::size_t> byVariable;  // mismatches, of the compared variables that are listed

  std::size_t flagged(double value) const;
};

// Requires: the command asks for a flag variable and for the tables of cases.
RunFacts factsOf(const ObservedRun& observed);

// The lines of all tables that begin with a cell's address, in their order.
std::vector<std::string> cellLines(const ObservedRun& observed);
// Where the Dictionary Comparison table shows a difference: "name CD_AttributeWidth", the name in small letters.
std::set<std::string> differingProperties(const ObservedRun& observed);

}  // namespace workbench::tests::model
