#include "tests/procedure/naive_comparison.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cctype>
#include <cfloat>
#include <cmath>
#include <cstring>

namespace workbench::tests::naive {

namespace {

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

int find(const Dataset& dataset, const std::string& name) {
  for (std::size_t index = 0; index < dataset.variables.size(); ++index) {
    if (lower(dataset.variables[index].name) == lower(name)) return static_cast<int>(index);
  }
  return -1;
}

std::string trimmed(std::string text) {
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

bool sameBits(double left, double right) { return std::memcmp(&left, &right, sizeof left) == 0; }

bool agree(const Variable& variable, const Value& left, const Value& right) {
  if (variable.width != 0) return trimmed(left.text) == trimmed(right.text);
  if (sameBits(left.number, right.number)) return true;
  if (!variable.isPlainNumber || left.number == -DBL_MAX || right.number == -DBL_MAX) return false;
  const double larger = std::max(std::fabs(left.number), std::fabs(right.number));
  return std::fabs(left.number - right.number) <= 1e-12 * larger;
}

std::string numberText(double number) { return number == -DBL_MAX ? "." : fmt::format("{}", number); }

std::string percent(std::size_t part, std::size_t whole) {
  const double share = whole == 0 ? 0 : static_cast<double>(part) * 100.0 / static_cast<double>(whole);
  return fmt::format("{}%", share);
}

// A paired variable: where it is on either side.
struct Pair {
  std::size_t active = 0;
  std::size_t compared = 0;
  bool isCaseId = false;
  std::size_t differences = 0;
};

class Comparison {
 public:
  Comparison(const Dataset& active, const Dataset& compared, const Command& command)
      : active_(active), compared_(compared), command_(command), flags_(active.cases.size(), ".") {}

  Result run() {
    result_.outcome = "completed";
    if (!findCaseIds()) return finished();
    result_.tables = "CD_CompSummaryTableName(10)";
    pairVariables();
    selectCases();
    walk();
    if (!failure_.empty()) {
      result_.messages += failure_;
      result_.outcome = "left by VrixGoToCaller";
      return finished();
    }
    writeTables();
    return finished();
  }

 private:
  enum class Status { current, ended, outOfOrder };

  struct Key {
    std::size_t active = 0;
    std::size_t compared = 0;
    std::size_t width = 0;  // of the active variable
  };

  bool findCaseIds() {
    for (const std::string& name : command_.caseIds) {
      const int here = find(active_, name);
      const int there = find(compared_, name);
      if (there < 0) continue;
      const int width = active_.variables[static_cast<std::size_t>(here)].width;
      if ((width == 0) != (compared_.variables[static_cast<std::size_t>(there)].width == 0)) continue;
      keys_.push_back(
          {static_cast<std::size_t>(here), static_cast<std::size_t>(there), static_cast<std::size_t>(width)});
    }
    if (keys_.size() == command_.caseIds.size()) return true;
    result_.messages =
        "2/3 The comparison cannot be performed because the case ID variables do not match in the two datasets.\n";
    return false;
  }

  void pairVariables() {
    std::vector<std::string> uncompared;
    std::vector<bool> examined(active_.variables.size(), command_.variables.empty());
    for (const std::string& name : command_.variables) {
      const int index = find(active_, name);
      if (index < 0) {
        uncompared.push_back(name);
      } else {
        examined[static_cast<std::size_t>(index)] = true;
      }
    }
    for (const Key& key : keys_) examined[key.active] = true;
    for (std::size_t index = 0; index < examined.size(); ++index) {
      if (!examined[index]) continue;
      const Variable& variable = active_.variables[index];
      const int there = find(compared_, variable.name);
      if (there < 0 || (variable.width == 0) != (compared_.variables[static_cast<std::size_t>(there)].width == 0)) {
        uncompared.push_back(variable.name);
        continue;
      }
      const bool isCaseId =
          std::any_of(keys_.begin(), keys_.end(), [&](const Key& key) { return key.active == index; });
      pairs_.push_back({index, static_cast<std::size_t>(there), isCaseId, 0});
    }
    if (uncompared.empty()) return;
    if (pairs_.empty()) {
      result_.messages += "0/3 The variables do not match in t...\n";
      return;
    }
    result_.messages +=
        fmt::format("4/2 The following variables could...[%1:, ^1:]1{{[{}]}}\n", fmt::join(uncompared, "|"));
  }

  // Which active cases are read: a filter counts only where no flag is written.
  void selectCases() {
    for (std::size_t row = 0; row < active_.cases.size(); ++row) {
      if (!command_.flag && active_.filter) {
        const double filter = active_.cases[row][*active_.filter].number;
        if (filter == 0 || filter == -DBL_MAX) continue;
      }
      rows_.push_back(row);
    }
  }

  const Case& activeCase(std::size_t place) const { return active_.cases[rows_[place]]; }

  std::string keyText(const Key& key, const Value& value) const { return trimmed(value.text.substr(0, key.width)); }

  // Whether a case may stand behind the one before it (none: it is the first). A key whose predecessor has just gone up
  // starts from the bottom: minus infinity, or no text at all.
  bool inOrder(bool isActive, const Case* before, const Case& now) const {
    bool restart = before == nullptr;
    for (const Key& key : keys_) {
      const std::size_t at = isActive ? key.active : key.compared;
      bool wentUp = false;
      if (key.width != 0) {
        const std::string low = restart ? std::string() : keyText(key, (*before)[at]);
        const std::string value = keyText(key, now[at]);
        if (value < low) return false;
        wentUp = value != low;
      } else {
        const double low = restart ? -HUGE_VAL : (*before)[at].number;
        if (low > now[at].number) return false;
        wentUp = !sameBits(low, now[at].number);
      }
      restart = before == nullptr || wentUp;
    }
    return true;
  }

  Status activeStatus() const {
    if (activePlace_ == rows_.size()) return Status::ended;
    const Case* before = activePlace_ == 0 ? nullptr : &activeCase(activePlace_ - 1);
    return inOrder(true, before, activeCase(activePlace_)) ? Status::current : Status::outOfOrder;
  }
  Status comparedStatus() const {
    if (comparedPlace_ == compared_.cases.size()) return Status::ended;
    const Case* before = comparedPlace_ == 0 ? nullptr : &compared_.cases[comparedPlace_ - 1];
    return inOrder(false, before, compared_.cases[comparedPlace_]) ? Status::current : Status::outOfOrder;
  }

  // -1: the active case stands before the comparison case.
  int keyOrder() const {
    for (const Key& key : keys_) {
      const Value& here = activeCase(activePlace_)[key.active];
      const Value& there = compared_.cases[comparedPlace_][key.compared];
      if (key.width != 0) {
        const int order = keyText(key, here).compare(keyText(key, there));
        if (order != 0) return order;
      } else if (!sameBits(here.number, there.number)) {
        return there.number > here.number ? -1 : 1;
      }
    }
    return 0;
  }

  void walk() {
    while (activeStatus() == Status::current && comparedStatus() == Status::current) {
      const int order = keyOrder();
      if (order == 0) comparePair();
      if (order < 0) flag("-1");
      if (order <= 0) ++activePlace_;
      if (order >= 0) ++comparedPlace_;
    }
    if (activeStatus() == Status::outOfOrder) return fail("2/3 The active dataset is not sort...\n");
    if (comparedStatus() == Status::outOfOrder) return fail("2/3 The comparison dataset is not sort...\n");
    for (; activeStatus() == Status::current; ++activePlace_, ++leftOver_) flag("-1");
    if (activeStatus() == Status::outOfOrder) return fail("2/3 The active dataset is not sort...\n");
    for (; comparedStatus() == Status::current; ++comparedPlace_) ++leftOver_;
    if (comparedStatus() == Status::outOfOrder) return fail("2/3 The comparison dataset is not sort...\n");
  }

  void fail(const std::string& message) { failure_ = message; }
  void flag(const std::string& value) { flags_[rows_[activePlace_]] = value; }

  void comparePair() {
    ++casesCompared_;
    const Case& here = activeCase(activePlace_);
    const Case& there = compared_.cases[comparedPlace_];
    bool allAgree = true;
    std::string cells;
    const std::string shown = std::to_string(mismatched_.size());
    for (const Key& key : keys_) {
      const Variable& variable = active_.variables[key.active];
      cells += fmt::format("\"{}\"|{} = {}\n", variable.name, shown, valueText(variable, here[key.active]));
    }
    cells += fmt::format("CD_Active|{0} = {1}\nCD_Compare|{0} = {2}\n", shown, activePlace_ + 1, comparedPlace_ + 1);
    for (Pair& pair : pairs_) {
      const Variable& variable = active_.variables[pair.active];
      const bool same = agree(variable, here[pair.active], there[pair.compared]);
      if (!same) ++pair.differences;
      allAgree = allAgree && same;
      if (pair.isCaseId) continue;
      const std::string both = fmt::format("\"(1) ^1\\n(2) ^2\"{{{}|{}}}", valueText(variable, here[pair.active]),
                                           valueText(compared_.variables[pair.compared], there[pair.compared]));
      cells += fmt::format("<{}>|{} = {}\n", variable.name, shown, same ? "\"\"" : both);
    }
    flag(allAgree ? "0" : "1");
    if (!allAgree && (!command_.limit || mismatched_.size() < static_cast<std::size_t>(*command_.limit))) {
      result_.caseByCase += cells;
    }
    (allAgree ? matched_ : mismatched_).push_back(rows_[activePlace_]);
  }

  std::string valueText(const Variable& variable, const Value& value) const {
    if (variable.width == 0) return variable.name + ':' + numberText(value.number);
    return fmt::format("{}:\"{}\"", variable.name, trimmed(value.text));
  }

  void writeTables() {
    const std::size_t here = activePlace_;
    const std::size_t there = comparedPlace_;
    const bool allMatch = leftOver_ == 0 && mismatched_.empty();
    if (allMatch) result_.messages += "4/1 All values in the tw...\n";
    if (command_.flag) result_.notes = "3: ||CasesCompare\n";
    if (command_.caseTable) writeMatchedSummary(here, there);
    if (command_.caseTable && !mismatched_.empty()) writeMismatches();

    const auto cells = [](const std::string& text) { return std::count(text.begin(), text.end(), '\n'); };
    result_.tables += fmt::format(" CD_MatchedSummaryTableName({})", cells(result_.matchedSummary));
    if (command_.caseTable && !allMatch) {
      result_.tables += fmt::format(
          " CD_MismatchedByCasesTableName({}) CD_MismatchedByVarsTableName({}) CD_CaseByCaseComparisonTableName({})",
          cells(result_.byCases), cells(result_.byVariables), cells(result_.caseByCase));
      writeCaption();
    } else {
      result_.byCases = result_.byVariables = result_.caseByCase = result_.caption = "no table";
    }
    result_.tables += fmt::format(" CD_CompSummaryTableName({})", (here > 0 ? 1 : 0) + (there > 0 ? 1 : 0));
    result_.matched = saved(matched_);
    result_.mismatched = saved(mismatched_);
  }

  void writeMatchedSummary(std::size_t here, std::size_t there) {
    const auto counts = [&](const char* what, std::size_t ofActive, std::size_t ofCompared) {
      result_.matchedSummary +=
          fmt::format("{0}|CD_Count|CD_Active = {1}\n{0}|CD_Count|CD_Comparison = {2}\n", what, ofActive, ofCompared);
    };
    const auto shares = [&](const char* what, std::size_t ofActive, std::size_t ofCompared) {
      result_.matchedSummary += fmt::format("{0}|CD_Percent|CD_Active = {1}\n{0}|CD_Percent|CD_Comparison = {2}\n",
                                            what, percent(ofActive, here), percent(ofCompared, there));
    };
    counts("CD_Cases", here, there);
    counts("CD_CasesCompared", casesCompared_, casesCompared_);
    shares("CD_CasesCompared", casesCompared_, casesCompared_);
    counts("CD_CasesNotCompared", here - casesCompared_, there - casesCompared_);
    shares("CD_CasesNotCompared", here - casesCompared_, there - casesCompared_);
  }

  void writeMismatches() {
    result_.byCases = fmt::format(
        "CD_CasesCompared|CD_Count = {}\nCD_CasesContainingMismatches|CD_Count = {}\n"
        "CD_CasesContainingMismatches|CD_Percent = {}\n",
        casesCompared_, mismatched_.size(), percent(mismatched_.size(), casesCompared_));
    for (const Pair& pair : pairs_) {
      result_.byVariables +=
          fmt::format("<{0}>|CD_Count = {1}\n<{0}>|CD_Percent = {2}\n", active_.variables[pair.active].name,
                      pair.differences, percent(pair.differences, casesCompared_));
    }
  }

  void writeCaption() {
    const std::string sides = "(1) is the Active Datset an...";
    const bool reached = command_.limit && mismatched_.size() >= static_cast<std::size_t>(*command_.limit);
    result_.caption = reached ? fmt::format("\"^1\\n^2\"{{{}|Displaying the first ...{{{}|{}}}}}", sides,
                                            *command_.limit, mismatched_.size())
                              : sides;
  }

  std::string saved(const std::vector<std::size_t>& rows) const {
    if (!command_.save) return "no dataset";
    std::string all;
    for (const Pair& pair : pairs_) {
      const Variable& variable = active_.variables[pair.active];
      all += variable.name + ':';
      for (const std::size_t row : rows) {
        const Value& value = active_.cases[row][pair.active];
        all += ' ' + (variable.width == 0 ? numberText(value.number) : value.text);
      }
      all += '\n';
    }
    return all;
  }

  Result finished() {
    result_.flags = command_.flag ? fmt::format("{}", fmt::join(flags_, " ")) : "no variable";
    if (result_.outcome == "completed" && !result_.tables.empty()) return result_;
    // Nothing but the first table and the flags remains of a run that was refused or failed.
    result_.matchedSummary = result_.byCases = result_.byVariables = "no table";
    result_.caseByCase = result_.caption = "no table";
    result_.matched = result_.mismatched = "no dataset";
    return result_;
  }

  const Dataset& active_;
  const Dataset& compared_;
  const Command& command_;
  Result result_;
  std::vector<Key> keys_;
  std::vector<Pair> pairs_;
  std::vector<std::size_t> rows_;
  std::vector<std::string> flags_;
  std::size_t activePlace_ = 0;
  std::size_t comparedPlace_ = 0;
  std::size_t casesCompared_ = 0;
  std::size_t leftOver_ = 0;
  std::vector<std::size_t> matched_;
  std::vector<std::size_t> mismatched_;
  std::string failure_;
};

}  // namespace

Result compare(const Dataset& active, const Dataset& compared, const Command& command) {
  return Comparison(active, compared, command).run();
}

}  // namespace workbench::tests::naive
