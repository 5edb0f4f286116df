#include "tests/model/naive_walk.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <set>
#include <utility>

namespace workbench::tests::model {

namespace {

enum class Status { current, ended, outOfOrder };

bool isPlainNumberFormat(int type) {
  static const std::set<int> types = {3, 4, 5, 16, 17, 31, 32, 33, 34, 35, 36, 37};
  return types.contains(type);
}

bool areNear(double left, double right, double tolerance) {
  if (left == right) return true;
  return std::fabs(left - right) <= tolerance * std::max(std::fabs(left), std::fabs(right));
}

// A filter takes the cases whose value is neither 0 nor missing.
bool isMissing(const Variable& variable, double number) {
  if (number == systemMissing) return true;
  const int code = variable.missing.code;
  const auto value = [&](std::size_t place) { return numberOf(variable.missing.values[place]); };
  if (code == -2 || code == -3) {
    return (number >= value(0) && number <= value(1)) || (code == -3 && number == value(2));
  }
  for (int place = 0; code >= 1 && code <= 3 && place < code; ++place) {
    if (number == value(static_cast<std::size_t>(place))) return true;
  }
  return false;
}

std::vector<std::size_t> casesToRead(const Dataset& dataset, bool usesFilter) {
  std::vector<std::size_t> cases;
  for (std::size_t place = 0; place < dataset.cases.size(); ++place) {
    if (usesFilter && dataset.filter) {
      const double filter = numberOf(dataset.cases[place][*dataset.filter]);
      if (filter == 0 || isMissing(dataset.variables[*dataset.filter], filter)) continue;
    }
    cases.push_back(place);
  }
  return cases;
}

// The cases of one dataset, read one by one, each held against the one before it.
class Reader {
 public:
  Reader(const Dataset& dataset, Side side, const CaseOrder& order, bool usesFilter)
      : dataset_(dataset), side_(side), order_(order), places_(casesToRead(dataset, usesFilter)) {}

  Status read(std::vector<std::string>& steps) {
    const bool isThere = read_ < places_.size();
    steps.push_back(std::string("read ") + (side_ == Side::active ? "active " : "comparison ") +
                    (isThere ? "true" : "false"));
    if (!isThere) return status_ = Status::ended;
    const Case* before = read_ == 0 ? nullptr : &current();
    const Case& next = dataset_.cases[places_[read_]];
    ++read_;
    return status_ = order_.mayFollow(side_, before, next) ? Status::current : Status::outOfOrder;
  }
  Status status() const { return status_; }
  std::size_t casesRead() const { return read_; }
  std::size_t place() const { return places_[read_ - 1]; }
  const Case& current() const { return dataset_.cases[place()]; }

 private:
  const Dataset& dataset_;
  Side side_;
  const CaseOrder& order_;
  std::vector<std::size_t> places_;
  std::size_t read_ = 0;
  Status status_ = Status::ended;
};

class Walk {
 public:
  Walk(const World& world, const CaseOrder& order, std::vector<ComparedVariable>& variables, bool usesFilter)
      : world_(world),
        order_(order),
        variables_(variables),
        active_(world.active, Side::active, order, usesFilter),
        compared_(world.compared, Side::compared, order, false) {
    walked_.flags.resize(world.active.cases.size());
  }

  WalkedCases run() {
    readActive();
    readCompared();
    while (active_.status() == Status::current && compared_.status() == Status::current) step();
    // An active dataset out of order is all that is reported, whatever became of the other one.
    if (active_.status() != Status::outOfOrder && compared_.status() != Status::outOfOrder) passOverTheRest();
    if (active_.status() == Status::outOfOrder) {
      walked_.unsorted = Side::active;
    } else if (compared_.status() == Status::outOfOrder) {
      walked_.unsorted = Side::compared;
    }
    walked_.activeRead = active_.casesRead();
    walked_.comparedRead = compared_.casesRead();
    return std::move(walked_);
  }

 private:
  void step() {
    const int order = order_.compare(active_.current(), compared_.current());
    if (order > 0) return readCompared();
    if (order < 0) {
      flag(-1);
      return readActive();
    }
    comparePartners();
    readCompared();
    readActive();
  }

  void passOverTheRest() {
    while (active_.status() == Status::current) {
      flag(-1);
      ++walked_.leftOver;
      readActive();
    }
    if (active_.status() == Status::outOfOrder) return;
    while (compared_.status() == Status::current) {
      ++walked_.leftOver;
      readCompared();
    }
  }

  void comparePartners() {
    ShownCase both{active_.place(), compared_.place(), active_.casesRead(), compared_.casesRead(), {}};
    for (ComparedVariable& variable : variables_) {
      const bool agrees = valuesAgree(world_, world_.active.variables[variable.active],
                                      active_.current()[variable.active], compared_.current()[variable.compared]);
      if (!agrees) ++variable.mismatches;
      both.agrees.push_back(agrees);
    }
    const bool allAgree = std::find(both.agrees.begin(), both.agrees.end(), false) == both.agrees.end();
    flag(allAgree ? 0 : 1);
    walked_.steps.push_back(allAgree ? "write matched" : "write mismatched");
    if (allAgree) {
      walked_.matched.push_back(active_.place());
    } else {
      walked_.mismatched.push_back(std::move(both));
    }
  }

  void flag(int value) { walked_.flags[active_.place()] = value; }
  void readActive() { active_.read(walked_.steps); }
  void readCompared() { compared_.read(walked_.steps); }

  const World& world_;
  const CaseOrder& order_;
  std::vector<ComparedVariable>& variables_;
  Reader active_;
  Reader compared_;
  WalkedCases walked_;
};

}  // namespace

WalkedCases walk(const World& world, const CaseOrder& order, std::vector<ComparedVariable>& variables,
                 bool usesFilter) {
  return Walk(world, order, variables, usesFilter).run();
}

bool valuesAgree(const World& world, const Variable& active, const Value& left, const Value& right) {
  // Texts of different widths are equal when all that the longer one has more is blanks.
  if (!active.isNumber()) return withoutTrailingBlanks(textOf(left)) == withoutTrailingBlanks(textOf(right));
  const double here = numberOf(left);
  const double there = numberOf(right);
  if (std::bit_cast<std::uint64_t>(here) == std::bit_cast<std::uint64_t>(there)) return true;
  if (!isPlainNumberFormat(active.format.type) || here == systemMissing || there == systemMissing) return false;
  return areNear(here, there, world.tolerance);
}

}  // namespace workbench::tests::model
