// DatasetComparer: the one object that carries a comparison from start to end.
//
// The driver makes it once both datasets are open and hands it to every stage: case ID validation fills caseIdKeys,
// variable matching fills propertyOn, variablePairs, the attribute names and dictionaryState, the case walk fills the
// counters; the tables only read.
// Requires: everything it refers to outlives it. It owns its own lists and counters and nothing else.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/data.h"
#include "host/output.h"
#include "syntax/compare_options.h"

namespace compdatas {

// The sides of everything that there is two of.
inline constexpr std::size_t activeSide = 0;
inline constexpr std::size_t compareSide = 1;

// The compared dictionary properties; each is an index into DatasetComparer::propertyOn.
enum class Property : std::size_t {
  presence,
  storageType,
  measure,
  format,
  label,
  valueLabels,
  missing,
  columns,
  align,
  role,
  attributes,
};
inline constexpr std::size_t propertyCount = 11;

enum class DictionaryState : std::int32_t {
  nothingPaired = 0,  // not one variable could be paired
  nothingToShow = 1,  // no property was asked for, or all agree
  differences = 2,
};

struct ExactTextOrder {
  using is_transparent = void;
  bool operator()(std::string_view left, std::string_view right) const { return VRIXMBstrcmp_A(left, right) < 0; }
};

// The value texts of one custom attribute.
struct AttributeTexts {
  std::string active;
  std::string compare;
};

// One examined variable of the active dataset, with its partner when it has one.
struct VariablePair {
  std::int32_t activeIndex = -1;
  std::int32_t compareIndex = -1;
  std::int32_t width = 0;     // string width of the active variable; 0 for a number
  bool fuzzyNumeric = false;  // plain number format: near-equal numbers count as equal
  bool compared = false;      // in both datasets with the same storage type
  bool isCaseId = false;
  bool dictEqual = false;  // every selected property is equal
  bool foundInCompare = false;

  // A property that is not selected counts as equal.
  bool typeEqual = false;
  bool measureEqual = false;
  bool formatEqual = false;
  bool labelEqual = false;
  bool valueLabelsEqual = false;
  bool missingEqual = false;
  bool columnsEqual = false;
  bool alignEqual = false;
  bool roleEqual = false;
  bool attributesEqual = false;

  std::uint64_t mismatchCount = 0;

  // Of the pair of cases now being compared. Where the values lie is told when they differ.
  bool equalNow = false;
  const OBS* activeValue = nullptr;
  const OBS* compareValue = nullptr;

  // Where the value goes in a saved case, in 8-byte slots.
  std::uint32_t outPosition = 0;
  std::uint32_t outSlots = 0;

  std::map<std::string, AttributeTexts, ExactTextOrder> attributeValues;
};

// One case ID variable: its two variables and their values in the current and in the previous case of each side.
struct CaseIdKey {
  struct Side {
    std::int32_t varIndex = -1;
    std::size_t valueWidth = 0;  // bytes of a text value that count: the active width, but no more than there are
    double prevNumber = 0;
    std::string prevText;
    double curNumber = 0;
    std::string curText;
  };

  std::int32_t width = 0;  // string width of the active variable; 0 for a number
  std::array<Side, 2> side;
  std::string name;
  const VRIX_Variable* activeVariable = nullptr;
  double lowNumber = 0;  // below every number that occurs
  std::string lowText;   // as many blanks as the key is wide
};

// How far the walk has come in one dataset.
struct CaseReader {
  std::unique_ptr<VRIX_InputCaseIterator> iterator;  // only during the walk
  std::int64_t lastPosition = -3;                    // below every position
  std::uint64_t casesRead = 0;                       // also the row number of the current case
  // Compared pairs; both readers hold the same two numbers.
  std::uint64_t matchedCases = 0;
  std::uint64_t mismatchedCases = 0;
};

class DatasetComparer {
 public:
  // The comparison source may be absent. The flag variable's name is empty when no flag is to be written.
  DatasetComparer(const CompareOptions& comparisonOptions, BpProcedure& outputProcedure,
                  ProcedureDataSource& activeDataSource, VRIX_DataSource* compareDataSource,
                  const std::string& flagVariableName, const UserCaseFileSpec& matchedCasesSpec,
                  const UserCaseFileSpec& mismatchedCasesSpec);
  DatasetComparer(const DatasetComparer&) = delete;
  DatasetComparer& operator=(const DatasetComparer&) = delete;

  bool isOn(Property property) const { return propertyOn[static_cast<std::size_t>(property)]; }
  // The comparison dataset's variable of that name, or -1, also when there is no comparison source.
  std::int32_t findInCompare(const std::string& name) const;

  const CompareOptions& options;
  BpProcedure& procedure;
  ProcedureDataSource& activeSource;
  VRIX_DataSource* compareSource;  // null when absent
  const UserCaseFileSpec& matchedSpec;
  const UserCaseFileSpec& mismatchedSpec;

  std::array<bool, propertyCount> propertyOn{};
  DictionaryState dictionaryState = DictionaryState::differences;
  std::vector<VariablePair> variablePairs;  // in the order of the active dictionary
  std::vector<CaseIdKey> caseIdKeys;        // in the order of CASEID
  std::array<CaseReader, 2> readers;

  // Custom attributes met on compared variables of either dataset: in order, and as first met.
  std::set<std::string, ExactTextOrder> attributeNameSet;
  std::vector<std::string> attributeNames;

  bool casesAllMatch = false;       // no case was left over at the end, and no compared case had a difference
  std::uint64_t casesCompared = 0;  // pairs
  std::uint64_t caseSteps = 0;      // pairs, and cases without a partner
  std::uint64_t unpairedTail = 0;   // cases left over in one dataset after the other one's had run out
  bool initialized = true;

  std::string flagVarName;
  std::int32_t flagVarIndex = -1;
};

}  // namespace compdatas
