// Laws about changes that were planted: what was changed is what is reported, no more and no less.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/model/cell_text.h"
#include "tests/model/law_samples.h"
#include "tests/model/random_choice.h"
#include "tests/model/random_pairs.h"
#include "tests/model/random_sample.h"
#include "tests/model/run_facts.h"

namespace workbench::tests::model::planted_changes_test {

constexpr int usualPairs = 1500;

// A value that differs from this one in any case: not by a blank at the end, and by more than near numbers may.
Value otherThan(const Value& value) {
  if (value.index() == 0) return std::fabs(numberOf(value)) < 1000 ? numberOf(value) + 7 : Value(7.0);
  std::string text = textOf(value);
  text[upTo(text.size() - 1)] = '~';
  return text;
}

struct PlantedCases {
  World world;
  std::map<std::string, std::size_t> byVariable;  // the changes
  std::vector<double> flags;                      // what they must lead to
  std::size_t withoutActivePartner = 0;           // cases that only the comparison dataset has
};
void showValue(const PlantedCases& planted, std::ostream& stream) { showValue(Sample{planted.world, {}}, stream); }

// Premises: a case ID that is different in every case and in order; the comparison dataset is a copy in which values of
// other variables were changed, cases taken out and cases put in.
PlantedCases plantInCases() {
  PlantedCases planted;
  const Dataset original = numberedDataset();
  Dataset copy = original;
  copy.cases.clear();
  for (const Variable& variable : original.variables) planted.byVariable[folded(variable.name)] = 0;
  for (Case one : original.cases) {
    if (oneIn(8)) {
      Case further = anyCase(copy);
      further[0] = numberOf(one[0]) - 0.5;
      copy.cases.push_back(further);
      ++planted.withoutActivePartner;
    }
    if (oneIn(8)) {
      planted.flags.push_back(-1);
      continue;
    }
    bool isChanged = false;
    for (std::size_t place = 1; place < one.size(); ++place) {
      if (!oneIn(6)) continue;
      one[place] = otherThan(one[place]);
      ++planted.byVariable[folded(original.variables[place].name)];
      isChanged = true;
    }
    planted.flags.push_back(isChanged ? 1 : 0);
    copy.cases.push_back(one);
  }
  planted.world = worldOf(original, copy);
  return planted;
}

TEST(Law, PlantedChangesOfValuesAreExactlyTheReportedOnes) {
  forRandomPairs(usualPairs, [] {
    const PlantedCases planted = chosen(plantInCases);
    const ObservedRun observed(planted.world, comparingAll({"id"}));
    const RunFacts facts = factsOf(observed);
    RC_ASSERT(facts.outcome == "completed");
    RC_ASSERT(facts.flags == planted.flags);
    RC_ASSERT(facts.mismatched == facts.flagged(1));
    RC_ASSERT(facts.comparedRead - facts.pairs == planted.withoutActivePartner);
    RC_ASSERT(facts.activeRead - facts.pairs == facts.flagged(-1));
    if (facts.mismatched > 0) RC_ASSERT(facts.byVariable == planted.byVariable);

    // As many cells with two values as there are changes, each in a case that is flagged.
    std::size_t changes = 0;
    for (const auto& [name, count] : planted.byVariable) changes += count;
    std::size_t shown = 0;
    const output::Table* table = observed.run().table("CD_CaseByCaseComparisonTableName");
    for (std::size_t index = 0; table != nullptr && index < table->cells.size(); ++index) {
      shown += passed(*table->cells[index].content).starts_with("(1) ^1\n(2) ^2") ? 1 : 0;
    }
    RC_ASSERT(shown == changes);
    RC_TAG(changes == 0 ? "no change" : changes == 1 ? "one change" : "more changes");
  });
}

// Premises: the comparison dataset is a copy in which, of some variables, one property each was changed to something
// that differs; every missing-value code is one that is known.
struct PlantedProperties {
  World world;
  std::set<std::string> changed;  // as differingProperties() tells them
};
void showValue(const PlantedProperties& planted, std::ostream& stream) { showValue(Sample{planted.world, {}}, stream); }

std::string plantIn(Variable& variable) {
  switch (upTo(8)) {
    case 0:
      variable.label = variable.label.value_or("") + "~";
      return "CD_AttributeLabel";
    case 1:
      variable.format.width += 1;
      return "CD_AttributeWidth";
    case 2:
      variable.valueLabels.emplace_back(variable.isNumber() ? Value(77.0) : Value("~~"), "planted");
      return "CD_AttributeValueLabels";
    case 3: {
      if (variable.missing.code == 0) variable.missing.code = anyOf<int>({1, 2, -2, 3, -3});
      Value& value = variable.missing.values[upTo(static_cast<std::size_t>(std::abs(variable.missing.code)) - 1)];
      value = otherThan(value);
      return "CD_AttributeMissing";
    }
    case 4:
      variable.columns += 1;
      return "CD_AttributeColumns";
    case 5:
      variable.alignment += 1;
      return "CD_AttributeAlign";
    case 6:
      variable.level += 1;
      return "CD_AttributeMeasure";
    case 7:
      variable.role += 1;
      return "CD_AttributeRole";
    default:
      variable.attributes.push_back({"planted", {"yes"}});
      return "planted";
  }
}

PlantedProperties plantInDictionary() {
  PlantedProperties planted;
  Dataset original = lawDataset();
  for (Variable& variable : original.variables) {
    if (variable.missing.code == -1 || variable.missing.code < -3 || variable.missing.code > 3)
      variable.missing.code = 0;
  }
  Dataset copy = original;
  for (Variable& variable : copy.variables) {
    if (oneIn(2)) planted.changed.insert(folded(variable.name) + ' ' + plantIn(variable));
  }
  planted.world = worldOf(original, copy);
  return planted;
}

TEST(Law, PlantedChangesOfPropertiesAreExactlyTheReportedOnes) {
  forRandomPairs(usualPairs, [] {
    const PlantedProperties planted = chosen(plantInDictionary);
    const ObservedRun observed(planted.world, comparingAll());
    RC_ASSERT(differingProperties(observed) == planted.changed);
    RC_ASSERT((observed.run().table("CD_DictCompTableName") == nullptr) == planted.changed.empty());
    RC_TAG(planted.changed.empty() ? "no change" : "changes");
  });
}

// Premises: as above, in datasets whose cases fill several blocks.
TEST(Law, PlantedChangesAreFoundInDatasetsOfManyBlocks) {
  forRandomPairs(3, [] {
    const std::size_t cases = chosen([] { return 90000 + upTo(60000); });
    Dataset original;
    original.variables = {Variable{}, Variable{}, Variable{}};
    original.variables[0].name = "id";
    original.variables[1].name = "x";
    original.variables[2].name = "t";
    original.variables[2].width = 9;
    original.variables[2].format = {1, 9, 0};
    for (std::size_t row = 0; row < cases; ++row) {
      original.cases.push_back({static_cast<double>(row), static_cast<double>(row % 7), std::string("unchanged")});
    }
    Dataset copy = original;
    std::set<std::size_t> inNumbers;
    std::set<std::size_t> inTexts;
    for (int change = 0; change < 40; ++change) {
      const std::size_t row = chosen([&] { return upTo(cases - 1); });
      const std::size_t place = 1 + chosen([] { return upTo(1); });
      if ((place == 1 ? inNumbers : inTexts).insert(row).second)
        copy.cases[row][place] = otherThan(copy.cases[row][place]);
    }
    std::vector<double> flags(cases, 0);
    for (const std::size_t row : inNumbers) flags[row] = 1;
    for (const std::size_t row : inTexts) flags[row] = 1;
    const RunFacts facts = factsOf(ObservedRun(worldOf(original, copy), comparingAll({"id"})));
    RC_ASSERT(facts.pairs == cases);
    RC_ASSERT(facts.byVariable ==
              (std::map<std::string, std::size_t>{{"id", 0}, {"x", inNumbers.size()}, {"t", inTexts.size()}}));
    RC_ASSERT(facts.flags == flags);
  });
}

}  // namespace workbench::tests::model::planted_changes_test
