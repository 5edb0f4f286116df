#include "workbench/app/host_command_runner.h"

#include <array>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/parser.h"
#include "workbench/app/dataset_notes.h"
#include "workbench/app/dictionary_display.h"
#include "workbench/data/output_set.h"
#include "workbench/data/working/dataset_roles.h"
#include "workbench/data/working/open_dataset.h"
#include "workbench/data/working/password_reference.h"
#include "workbench/data/working/save.h"
#include "workbench/data/working/sort.h"
#include "workbench/language/host_commands.h"
#include "workbench/runtime/activity.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/folding.h"
#include "workbench/text/string_comparison.h"
#include "workbench/text/wording.h"

namespace workbench::app {

namespace {

using data::Dataset;

// The keywords of a command as given.
class Keywords {
 public:
  explicit Keywords(const SubComObj* given) : given_(given) {}

  bool has(std::string_view name) const { return find(name) != nullptr; }
  // Empty when the keyword was not given.
  std::string text(std::string_view name) const {
    const ParamObj* value = find(name);
    return value == nullptr ? std::string() : value->getStringToken();
  }
  std::optional<std::string> textIfGiven(std::string_view name) const {
    return has(name) ? std::optional(text(name)) : std::nullopt;
  }
  Secret password(std::string_view name) const {
    const ParamObj* value = find(name);
    if (value == nullptr) return {};
    const std::vector<TokenInfoObj> tokens = value->getTokenList();
    return tokens.size() == 1 ? data::givenPassword(tokens.front().getString()) : Secret();
  }
  // Names; none for the word NONE.
  std::vector<std::string> names(std::string_view name) const {
    std::vector<std::string> names;
    const ParamObj* value = find(name);
    if (value == nullptr || value->isStringValueCase("NONE")) return names;
    for (const TokenInfoObj& token : value->getTokenList()) names.push_back(token.getString());
    return names;
  }
  // "a TO b c TO d" as pairs; nothing when it is not written so.
  std::optional<std::vector<std::pair<std::string, std::string>>> renamings(std::string_view name) const {
    std::vector<std::pair<std::string, std::string>> pairs;
    const ParamObj* value = find(name);
    const std::vector<TokenInfoObj> tokens = value == nullptr ? std::vector<TokenInfoObj>() : value->getTokenList();
    if (tokens.size() % 3 != 0) return std::nullopt;
    for (std::size_t index = 0; index < tokens.size(); index += 3) {
      const TokenInfoObj& between = tokens[index + 1];
      const bool isTo = between.getKind() == TokenInfoObj::Kind::word && text::sameName(between.getString(), "TO");
      if (!isTo) return std::nullopt;
      pairs.emplace_back(tokens[index].getString(), tokens[index + 2].getString());
    }
    return pairs;
  }
  // One name; nothing for the word NONE.
  std::optional<std::string> name(std::string_view keyword) const {
    const std::vector<std::string> all = names(keyword);
    return all.empty() ? std::nullopt : std::optional(all.front());
  }

 private:
  const ParamObj* find(std::string_view name) const { return given_ == nullptr ? nullptr : given_->getParamObj(name); }
  const SubComObj* given_;
};

struct Surroundings {
  Session& session;
  CommandRun& run;
  const Keywords& keywords;

  // Null, after a refusal, when no dataset is active.
  std::shared_ptr<Dataset> active() const {
    if (session.datasets.active() == nullptr) {
      run.refuse({text::sentence("No dataset is active."), "", text::sentence("Open one with OPEN DATA first.")});
    }
    return session.datasets.active();
  }
  template <class Value>
  bool settle(const Outcome<Value>& outcome) const {
    return outcome ? true : run.refuse(outcome.problem());
  }
};

// The changes that two keywords ask for. False, after a refusal, when they are not written as changes are.
bool readChanges(const Surroundings& at, const char* renameKeyword, const char* dropKeyword,
                 data::VariableChanges& changes) {
  const auto renamings = at.keywords.renamings(renameKeyword);
  if (!renamings) {
    return at.run.refuse({text::sentence("This is no list of old and new names."), renameKeyword,
                          text::sentence("Write it so: ^1.", {"a TO b, c TO d"})});
  }
  changes = {*renamings, at.keywords.names(dropKeyword)};
  return true;
}

bool openData(const Surroundings& at) {
  data::OpenOptions options;
  options.password = at.keywords.password("PASSWORD");
  options.typesWith = at.keywords.textIfGiven("TYPESWITH");
  options.typesPassword = at.keywords.password("TYPESPASSWORD");
  if (!readChanges(at, "RENAME", "DROP", options.changes)) return false;
  if (!readChanges(at, "TYPESRENAME", "TYPESDROP", options.typesChanges)) return false;
  const auto dataset = data::openDataset(at.keywords.text("FILE"), options);
  if (!dataset) return at.run.refuse(dataset.problem());
  return at.settle(at.session.datasets.open(*dataset, at.keywords.textIfGiven("NAME")));
}

bool activateDataset(const Surroundings& at) {
  return at.settle(at.session.datasets.activate(at.keywords.text("NAME")));
}

bool closeDataset(const Surroundings& at) { return at.settle(at.session.datasets.close(at.keywords.text("NAME"))); }

bool saveData(const Surroundings& at) {
  const auto dataset = at.active();
  if (dataset == nullptr) return false;
  const Activity::Stage stage(text::sentence("Saving ^1", {at.keywords.text("FILE")}), Activity::Unit::cases);
  data::OutputSet outputs(&at.session.datasets);
  const auto saved = data::saveDataset(dataset, at.keywords.text("FILE"), at.keywords.password("PASSWORD"), outputs);
  if (!saved) return at.run.refuse(saved.problem());
  return at.settle(outputs.commit());
}

// The active dataset's handle, or its file where it has none. Requires: a dataset is active.
std::string nameOfActive(const Surroundings& at) {
  return at.session.datasets.activeHandle().value_or(at.session.datasets.active()->path());
}

// Null, after a refusal, when no dataset is open under the handle that the keyword gives.
std::shared_ptr<Dataset> openDatasetOf(const Surroundings& at, std::string_view keyword) {
  const std::string handle = at.keywords.text(keyword);
  auto dataset = at.session.datasets.find(handle);
  if (dataset == nullptr) {
    at.run.refuse({text::sentence("The dataset does not exist."), handle, text::sentence("Open it first.")});
  }
  return dataset;
}

// The widths to which the variables' texts are cut: those of the variables of the same names in the other dataset.
std::vector<std::size_t> widthsIn(const Dataset& other, const std::vector<std::string>& by) {
  std::vector<std::size_t> widths(by.size(), 0);
  for (std::size_t index = 0; index < by.size(); ++index) {
    const std::int32_t variable = other.dictionary().find(by[index]);
    if (variable >= 0) widths[index] = static_cast<std::size_t>(other.dictionary().at(variable).width);
  }
  return widths;
}

// Tells what came of sorting a dataset. False, after a refusal, when nothing did.
bool settleSort(const Surroundings& at, const std::string& name, const Dataset& dataset,
                const data::SortRequest& request, const Outcome<data::SortResult>& result) {
  if (!result) {
    Problem problem = result.problem();
    problem.where = name;
    return at.run.refuse(problem);
  }
  if (result->reordered) at.run.say(BpErrorLevel::note, sortNote({name, dataset, request.by}, *result));
  return true;
}

bool sortCases(const Surroundings& at) {
  const auto dataset = at.active();
  if (dataset == nullptr) return false;
  const Activity::Stage stage(text::sentence("Sorting"), Activity::Unit::cases);
  data::SortRequest request;
  request.by = at.keywords.names("BY");
  if (text::sameName(at.keywords.text("WHEN"), "NEEDED")) request.policy = data::SortPolicy::whenNeeded;
  if (at.keywords.has("LIKE")) {
    const auto other = openDatasetOf(at, "LIKE");
    if (other == nullptr) return false;
    request.cutWidths = widthsIn(*other, request.by);
  }
  if (!at.keywords.has("WITH")) {
    return settleSort(at, nameOfActive(at), *dataset, request, data::sortCases(*dataset, request));
  }
  const auto other = openDatasetOf(at, "WITH");
  if (other == nullptr) return false;
  data::SortRequest otherRequest = request;
  otherRequest.cutWidths = widthsIn(*dataset, request.by);
  const auto [otherResult, result] = data::sortBoth({*other, otherRequest}, {*dataset, request});
  const bool isOtherSorted = settleSort(at, at.keywords.text("WITH"), *other, otherRequest, otherResult);
  return settleSort(at, nameOfActive(at), *dataset, request, result) && isOtherSorted;
}

// Tells what was found of a dataset's keys. False, after a refusal, when that could not be found out.
bool tellKeys(const Surroundings& at, const std::string& name, const data::SortTask& task,
              const Outcome<data::KeyFindings>& findings) {
  if (!findings) {
    Problem problem = findings.problem();
    problem.where = name;
    return at.run.refuse(problem);
  }
  for (output::Text& note : keyNotes({name, task.dataset, task.request.by}, *findings)) {
    at.run.say(BpErrorLevel::note, std::move(note));
  }
  return true;
}

bool checkDatasets(const Surroundings& at) {
  const auto dataset = at.active();
  if (dataset == nullptr) return false;
  const auto other = openDatasetOf(at, "WITH");
  if (other == nullptr) return false;
  const std::string otherName = at.keywords.text("WITH");
  if (auto note = onlyThereNote(otherName, other->dictionary(), dataset->dictionary())) {
    at.run.say(BpErrorLevel::note, std::move(*note));
  }
  if (!at.keywords.has("KEYS")) return true;
  const Activity::Stage stage(text::sentence("Checking keys"), Activity::Unit::cases);
  data::SortRequest request;
  request.by = at.keywords.names("KEYS");
  data::SortRequest otherRequest = request;
  otherRequest.cutWidths = widthsIn(*dataset, request.by);
  const data::SortTask own{*dataset, request};
  const data::SortTask others{*other, otherRequest};
  const auto [findings, otherFindings] = data::checkBoth(own, others);
  const bool isActiveTold = tellKeys(at, nameOfActive(at), own, findings);
  return tellKeys(at, otherName, others, otherFindings) && isActiveTold;
}

bool filterCases(const Surroundings& at) {
  const auto dataset = at.active();
  return dataset != nullptr && at.settle(data::setFilter(*dataset, at.keywords.name("BY")));
}

bool weightCases(const Surroundings& at) {
  const auto dataset = at.active();
  return dataset != nullptr && at.settle(data::setWeight(*dataset, at.keywords.name("BY")));
}

bool splitCases(const Surroundings& at) {
  const auto dataset = at.active();
  return dataset != nullptr && at.settle(data::setSplit(*dataset, at.keywords.names("BY")));
}

bool describeData(const Surroundings& at) {
  const auto dataset = at.active();
  if (dataset == nullptr) return false;
  const auto described = describeDataset(*dataset, at.session.datasets.activeHandle().value_or(""));
  return at.settle(described);
}

bool setOptions(const Surroundings& at) {
  Settings& settings = currentRun().settings;
  if (at.keywords.has("TOLERANCE")) {
    const std::string written = at.keywords.text("TOLERANCE");
    std::from_chars(written.data(), written.data() + written.size(), settings.tolerance);
  }
  if (at.keywords.has("COLLATION")) {
    const std::string collation = at.keywords.text("COLLATION");
    const std::string locale = text::sameName(collation, "binary") ? std::string() : collation;
    if (auto checked = text::checkCollation(locale); !checked) return at.run.refuse(checked.problem());
    settings.collation = locale;
  }
  return true;
}

struct CommandRow {
  std::string_view name;
  bool (*run)(const Surroundings& at);
};
constexpr auto commandRows = std::to_array<CommandRow>({
    {"OPEN DATA", openData},
    {"ACTIVATE DATASET", activateDataset},
    {"CLOSE DATASET", closeDataset},
    {"SAVE DATA", saveData},
    {"SORT CASES", sortCases},
    {"CHECK DATASETS", checkDatasets},
    {"FILTER CASES", filterCases},
    {"WEIGHT CASES", weightCases},
    {"SPLIT CASES", splitCases},
    {"DESCRIBE DATA", describeData},
    {"SET OPTIONS", setOptions},
});

}  // namespace

bool runHostCommand(Session& session, CommandRun& run) {
  const Journal::Pause pause(journal());
  const VRIX_TokenSequence tokens(true);
  CommandSpec given;
  UniversalParser parser(tokens, given, *language::hostCommand(run.command().name));
  if (parser.getCommandSpecifications() != 0) return false;
  const Keywords keywords(given.getSubComObj(""));
  const Surroundings surroundings{session, run, keywords};
  for (const CommandRow& row : commandRows) {
    if (text::sameName(row.name, run.command().name)) {
      try {
        return row.run(surroundings);
      } catch (const ErrorText& error) {
        return run.refuse({error.GetText(), "", ""});
      }
    }
  }
  return run.refuse({text::sentence("This command of the host has nothing behind it."), run.command().name, ""});
}

}  // namespace workbench::app
