// The procedure against a comparison done by hand, over random small datasets.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cctype>

#include "tests/procedure/naive_comparison.h"
#include "tests/procedure/procedure_run.h"
#include "tests/procedure/table_keys.h"
#include "tests/procedure/table_text.h"
#include "workbench/runtime/journal.h"

namespace workbench::tests {
namespace {

// Numbers of a range are all as likely, however large the sample is to be.
std::size_t below(std::size_t number) {
  return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange<std::size_t>(0, number));
}
bool oneIn(std::size_t number) { return below(number) == 0; }
int upTo(int most) { return static_cast<int>(below(static_cast<std::size_t>(most) + 1)); }

naive::Value anyValue(const naive::Variable& variable) {
  naive::Value value;
  if (variable.width == 0) {
    const double near = 1 + 1e-13;
    const std::vector<double> numbers = {0, 1, 2, 3, 1, 2, near, -0.0, missing, -1};
    value.number = numbers[below(numbers.size())];
  } else {
    const std::vector<std::string> texts = {"", "a", "ab", "b", "abc", "abcdefghi", "abcdefghz", " a", "\xc3\xa9"};
    value.text = texts[below(texts.size())];
    value.text.resize(static_cast<std::size_t>(variable.width), ' ');
  }
  return value;
}

naive::Case anyCase(const naive::Dataset& dataset) {
  naive::Case made;
  for (const naive::Variable& variable : dataset.variables) made.push_back(anyValue(variable));
  return made;
}

naive::Variable anyVariable(const std::string& name) {
  const std::vector<int> widths = {0, 0, 0, 1, 2, 9, 12};
  naive::Variable variable;
  variable.name = name;
  variable.width = widths[below(widths.size())];
  variable.isPlainNumber = !oneIn(4);
  return variable;
}

// The same variables in another order, some of another width or type, some gone, and a new one.
std::vector<naive::Variable> changed(std::vector<naive::Variable> variables) {
  for (naive::Variable& variable : variables) {
    if (oneIn(4)) variable = anyVariable(variable.name);
    if (oneIn(4)) variable.name = std::string(1, static_cast<char>(std::toupper(variable.name[0])));
  }
  if (oneIn(3) && variables.size() > 1)
    variables.erase(variables.begin() + static_cast<std::ptrdiff_t>(below(variables.size())));
  if (oneIn(3)) variables.insert(variables.begin(), anyVariable("other"));
  if (oneIn(3)) std::rotate(variables.begin(), variables.begin() + 1, variables.end());
  return variables;
}

std::size_t placeOf(const naive::Dataset& dataset, const std::string& name) {
  for (std::size_t place = 0; place < dataset.variables.size(); ++place) {
    if (std::tolower(dataset.variables[place].name[0]) == name[0]) return place;
  }
  return dataset.variables.size();
}

// A case of the comparison dataset that has the values of an active one where their variables are alike.
naive::Case likeness(const naive::Dataset& active, const naive::Case& original, const naive::Dataset& compared) {
  naive::Case made = anyCase(compared);
  for (std::size_t place = 0; place < active.variables.size(); ++place) {
    const std::size_t there = placeOf(compared, active.variables[place].name);
    if (there == compared.variables.size() || oneIn(12)) continue;
    const naive::Variable& variable = compared.variables[there];
    if ((variable.width == 0) != (active.variables[place].width == 0)) continue;
    made[there] = original[place];
    made[there].text.resize(static_cast<std::size_t>(variable.width), ' ');
  }
  return made;
}

// Into the order of the case IDs, as far as the active widths say.
void sortByIds(naive::Dataset& dataset, const std::vector<std::string>& ids, const naive::Dataset& active) {
  std::stable_sort(dataset.cases.begin(), dataset.cases.end(), [&](const naive::Case& left, const naive::Case& right) {
    for (const std::string& id : ids) {
      const std::size_t place = placeOf(dataset, id);
      if (place == dataset.variables.size()) continue;
      const auto width = static_cast<std::size_t>(active.variables[placeOf(active, id)].width);
      if (left[place].number != right[place].number) return left[place].number < right[place].number;
      const std::string one = left[place].text.substr(0, width);
      const std::string two = right[place].text.substr(0, width);
      if (one != two) return one < two;
    }
    return false;
  });
}

struct Sample {
  naive::Dataset active;
  naive::Dataset compared;
  naive::Command command;
};

Sample anySample() {
  Sample sample;
  const std::vector<std::string> names = {"a", "b", "c", "d"};
  const int variables = 1 + upTo(3);
  for (int number = 0; number < variables; ++number) {
    sample.active.variables.push_back(anyVariable(names[static_cast<std::size_t>(number)]));
  }
  sample.compared.variables = oneIn(2) ? sample.active.variables : changed(sample.active.variables);
  if (sample.active.variables[0].width == 0 && oneIn(5)) sample.active.filter = 0;

  naive::Command& command = sample.command;
  const int ids = upTo(std::min(variables, 3));
  for (int id = 0; id < ids; ++id) command.caseIds.push_back(names[static_cast<std::size_t>(variables - 1 - id)]);
  if (oneIn(2)) {
    for (const std::string name : {"d", "unknown", "a", "b"}) {
      const bool isKnown = placeOf(sample.active, name) < sample.active.variables.size() && name.size() == 1;
      if (oneIn(2) && (isKnown || name.size() > 1)) command.variables.push_back(name);
    }
  }
  command.flag = !oneIn(4);
  command.save = oneIn(2);
  command.caseTable = !oneIn(4);
  if (oneIn(2)) command.limit = 1 + upTo(2);
  if (oneIn(4)) command.limit.reset();

  for (int number = upTo(9); number > 0; --number) {
    sample.active.cases.push_back(anyCase(sample.active));
    if (oneIn(5)) sample.active.cases.push_back(sample.active.cases.back());
  }
  for (const naive::Case& original : sample.active.cases) {
    if (!oneIn(6)) sample.compared.cases.push_back(likeness(sample.active, original, sample.compared));
    if (oneIn(6)) sample.compared.cases.push_back(anyCase(sample.compared));
  }
  if (!oneIn(5)) sortByIds(sample.active, command.caseIds, sample.active);
  if (!oneIn(5)) sortByIds(sample.compared, command.caseIds, sample.active);
  return sample;
}

DatasetBuilder built(const naive::Dataset& dataset) {
  DatasetBuilder builder;
  for (std::size_t place = 0; place < dataset.variables.size(); ++place) {
    const naive::Variable& variable = dataset.variables[place];
    std::vector<double> numbers;
    std::vector<std::string> texts;
    for (const naive::Case& one : dataset.cases) {
      numbers.push_back(one[place].number);
      texts.push_back(one[place].text);
    }
    if (variable.width != 0) {
      builder.text(variable.name, variable.width, texts);
    } else {
      builder.numeric(variable.name, numbers, [&](data::Variable& made) {
        if (!variable.isPlainNumber) made.format = {FormatType::date, 10, 0};
      });
    }
  }
  return builder.with([&](data::Dictionary& dictionary) {
    if (dataset.filter) dictionary.filter = static_cast<std::int32_t>(*dataset.filter);
  });
}

std::string asSubcommands(const naive::Command& command) {
  const auto listed = [](const std::vector<std::string>& names) {
    std::string all;
    for (const std::string& name : names) all += ' ' + name;
    return all;
  };
  std::string all = "/COMPDATASET=b /VARIABLES=" + (command.variables.empty() ? "ALL" : listed(command.variables));
  if (!command.caseIds.empty()) all += " /CASEID=" + listed(command.caseIds);
  all += std::string(" /SAVE FLAGMISMATCHES=") + (command.flag ? "YES" : "NO");
  if (command.save) all += " MATCHDATASET=YES MATCHNAME=agreed MISMATCHDATASET=YES MISMATCHNAME=differing";
  all += std::string(" /OUTPUT CASETABLE=") + (command.caseTable ? "YES" : "NO");
  return all + " TABLELIMIT=" + (command.limit ? std::to_string(*command.limit) : "NONE");
}

std::string saved(ProcedureRun& run, const std::string& handle) {
  const std::shared_ptr<data::Dataset> found = run.manager().find(handle);
  if (found == nullptr) return "no dataset";
  std::string all;
  for (const data::Variable& variable : found->dictionary().variables()) {
    const std::string values = run.valuesOf(handle, variable.name);
    all += variable.name + ':' + (found->caseCount().value_or(0) == 0 ? "" : " " + values) + '\n';
  }
  return all;
}

RC_GTEST_PROP(TheProcedure, AgreesWithAComparisonDoneByHand, ()) {
  const Sample sample = anySample();
  const std::string subcommands = asSubcommands(sample.command);
  RC_LOG() << subcommands << '\n';
  const naive::Result foretold = naive::compare(sample.active, sample.compared, sample.command);

  ProcedureRun run(built(sample.active), built(sample.compared));
  if (oneIn(2)) {
    run.beforeCall = [] { journal().sendTo({}); };  // cases come in blocks of many then
  }
  run.run(subcommands);
  RC_CLASSIFY(run.outcome() != "completed", "a dataset is out of order");
  RC_CLASSIFY(foretold.tables.empty(), "case IDs do not match");
  RC_CLASSIFY(foretold.messages.find("All values") != std::string::npos, "all values match");
  RC_CLASSIFY(foretold.caseByCase.size() > 20, "cases are shown");
  RC_CLASSIFY(foretold.flags.find("-1") != std::string::npos, "cases have no partner");
  RC_ASSERT(run.messages() == foretold.messages);
  RC_ASSERT(run.outcome() == foretold.outcome);
  RC_ASSERT(run.values("CasesCompare") == foretold.flags);
  RC_ASSERT(run.tables() == foretold.tables);
  RC_ASSERT(run.notes() == foretold.notes);
  RC_ASSERT(cellsOf(run.table(keys::matchedSummary)) == foretold.matchedSummary);
  RC_ASSERT(cellsOf(run.table(keys::byCases)) == foretold.byCases);
  RC_ASSERT(cellsOf(run.table(keys::byVariables)) == foretold.byVariables);
  RC_ASSERT(cellsOf(run.table(keys::caseByCase)) == foretold.caseByCase);
  RC_ASSERT(captionOf(run.table(keys::caseByCase)) == foretold.caption);
  RC_ASSERT(saved(run, "agreed") == foretold.matched);
  RC_ASSERT(saved(run, "differing") == foretold.mismatched);
}

}  // namespace
}  // namespace workbench::tests
