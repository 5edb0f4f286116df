#include "tests/model/naive_run.h"

#include <utility>

#include "tests/model/cell_text.h"
#include "tests/model/messages.h"
#include "tests/model/naive_case_tables.h"
#include "tests/model/naive_dictionary_tables.h"
#include "tests/model/naive_order.h"
#include "tests/model/naive_outputs.h"
#include "tests/model/naive_summary.h"
#include "tests/model/options.h"

namespace workbench::tests::model {

namespace {

const std::string openingOf = "open ";
const std::string destroyed = "destroy ";

// The name with "_1", "_2", ... behind it while a variable has it.
std::string freeName(const Dataset& dataset, const std::string& name) {
  std::string candidate = name;
  for (int number = 1; placeOf(dataset, candidate); ++number) candidate = name + "_" + std::to_string(number);
  return candidate;
}

class Run {
 public:
  Run(const World& world, const Command& command) : world_(world), command_(command) {}

  Foretold foretell() {
    Report& report = foretold_.report;
    report.outcome = "completed";
    Dataset afterwards = world_.active;
    ReadCommand read = model::read(command_, world_);
    for (const std::string& message : read.messages) say(message);
    if (read.options) {
      options_ = *read.options;
      if (options_.flag) flag_ = freeName(world_.active, options_.flagName);
      if (!compare()) {
        report.outcome = "left by VrixGoToCaller";
        foretold_.matched.reset();
        foretold_.mismatched.reset();
      }
      if (flag_) addFlag(afterwards);
    }
    report.active = describe(afterwards);
    return std::move(foretold_);
  }

 private:
  // False when the run is left by an exception.
  bool compare() {
    OutputNames names(world_, options_);
    if (!names.refusal().empty()) return refuse(names.refusal());
    if (!options_.comparison.isQuoted) step("look up comparison");
    if (options_.comparison.isQuoted) {
      step("open comparison file");
      // A file without a password cannot be opened with one.
      if (!options_.password.empty()) return refuse(messageLine(2, 4, hostsWords));
    }
    const auto ids = findCaseIds(world_, options_);
    if (!ids) return refuse(messageLine(2, 3, say::caseIdsDoNotMatch));
    addTable("CD_CompSummaryTableName", comparisonSummary(world_, options_));
    compareDictionaries(*ids);
    return compareCases(CaseOrder(world_, *ids), names);
  }

  bool refuse(const std::string& message) {
    say(message);
    return true;  // the run ends quietly
  }

  void compareDictionaries(const std::vector<CaseIdPlace>& ids) {
    ComparedDictionaries dictionaries = model::compareDictionaries(world_, options_, ids);
    for (const std::string& message : dictionaries.messages) say(message);
    if (dictionaries.state == DictionaryState::differs) {
      addTable("CD_DictCompTableName", dictionaryTable(world_, dictionaries));
      if (valueLabelsDiffer(dictionaries)) {
        addTable("CD_ValueLabelsCompTableName", valueLabelsTable(world_, dictionaries));
      }
    }
    foretold_.variables = std::move(dictionaries.variables);
  }

  bool compareCases(const CaseOrder& order, const OutputNames& names) {
    for (const std::string& key : caseTables) step(openingOf + key);
    if (!openOutputs(names)) return leave();
    // With a flag to be written every case is read, whatever the filter.
    WalkedCases walked = walk(world_, order, foretold_.variables, !flag_);
    foretold_.walked = walked;
    for (const std::string& walkedStep : walked.steps) {
      const bool isSaved = !walkedStep.starts_with("write ") || (walkedStep == "write matched" && foretold_.matched) ||
                           (walkedStep == "write mismatched" && foretold_.mismatched);
      if (isSaved) step(walkedStep);
    }
    if (walked.unsorted) {
      say(messageLine(2, 3, *walked.unsorted == Side::active ? say::activeUnsorted : say::comparedUnsorted));
    } else {
      addNotes();
    }
    if (foretold_.matched) step("close matched");
    if (foretold_.mismatched) step("close mismatched");
    if (walked.unsorted) return leave();
    addCaseTables(order.ids(), walked);
    saveCases(walked);
    return true;
  }

  // The tables about cases are taken out; those before them stay.
  bool leave() {
    for (const std::string& key : caseTables) step(destroyed + key);
    return false;
  }

  bool openOutputs(const OutputNames& names) {
    const auto open = [&](const SavedCases& saved, const char* which, std::optional<ForetoldOutput>& output) {
      if (!saved.isWanted) return true;
      if (names.cannotBeOpened(saved)) {
        say(messageLine(2, 3, hostsWords));
        return false;
      }
      step(std::string("open ") + which);
      output = ForetoldOutput{names.shownName(saved), !isHandle(saved.name), {}};
      return true;
    };
    if (!open(options_.matched, "matched", foretold_.matched)) return false;
    if (!open(options_.mismatched, "mismatched", foretold_.mismatched)) return false;
    for (const ComparedVariable& variable : foretold_.variables) {
      const std::string& name = world_.active.variables[variable.active].name;
      if (foretold_.matched) step("make " + name + " in matched");
      if (foretold_.mismatched) step("make " + name + " in mismatched");
    }
    return commit(foretold_.matched, "matched") && commit(foretold_.mismatched, "mismatched");
  }

  // A data file cannot be without variables.
  bool commit(const std::optional<ForetoldOutput>& output, const char* which) {
    if (!output) return true;
    step(std::string("commit ") + which);
    const bool isTaken = !output->isFile || !foretold_.variables.empty();
    if (!isTaken) say(messageLine(2, 3, hostsWords));
    return isTaken;
  }

  // A flag variable that stands first is never written, nor is it noted.
  bool writesFlag() const { return flag_.has_value() && !world_.active.variables.empty(); }

  void addNotes() {
    const auto note = [&](int group, const std::string& first, const std::string& third) {
      step("note " + std::to_string(group));
      foretold_.report.items.push_back("note " + std::to_string(group) + ": " + first + " \"\" " + plain(third) + '\n');
    };
    if (writesFlag()) note(3, plain(""), *flag_);
    if (foretold_.matched && foretold_.matched->isFile) note(2, "CD_Matched", foretold_.matched->name);
    if (foretold_.mismatched && foretold_.mismatched->isFile) note(2, "CD_Mismatched", foretold_.mismatched->name);
  }

  void addCaseTables(const std::vector<CaseIdPlace>& ids, const WalkedCases& walked) {
    std::vector<std::string>& items = foretold_.report.items;
    const bool keepsTables = options_.caseTable && !walked.allMatch();
    const bool isFilled = !walked.mismatched.empty();
    // Notes come about during the walk, yet the tables stand where they were opened: before it.
    std::vector<std::string> tables = {matchedSummary(walked, options_.caseTable)};
    if (keepsTables) {
      tables.push_back(mismatchedByCases(walked, isFilled));
      tables.push_back(mismatchedByVariables(world_, foretold_.variables, walked, isFilled));
      tables.push_back(caseByCase(world_, options_, ids, foretold_.variables, walked));
    } else {
      step(destroyed + caseTables[3]);
      step(destroyed + caseTables[1]);
      step(destroyed + caseTables[2]);
    }
    items.insert(items.begin() + static_cast<std::ptrdiff_t>(itemsBeforeCaseTables()), tables.begin(), tables.end());
    if (walked.allMatch()) say(messageLine(4, 1, say::allValuesMatch));
    addTable("CD_CompSummaryTableName", caseCounts(walked));
  }

  // All that was issued before the walk: everything but its notes.
  std::size_t itemsBeforeCaseTables() const {
    std::size_t number = 0;
    for (const std::string& item : foretold_.report.items) number += item.starts_with("note ") ? 0 : 1;
    return number;
  }

  void saveCases(const WalkedCases& walked) {
    std::vector<std::size_t> mismatched;
    for (const ShownCase& one : walked.mismatched) mismatched.push_back(one.active);
    if (foretold_.matched)
      foretold_.matched->content = savedDataset(world_.active, foretold_.variables, walked.matched);
    if (foretold_.mismatched) {
      foretold_.mismatched->content = savedDataset(world_.active, foretold_.variables, mismatched);
    }
  }

  void addFlag(Dataset& dataset) const {
    Variable flag;
    flag.name = *flag_;
    flag.format = {5, 1, 0};
    flag.level = 1;
    flag.label = world_.flagLabel;
    flag.valueLabels = {{-1.0, world_.withoutPartnerLabel}, {0.0, world_.matchedLabel}, {1.0, world_.mismatchedLabel}};
    dataset.variables.push_back(flag);
    for (std::size_t place = 0; place < dataset.cases.size(); ++place) {
      double value = systemMissing;
      const bool isWritten = writesFlag() && foretold_.walked && foretold_.walked->flags[place];
      if (isWritten) value = *foretold_.walked->flags[place];
      dataset.cases[place].emplace_back(value);
    }
  }

  void addTable(const std::string& key, const std::string& table) {
    step(openingOf + key);
    foretold_.report.items.push_back(table);
  }
  void say(const std::string& message) {
    foretold_.report.items.push_back(message);
    if (message != parserRefusal) step("message");
  }
  void step(const std::string& what) { foretold_.report.steps.push_back(what); }

  inline static const std::vector<std::string> caseTables = {
      "CD_MatchedSummaryTableName", "CD_MismatchedByCasesTableName", "CD_MismatchedByVarsTableName",
      "CD_CaseByCaseComparisonTableName"};

  const World& world_;
  const Command& command_;
  Options options_;
  std::optional<std::string> flag_;  // its name, when there is to be one
  Foretold foretold_;
};

}  // namespace

Foretold foretell(const World& world, const Command& command) { return Run(world, command).foretell(); }

}  // namespace workbench::tests::model
