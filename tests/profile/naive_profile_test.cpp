// The profile against one done by hand, over random pairs of datasets: plain lists, walked without the plug-in.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <map>
#include <optional>

#include "tests/model/host_dataset.h"
#include "tests/model/random_choice.h"
#include "tests/model/random_dataset.h"
#include "tests/model/random_pairs.h"
#include "tests/procedure/table_text.h"
#include "tests/profile/profile_run.h"

namespace workbench::tests::naive_profile_test {

using model::Case;
using model::numberOf;
using model::textOf;
using model::Variable;

constexpr int usualPairs = 200;

struct Pair {
  const Case* active;
  const Case* compared;
};

struct Pairing {
  std::vector<Pair> pairs;
  std::size_t onlyActive = 0;
  std::size_t onlyCompared = 0;
};

// The cases of one ID stand together; the first of them in one dataset belongs to the first in the other.
Pairing pairedById(const model::Dataset& active, std::size_t activeId, const model::Dataset& compared,
                   std::size_t comparedId) {
  std::map<double, std::pair<std::vector<const Case*>, std::vector<const Case*>>> byId;
  for (const Case& one : active.cases) byId[numberOf(one[activeId])].first.push_back(&one);
  for (const Case& one : compared.cases) byId[numberOf(one[comparedId])].second.push_back(&one);
  Pairing pairing;
  for (const auto& [id, cases] : byId) {
    const std::size_t shared = std::min(cases.first.size(), cases.second.size());
    for (std::size_t index = 0; index < shared; ++index) {
      pairing.pairs.push_back({cases.first[index], cases.second[index]});
    }
    pairing.onlyActive += cases.first.size() - shared;
    pairing.onlyCompared += cases.second.size() - shared;
  }
  return pairing;
}

Pairing pairedByPosition(const model::Dataset& active, const model::Dataset& compared) {
  Pairing pairing;
  const std::size_t shared = std::min(active.cases.size(), compared.cases.size());
  for (std::size_t index = 0; index < shared; ++index) {
    pairing.pairs.push_back({&active.cases[index], &compared.cases[index]});
  }
  pairing.onlyActive = active.cases.size() - shared;
  pairing.onlyCompared = compared.cases.size() - shared;
  return pairing;
}

bool isMissing(const Variable& variable, double number) {
  const auto value = [&](std::size_t place) { return numberOf(variable.missing.values[place]); };
  const int code = variable.missing.code;
  bool found = number == model::systemMissing;
  if (code == -2 || code == -3) found = found || (value(0) <= number && number <= value(1));
  if (code == -3) found = found || number == value(2);
  for (int place = 0; code >= 1 && code <= 3 && place < code; ++place) {
    found = found || number == value(static_cast<std::size_t>(place));
  }
  return found;
}

bool areEqual(const Variable& variable, const model::Value& left, const model::Value& right) {
  if (!variable.isNumber()) {
    return model::withoutTrailingBlanks(textOf(left)) == model::withoutTrailingBlanks(textOf(right));
  }
  const double one = numberOf(left);
  const double other = numberOf(right);
  if (std::bit_cast<std::uint64_t>(one) == std::bit_cast<std::uint64_t>(other)) return true;
  const bool isPlain = variable.format.type >= 3 && variable.format.type <= 37;
  if (!isPlain || one == model::systemMissing || other == model::systemMissing) return false;
  return one == other || std::fabs(one - other) <= 1e-12 * std::max(std::fabs(one), std::fabs(other));
}

// What the tables say of one variable, as lines.
struct Expected {
  std::size_t different = 0;
  std::size_t valid = 0;
  std::size_t validDifferent = 0;
  std::size_t missing[3] = {0, 0, 0};  // in the active dataset only, in the other only, in both
  long double sum = 0;
  long double absoluteSum = 0;
  double largest = 0;
  std::map<std::string, std::size_t> changes;
};

std::string changeKey(const model::Value& from, const model::Value& to) {
  const auto text = [](const model::Value& value) {
    if (const auto* number = std::get_if<double>(&value)) return fmt::format("{}", *number);
    return fmt::format("\"{}\"", model::withoutTrailingBlanks(textOf(value)));
  };
  return text(from) + ">" + text(to);
}

Expected expectedOf(const Pairing& pairing, const Variable& active, std::size_t activeIndex, const Variable& compared,
                    std::size_t comparedIndex) {
  Expected expected;
  for (const Pair& pair : pairing.pairs) {
    const model::Value& from = (*pair.active)[activeIndex];
    const model::Value& to = (*pair.compared)[comparedIndex];
    const bool equal = areEqual(active, from, to);
    if (!equal) {
      ++expected.different;
      ++expected.changes[changeKey(from, to)];
    }
    if (!active.isNumber()) continue;
    const bool fromMissing = isMissing(active, numberOf(from));
    const bool toMissing = isMissing(compared, numberOf(to));
    if (fromMissing || toMissing) {
      ++expected.missing[fromMissing && toMissing ? 2 : (fromMissing ? 0 : 1)];
      continue;
    }
    ++expected.valid;
    if (equal) continue;
    ++expected.validDifferent;
    const long double difference = static_cast<long double>(numberOf(to)) - static_cast<long double>(numberOf(from));
    expected.sum += difference;
    expected.absoluteSum += std::fabs(difference);
    const double rounded = numberOf(to) - numberOf(from);
    if (expected.validDifferent == 1 || std::fabs(rounded) > std::fabs(expected.largest)) expected.largest = rounded;
  }
  return expected;
}

double valueIn(const ProcedureRun& run, const std::string& table, const std::string& variable, const char* column) {
  const std::string text = run.cell(table, {variable, column});
  return text == "-" ? NAN : std::strtod(text.c_str(), nullptr);
}

// The last digits of a sum of huge and small numbers are beyond a long double as well.
bool isNear(double value, long double expected, long double magnitude) {
  if (std::fabs(expected) > DBL_MAX) return std::isinf(value);
  return std::fabs(static_cast<long double>(value) - expected) <= 1e-14L * magnitude + DBL_TRUE_MIN;
}

// What the profile says otherwise than it should; empty when all is well.
std::string disagreement(const ProcedureRun& run, const std::string& name, const Expected& expected, bool isNumber,
                         std::size_t pairs) {
  const auto differs = [&](const std::string& table, const char* column, double wanted) {
    const double found = valueIn(run, table, name, column);
    if (found == wanted) return std::string();
    return fmt::format("{} of {}: {} instead of {}\n", column, name, found, wanted);
  };
  const auto count = [](std::size_t number) { return static_cast<double>(number); };
  std::string all = differs(keys::agreement, "PD_ValuesCompared", count(pairs)) +
                    differs(keys::agreement, "PD_ValuesDiffering", count(expected.different)) +
                    differs(keys::agreement, "PD_ValuesAgreeing", count(pairs - expected.different));
  if (!isNumber) return all;
  all += differs(keys::differences, "PD_PairsCompared", count(expected.valid)) +
         differs(keys::differences, "PD_PairsDiffering", count(expected.validDifferent)) +
         differs(keys::differences, "PD_MissingInActive", count(expected.missing[0])) +
         differs(keys::differences, "PD_MissingInComparison", count(expected.missing[1])) +
         differs(keys::differences, "PD_MissingInBoth", count(expected.missing[2]));
  // What has the bits of the system-missing value is shown as its neighbour.
  const double largest = std::max(expected.largest, std::nextafter(-DBL_MAX, 0.0));
  if (expected.validDifferent > 0) {
    all += differs(keys::differences, "PD_Difference", std::isinf(expected.largest) ? expected.largest : largest);
  }
  if (expected.valid == 0) return all;
  const auto valid = static_cast<long double>(expected.valid);
  const long double meanAbsolute = expected.absoluteSum / valid;
  const auto isMean = [&](const char* column, long double mean) {
    return isNear(valueIn(run, keys::differences, name, column), mean, meanAbsolute);
  };
  if (!isMean("PD_Mean", expected.sum / valid)) all += "mean of " + name + "\n";
  if (!isMean("PD_MeanAbsolute", meanAbsolute)) all += "mean absolute of " + name + "\n";
  return all;
}

// The counts of all changes, listed or not, of every variable: from the table without a limit that matters.
std::string changeDisagreement(const ProcedureRun& run, const std::map<std::string, Expected>& expected) {
  std::map<std::string, std::map<std::string, std::size_t>> found;
  const output::Table* table = run.table(keys::changes);
  const auto& nodes = table->dimensions[0].nodes;
  for (const output::Category& group : nodes) {
    const auto* variable = std::get_if<output::VariableText>(&group.title.held);
    if (variable == nullptr) continue;
    for (const std::int32_t child : group.children) {
      const auto* change = std::get_if<output::CompositeText>(&nodes[static_cast<std::size_t>(child)].title.held);
      std::string key;
      for (const output::Text& item : change->items) {
        const output::Text* value = &item;
        if (const auto* labelled = std::get_if<output::CompositeText>(&item.held)) value = &labelled->items[0];
        const auto* held = std::get_if<output::ValueText>(&value->held);
        const model::Value plain = held == nullptr ? model::Value(std::string()) : held->value;
        key += (key.empty() ? "" : ">") + changeKey(plain, plain).substr(0, changeKey(plain, plain).find('>'));
      }
      for (std::size_t cell = 0; cell < table->cells.size(); ++cell) {
        if (table->at(cell)[0] != child) continue;
        const auto count = std::get<output::NumberText>(table->cells[cell].content->held);
        if (count.format == BpFormat::count) found[variable->name][key] += static_cast<std::size_t>(count.value);
      }
    }
  }
  std::string all;
  for (const auto& [name, one] : expected) {
    if (found[name] != one.changes) all += fmt::format("changes of {}\n", name);
  }
  return all;
}

std::string profileDisagreement(const model::Dataset& active, const model::Dataset& compared, bool byId) {
  ProfileRun run(model::toHost(active), model::toHost(compared));
  run.run(std::string("/COMPDATASET=b /VARIABLES=ALL") + (byId ? " /CASEID=caseId" : "") + " /OUTPUT CHANGES=1000");
  if (run.outcome() != "completed" || !run.command().openedTable()) return run.outcome() + run.messages();

  const Pairing pairing =
      byId ? pairedById(active, *model::placeOf(active, "caseId"), compared, *model::placeOf(compared, "caseId"))
           : pairedByPosition(active, compared);
  std::string all;
  std::map<std::string, Expected> expected;
  for (std::size_t index = 0; index < active.variables.size(); ++index) {
    const Variable& variable = active.variables[index];
    const auto partner = model::placeOf(compared, variable.name);
    if (!partner || (byId && model::sameName(variable.name, "caseId"))) continue;
    const Variable& other = compared.variables[*partner];
    if (variable.isNumber() != other.isNumber()) continue;
    expected[variable.name] = expectedOf(pairing, variable, index, other, *partner);
    const bool hasDifferences = variable.isNumber() && variable.format.type != 44;
    all += disagreement(run, variable.name, expected[variable.name], hasDifferences, pairing.pairs.size());
  }
  if (run.cell(keys::pairedCases, {"PD_OnlyInActive", "PD_Count"}) != std::to_string(pairing.onlyActive))
    all += "only a\n";
  if (run.cell(keys::pairedCases, {"PD_OnlyInComparison", "PD_Count"}) != std::to_string(pairing.onlyCompared)) {
    all += "only b\n";
  }
  return all + changeDisagreement(run, expected);
}

struct Sample {
  model::Dataset active;
  model::Dataset compared;
  bool byId = false;
};

void showValue(const Sample& sample, std::ostream& out) {
  out << "active\n" << model::describe(sample.active) << "compared\n" << model::describe(sample.compared);
}

// Case IDs that often repeat, in order; none of them a zero with a sign, which counts as another one.
void giveCaseIds(model::Dataset& dataset) {
  Variable id;
  id.name = "caseId";
  dataset.variables.push_back(id);
  for (Case& one : dataset.cases) one.emplace_back(static_cast<double>(model::upTo(8)));
  model::sortCases(dataset, {id.name}, {0});
}

Sample anySample() {
  Sample sample;
  sample.byId = model::oneIn(2);
  sample.active = model::anyDataset(4, 12);
  sample.compared = model::likenessOf(sample.active);
  if (!sample.byId) return sample;
  giveCaseIds(sample.active);
  giveCaseIds(sample.compared);
  return sample;
}

TEST(Profile, AgreesWithOneDoneByHand) {
  model::forRandomPairs(usualPairs, [] {
    const Sample sample = *rc::gen::exec(anySample);
    const std::string difference = profileDisagreement(sample.active, sample.compared, sample.byId);
    RC_LOG() << difference;
    RC_ASSERT(difference == "");
  });
}

}  // namespace workbench::tests::naive_profile_test
