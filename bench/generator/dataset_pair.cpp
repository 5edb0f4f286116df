#include "bench/generator/dataset_pair.h"

#include <fmt/format.h>

#include <string>
#include <vector>

#include "bench/generator/case_file.h"
#include "bench/generator/cell.h"
#include "bench/generator/chance.h"

namespace bench {
namespace {

std::vector<std::string> valueNames(const Plan& plan) {
  std::vector<std::string> names;
  for (int number = 1; number <= plan.numericValues(); ++number) names.push_back(fmt::format("n{}", number));
  for (int number = 1; number <= plan.stringValues(); ++number) names.push_back(fmt::format("s{}", number));
  return names;
}

std::string header(const Plan& plan, const std::vector<std::string>& names) {
  return fmt::format("{}{}\n", plan.key == Key::none ? "" : "id,", fmt::join(names, ","));
}

// Makes the cases one after the other and counts what it makes differ.
class DatasetPair {
 public:
  DatasetPair(const Plan& plan, const std::vector<std::string>& names)
      : plan_(plan),
        chance_(plan.seed),
        first_(plan.folder / "a.csv", header(plan, names), plan.order),
        second_(plan.folder / "b.csv", header(plan, names), plan.order),
        differing_(plan.differing(), plan.pairs()),
        cells_(names.size()),
        mismatches_(names.size()) {}

  void write() {
    if (plan_.key == Key::none) {
      writeByPosition();
    } else {
      writeByKey();
    }
    first_.close(chance_);
    second_.close(chance_);
  }

  const std::vector<std::int64_t>& mismatches() const { return mismatches_; }

 private:
  // The cases without a partner are spread over all of them, as many in either file.
  void writeByKey() {
    const std::int64_t identities = plan_.pairs() + 2 * plan_.unpaired();
    Selection unpaired(2 * plan_.unpaired(), identities);
    Selection onlyInFirst(plan_.unpaired(), 2 * plan_.unpaired());
    for (std::int64_t id = 1; id <= identities; ++id) {
      Cell key;
      if (plan_.key == Key::string) {
        key = stringKey(id, identities, chance_);
      } else {
        key.append(id);
      }
      drawCells();
      if (unpaired.takes(chance_)) {
        (onlyInFirst.takes(chance_) ? first_ : second_).append(line(key));
      } else {
        writePair(key);
      }
    }
  }

  // The first file is longer.
  void writeByPosition() {
    for (std::int64_t row = 1; row <= plan_.rows; ++row) {
      drawCells();
      if (row <= plan_.pairs()) {
        writePair(Cell());
      } else {
        first_.append(line(Cell()));
      }
    }
  }

  void writePair(const Cell& key) {
    first_.append(line(key));
    const bool differs = differing_.takes(chance_);
    if (differs) changeCells();
    second_.append(differs || plan_.variedNotation ? line(key) : line_);
  }

  void drawCells() {
    for (int variable = 0; variable < plan_.values(); ++variable) {
      cells_[static_cast<std::size_t>(variable)] =
          chance_.percent(plan_.missingPercent) ? Cell() : randomValue(variable);
    }
  }

  // Changes one or two variables of the case.
  void changeCells() {
    const auto first = static_cast<int>(chance_.below(plan_.values()));
    const auto second = static_cast<int>(chance_.below(plan_.values()));
    change(first);
    if (second != first && chance_.percent(50)) change(second);
  }

  void change(int variable) {
    Cell& cell = cells_[static_cast<std::size_t>(variable)];
    const Cell before = cell;
    while (cell == before) cell = randomValue(variable);
    ++mismatches_[static_cast<std::size_t>(variable)];
  }

  Cell randomValue(int variable) { return isNumber(variable) ? randomNumber(variable, chance_) : randomWord(chance_); }

  bool isNumber(int variable) const { return variable < plan_.numericValues(); }

  // Valid until the next call.
  const std::string& line(const Cell& key) {
    line_ = key.text();
    for (int variable = 0; variable < plan_.values(); ++variable) {
      if (!line_.empty() || variable > 0) line_ += ',';
      const Cell& cell = cells_[static_cast<std::size_t>(variable)];
      const bool isVaried = plan_.variedNotation && isNumber(variable) && !cell.isEmpty();
      line_ += isVaried ? inAnyNotation(cell, chance_).text() : cell.text();
    }
    line_ += '\n';
    return line_;
  }

  const Plan& plan_;
  Chance chance_;
  CaseFile first_;
  CaseFile second_;
  Selection differing_;
  std::vector<Cell> cells_;  // of the case at hand, the ID not among them
  std::vector<std::int64_t> mismatches_;
  std::string line_;
};

}  // namespace

nlohmann::ordered_json writeDatasetPair(const Plan& plan) {
  const std::vector<std::string> names = valueNames(plan);
  DatasetPair pair(plan, names);
  pair.write();
  nlohmann::ordered_json truth = {{"pairs", plan.pairs()},
                                  {"differingPairs", plan.differing()},
                                  {"onlyInFirst", plan.unpaired()},
                                  {"onlyInSecond", plan.key == Key::none ? 0 : plan.unpaired()}};
  for (std::size_t at = 0; at < names.size(); ++at) truth["mismatches"][names[at]] = pair.mismatches()[at];
  return truth;
}

}  // namespace bench
