#include "tests/model/random_dataset.h"

#include <algorithm>
#include <cmath>

#include "tests/model/random_choice.h"

namespace workbench::tests::model {

namespace {

const std::vector<std::string>& variableNames() {
  // A flag variable's name may be taken.
  static const std::vector<std::string> names = {"a",   "b", "c", "d", "\u00e9t\u00e9", "two words", "CasesCompare",
                                                 "flag"};
  return names;
}

const std::vector<std::string>& someTexts() {
  // Among them bytes that lie below a blank, NUL too, and above all letters.
  static const std::vector<std::string> texts = {"",      "a",    "b",         "ab",      "abc",    "abcdefghi",
                                                 "A",     "Z",    " a",        "\u00e9",  "\u00e4", "abcdefghz",
                                                 "a\x01", "\x01", {"a\0b", 3}, {"a\0", 2}};
  return texts;
}

double anyNumber() {
  static const std::vector<double> numbers = {0,
                                              1,
                                              2,
                                              3,
                                              1,
                                              2,
                                              0,
                                              3,
                                              systemMissing,
                                              1 + 1e-13,
                                              1 + 1e-11,
                                              -0.0,
                                              -1,
                                              0.1 + 0.2,
                                              0.3,
                                              1e300,
                                              -1e300,
                                              5e-324,
                                              std::nextafter(-DBL_MAX, 0),
                                              DBL_MAX};
  return anyOf(numbers);
}

std::string anyLabel() { return anyOf<std::string>({"one", "two", "", "One", "CD_Left", "^1 (2)"}); }

void addValueLabels(Variable& variable) {
  std::vector<Value> values;
  if (variable.isNumber()) {
    values = {-1.0, 0.0, 1.0, 2.5};
    if (oneIn(4)) values = {-0.0, 3.0};
  } else {
    values = {std::string(), std::string("A"), std::string("a"), std::string("abcdefghi"), std::string("\u00e9")};
  }
  for (const Value& value : values) {
    if (oneIn(2)) variable.valueLabels.emplace_back(value, anyLabel());
  }
}

Value anyMissingValue(const Variable& variable) {
  if (variable.isNumber()) return anyOf<double>({9, 8, 0, -0.0, 1});
  return ofWidth(anyOf<std::string>({"", "NA", "x", "ABCDEFGH"}), 8);
}

void setMissingValues(Variable& variable) {
  variable.missing.code = anyOf<int>({0, 1, 2, 3, -2, -3, -1, 4, -4});
  for (Value& value : variable.missing.values) value = anyMissingValue(variable);
  if (!variable.isNumber()) return;
  if (oneIn(3)) variable.missing.values[0] = std::nextafter(-DBL_MAX, 0);
  if (oneIn(3)) variable.missing.values[1] = DBL_MAX;
}

void addAttribute(Variable& variable) {
  const std::string name = anyOf<std::string>({"Unit", "unit", "$Host", "Source", "\u00c9"});
  const bool isThere = std::any_of(variable.attributes.begin(), variable.attributes.end(),
                                   [&](const Attribute& attribute) { return attribute.name == name; });
  if (isThere) return;
  variable.attributes.push_back(
      {name, anyOf<std::vector<std::string>>({{"EUR"}, {"eur"}, {"a", "b"}, {"a, b"}, {""}, {}})});
}

int anyFormatType(const Variable& variable) {
  if (!variable.isNumber()) return 1;
  return anyOf<int>({5, 5, 41, 3, 42, 4, 16, 43, 17, 31, 32, 33, 34, 35, 36, 37});
}

// The same names with other variables here and there, some gone, a new one, in another order.
std::vector<Variable> changedVariables(std::vector<Variable> variables) {
  for (Variable& variable : variables) {
    if (oneIn(8)) {
      variable = anyVariable(variable.name);
    } else if (oneIn(6) && !variable.isNumber()) {
      const int width = variable.width;
      variable.width = anyOf<int>({1, 2, 9, 12, 20});
      if (variable.format.width == width) variable.format.width = variable.width;
    }
    while (oneIn(3)) variable = withOtherProperty(variable);
    if (oneIn(5)) variable.name = inAnyCase(variable.name);
    if (oneIn(30)) variable.name = "\u00c9T\u00c9";
  }
  if (oneIn(5) && variables.size() > 1) {
    variables.erase(variables.begin() + static_cast<std::ptrdiff_t>(upTo(variables.size() - 1)));
  }
  if (oneIn(5)) variables.insert(variables.begin(), anyVariable("other"));
  if (oneIn(4)) variables = shuffled(std::move(variables));
  // A dictionary has every name once.
  std::vector<Variable> kept;
  for (const Variable& variable : variables) {
    const bool isTaken = std::any_of(kept.begin(), kept.end(),
                                     [&](const Variable& other) { return sameName(other.name, variable.name); });
    if (!isTaken) kept.push_back(variable);
  }
  return kept;
}

// A case that has the values of another one where the variables are alike.
Case likenessOf(const Dataset& original, const Case& values, const Dataset& likeness) {
  Case made = anyCase(likeness);
  for (std::size_t place = 0; place < likeness.variables.size(); ++place) {
    const Variable& variable = likeness.variables[place];
    const auto there = placeOf(original, variable.name);
    if (!there || oneIn(12) || original.variables[*there].isNumber() != variable.isNumber()) continue;
    made[place] = values[*there];
    if (!variable.isNumber()) made[place] = ofWidth(textOf(values[*there]), static_cast<std::size_t>(variable.width));
  }
  return made;
}

}  // namespace

std::string inAnyCase(std::string word) {
  for (char& character : word) {
    const bool isLetter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
    if (isLetter && oneIn(3)) character = static_cast<char>(character ^ 0x20);
  }
  return word;
}

Variable anyVariable(const std::string& name, const std::vector<int>& widths) {
  Variable variable;
  variable.name = name;
  variable.width = anyOf(widths);
  variable.format.type = anyFormatType(variable);
  variable.format.width = variable.isNumber() ? anyOf<int>({8, 10}) : variable.width;
  variable.format.decimals = variable.isNumber() ? anyOf<int>({0, 2}) : 0;
  for (Value& value : variable.missing.values) value = anyMissingValue(variable);
  if (oneIn(4)) variable.label = anyLabel();
  if (oneIn(4)) addValueLabels(variable);
  if (oneIn(5)) setMissingValues(variable);
  while (oneIn(4)) addAttribute(variable);
  if (oneIn(8)) variable.columns = 12;
  if (oneIn(8)) variable.alignment = anyOf<int>({0, 2, 3});
  if (oneIn(8)) variable.level = anyOf<int>({1, 2, 0, 4, 5, 6, -1});
  if (oneIn(8)) variable.role = static_cast<int>(upTo(9)) - 1;
  return variable;
}

Variable withOtherProperty(Variable variable) {
  switch (upTo(8)) {
    case 0:
      variable.label = anyLabel();
      break;
    case 1:
      variable.format.width = 11;
      break;
    case 2:
      if (!variable.valueLabels.empty() && oneIn(2)) {
        variable.valueLabels[upTo(variable.valueLabels.size() - 1)].second = anyLabel();
      } else {
        variable.valueLabels.clear();
        addValueLabels(variable);
      }
      break;
    case 3:
      if (oneIn(2)) {
        variable.missing.values[upTo(2)] = anyMissingValue(variable);
      } else {
        setMissingValues(variable);
      }
      break;
    case 4:
      variable.columns = 20;
      break;
    case 5:
      variable.alignment = static_cast<int>(upTo(3));
      break;
    case 6:
      variable.level = static_cast<int>(upTo(6));
      break;
    case 7:
      variable.role = static_cast<int>(upTo(8));
      break;
    default:
      if (oneIn(2)) variable.attributes.clear();
      addAttribute(variable);
  }
  return variable;
}

Value anyValue(const Variable& variable) {
  if (variable.isNumber()) return anyNumber();
  return ofWidth(anyOf(someTexts()), static_cast<std::size_t>(variable.width));
}

Case anyCase(const Dataset& dataset) {
  Case made;
  for (const Variable& variable : dataset.variables) made.push_back(anyValue(variable));
  return made;
}

Dataset anyDataset(std::size_t mostVariables, std::size_t mostCases) {
  Dataset dataset;
  std::vector<std::string> names = shuffled(variableNames());
  if (oneIn(30)) names[0] = "all";  // a keyword of variable lists, so no list can name it
  const std::size_t variables = oneIn(40) ? 0 : 1 + upTo(mostVariables - 1);
  for (std::size_t place = 0; place < variables; ++place) dataset.variables.push_back(anyVariable(names[place]));
  for (std::size_t left = upTo(mostCases); left > 0; --left) {
    dataset.cases.push_back(anyCase(dataset));
    if (oneIn(5)) dataset.cases.push_back(dataset.cases.back());
  }
  return dataset;
}

Dataset likenessOf(const Dataset& dataset, Variables variables) {
  Dataset likeness;
  likeness.variables =
      variables == Variables::maybeOthers && oneIn(2) ? changedVariables(dataset.variables) : dataset.variables;
  const bool isCopy = oneIn(4);
  for (const Case& one : dataset.cases) {
    if (isCopy && likeness.variables.size() == dataset.variables.size()) {
      likeness.cases.push_back(likenessOf(dataset, one, likeness));
      continue;
    }
    if (!oneIn(6)) likeness.cases.push_back(likenessOf(dataset, one, likeness));
    if (oneIn(6)) likeness.cases.push_back(anyCase(likeness));
  }
  return likeness;
}

void addRoles(Dataset& dataset) {
  std::vector<std::size_t> numbers;
  for (std::size_t place = 0; place < dataset.variables.size(); ++place) {
    if (dataset.variables[place].isNumber()) numbers.push_back(place);
  }
  if (!numbers.empty() && oneIn(4)) dataset.filter = anyOf(numbers);
  if (!numbers.empty() && oneIn(6)) dataset.weight = anyOf(numbers);
  for (std::size_t place = 0; place < dataset.variables.size(); ++place) {
    if (oneIn(10)) dataset.split.push_back(place);
  }
  dataset.split = shuffled(dataset.split);
  if (oneIn(6)) dataset.attributes.push_back({"Survey", {"2026", "spring"}});
  if (oneIn(12)) dataset.attributes.push_back({"$Host", {"1"}});
}

void sortCases(Dataset& dataset, const std::vector<std::string>& names, const std::vector<int>& widths) {
  const auto isBefore = [&](const Case& left, const Case& right) {
    for (std::size_t id = 0; id < names.size(); ++id) {
      const auto place = placeOf(dataset, names[id]);
      if (!place) continue;
      Value one = left[*place];
      Value two = right[*place];
      if (one.index() == 1) {
        const std::size_t bytes = widths[id] == 0 ? std::string::npos : static_cast<std::size_t>(widths[id]);
        one = withoutTrailingBlanks(textOf(one).substr(0, bytes));
        two = withoutTrailingBlanks(textOf(two).substr(0, bytes));
      }
      if (one != two) return one < two;
    }
    return false;
  };
  std::stable_sort(dataset.cases.begin(), dataset.cases.end(), isBefore);
}

}  // namespace workbench::tests::model
