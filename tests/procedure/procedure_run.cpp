#include "tests/procedure/procedure_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>

#include "host/messages.h"
#include "tests/results/results_schema.h"
#include "workbench/app/plugin_loader.h"
#include "workbench/app/verdict.h"
#include "workbench/data/output_set.h"
#include "workbench/data/working/active_source.h"
#include "workbench/data/working/handed_out.h"
#include "workbench/language/tokens.h"
#include "workbench/output/json_writer.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/wording.h"

namespace workbench::tests {

namespace {

app::EntryPoint entryPoint() {
  static app::Plugins plugins;
  if (plugins.commands().empty()) {
    if (const auto added = plugins.addFolder(PLUGIN_FOLDER); !added) throw std::runtime_error(added.problem().text());
  }
  const auto loaded = plugins.entryPoint("COMPARE DATASETS");
  if (!loaded) throw std::runtime_error(loaded.problem().text());
  return *loaded;
}

const text::Wording& wordingIn(const std::string& language) {
  static std::map<std::string, std::unique_ptr<text::Wording>> loaded;
  std::unique_ptr<text::Wording>& wording = loaded[language];
  if (wording == nullptr) wording = std::move(*text::Wording::load(language));
  return *wording;
}

std::string number(double value) { return value == missing ? "." : fmt::format("{}", value); }

const output::Text& titleOf(const output::Dimension& dimension, std::int32_t node) {
  return dimension.nodes[static_cast<std::size_t>(node)].title;
}

std::string itemsOf(const std::vector<output::Text>& items) {
  std::string all;
  for (const output::Text& item : items) all += (all.empty() ? "" : "|") + passed(item);
  return all;
}

}  // namespace

std::string passed(const output::Text& text) {
  struct Visitor {
    std::string operator()(const output::StringText& held) const { return held.key; }
    std::string operator()(const output::NumberText& held) const { return number(held.value); }
    std::string operator()(const output::VariableText& held) const { return held.name; }
    std::string operator()(const output::ValueText& held) const {
      if (const auto* value = std::get_if<double>(&held.value)) return number(*value);
      return std::get<std::string>(held.value);
    }
    std::string operator()(const output::CompositeText& held) const {
      return held.pattern + "{" + itemsOf(held.items) + "}";
    }
    std::string operator()(const output::ListText& held) const { return "[" + itemsOf(held.items) + "]"; }
  };
  return std::visit(Visitor(), text.held);
}

ProcedureRun::ProcedureRun() = default;

ProcedureRun::ProcedureRun(const DatasetBuilder& active, const DatasetBuilder& compared) {
  if (!manager_.open(compared.build(), "b") || !manager_.open(active.build(), "a")) {
    throw std::runtime_error("the datasets of a test could not be opened");
  }
}

ProcedureRun::~ProcedureRun() = default;

ProcedureRun& ProcedureRun::run(const std::string& subcommands) {
  command_ = std::make_unique<output::Command>();
  command_->name = "COMPARE DATASETS";
  journal_.clear();
  const std::vector<TokenInfoObj> tokens = language::tokensOf(subcommands);

  CurrentRun& current = currentRun();
  current.command = command_.get();
  current.tokens = &tokens;
  current.datasets = fakeManager != nullptr ? fakeManager : &manager_;
  current.adapter = fakeAdapter != nullptr ? fakeAdapter : static_cast<HostAdapter*>(&manager_);
  current.wording = &wordingIn(language);
  pvGetCmnGlb()->pendingError = 0;
  const std::unique_ptr<data::ActiveSource> own = fakeActive == nullptr ? manager_.makeActiveSource() : nullptr;
  current.activeSource = fakeActive != nullptr ? fakeActive : own.get();
  data::OutputSet outputs(&manager_);
  current.outputs = &outputs;

  workbench::journal().sendTo([this](std::string_view line) {
    journal_.emplace_back(line);
    if (onJournalLine) onJournalLine(journal_.back());
  });
  workbench::journal().beginCommand("COMPARE DATASETS");
  if (beforeCall) beforeCall();
  try {
    entryPoint()();
    outcome_ = "completed";
  } catch (const VrixGoToCaller&) {
    outcome_ = "left by VrixGoToCaller";
  } catch (const std::exception& error) {
    outcome_ = std::string("left by: ") + error.what();
  } catch (...) {
    outcome_ = "left by what is no exception";
  }
  workbench::journal().sendTo({});
  data::letGoOfAllHandedOut();
  if (outcome_ != "completed") {
    outputs.abandon();
  } else if (const auto committed = outputs.commit(); !committed) {
    outcome_ = "not committed: " + committed.problem().text();
  }
  current = CurrentRun();
  if (checksDocument) expectValidResults(document());
  return *this;
}

std::string ProcedureRun::document() {
  using Outcome = output::Command::Outcome;
  command_->outcome = Outcome::failed;
  if (outcome_ == "completed") command_->outcome = command_->openedTable() ? Outcome::completed : Outcome::refused;
  output::Document document;
  const app::FlagLookup noFlags = [](const std::string&, std::int64_t, const app::FlagVisit&) { return false; };
  if (const auto verdict = app::verdictOf(*command_, noFlags)) document.verdict = verdict->verdict;
  document.commands.push_back(std::move(command_));
  std::ostringstream written;
  output::writeJson(written, document, wordingIn(language));
  command_ = std::move(document.commands.front());
  return written.str();
}

std::string ProcedureRun::messages() const {
  std::string all;
  for (const output::Item& item : command_->items) {
    const auto* message = std::get_if<output::Message>(&item);
    if (message == nullptr) continue;
    if (message->number) {
      all += fmt::format("{} {} {}\n", *message->number, message->show, message->level);
    } else if (message->source == output::Message::Source::parser) {
      all += "parser: " + passed(message->text) + "\n";
    } else if (message->source == output::Message::Source::host) {
      all += "host: " + passed(message->text) + "\n";
    } else {
      all += fmt::format("{}/{} {}\n", message->show, message->level, passed(message->text));
    }
  }
  return all;
}

std::string ProcedureRun::notes() const {
  std::string all;
  for (const output::Item& item : command_->items) {
    const auto* note = std::get_if<output::Note>(&item);
    if (note == nullptr) continue;
    all += fmt::format("{}: {}|{}|{}\n", note->group, passed(note->texts[0]), passed(note->texts[1]),
                       passed(note->texts[2]));
  }
  return all;
}

std::string ProcedureRun::tables() const {
  std::string all;
  for (const output::Item& item : command_->items) {
    const auto* held = std::get_if<std::unique_ptr<output::Table>>(&item);
    if (held == nullptr || (*held)->destroyed) continue;
    all += fmt::format("{}{}({})", all.empty() ? "" : " ", passed((*held)->title), (*held)->cells.size());
  }
  return all;
}

const output::Table* ProcedureRun::table(const std::string& key, std::size_t which) const {
  for (const output::Item& item : command_->items) {
    const auto* held = std::get_if<std::unique_ptr<output::Table>>(&item);
    if (held == nullptr || (*held)->destroyed || passed((*held)->title) != key) continue;
    if (which-- == 0) return held->get();
  }
  return nullptr;
}

std::string ProcedureRun::cell(const std::string& tableKey, const std::vector<std::string>& categories,
                               std::size_t which) const {
  const output::Table* found = table(tableKey, which);
  if (found == nullptr) return "no table";
  for (std::size_t index = 0; index < found->cells.size(); ++index) {
    const auto at = found->at(index);
    bool matches = at.size() == categories.size();
    for (std::size_t dimension = 0; matches && dimension < at.size(); ++dimension) {
      matches = passed(titleOf(found->dimensions[dimension], at[dimension])) == categories[dimension];
    }
    if (matches) return passed(*found->cells[index].content);
  }
  return "-";
}

std::string ProcedureRun::categories(const std::string& tableKey, std::size_t dimension, std::size_t which) const {
  const output::Table* found = table(tableKey, which);
  if (found == nullptr || dimension >= found->dimensions.size()) return "no table";
  std::string all;
  for (const std::int32_t leaf : found->dimensions[dimension].leaves()) {
    all += (all.empty() ? "" : " ") + passed(titleOf(found->dimensions[dimension], leaf));
  }
  return all;
}

std::string ProcedureRun::values(const std::string& variable) const {
  return valuesOf(manager_.activeHandle().value_or(""), variable);
}

std::string ProcedureRun::valuesOf(const std::string& handle, const std::string& variable) const {
  const std::shared_ptr<data::Dataset> found = manager_.find(handle);
  if (found == nullptr) return "no dataset";
  const std::int32_t index = found->dictionary().find(variable);
  if (index < 0) return "no variable";
  const std::int32_t width = found->dictionary().at(index).width;
  data::DatasetPass pass(*found, data::CaseUse::onlyRead);
  const std::size_t slot = pass.layout().slotOfVariable[static_cast<std::size_t>(index)];
  std::string all;
  for (data::CaseSpan block = pass.next(); block; block = pass.next()) {
    for (std::size_t row = 0; row < block.count; ++row) {
      const OBS* value = block.cases + row * block.caseSlots + slot;
      if (!all.empty()) all += ' ';
      all += width == 0 ? number(value->number) : std::string(value->text, static_cast<std::size_t>(width));
    }
  }
  return all;
}

int ProcedureRun::journalLine(const std::string& text, int from) const {
  for (std::size_t index = static_cast<std::size_t>(from); index < journal_.size(); ++index) {
    if (journal_[index].find(text) != std::string::npos) return static_cast<int>(index);
  }
  return -1;
}

std::vector<std::string> ProcedureRun::journalLines(const std::vector<std::string>& texts) const {
  std::vector<std::string> found;
  for (const std::string& line : journal_) {
    const bool wanted = std::any_of(texts.begin(), texts.end(),
                                    [&](const std::string& text) { return line.find(text) != std::string::npos; });
    if (wanted) found.push_back(line);
  }
  return found;
}

std::string ProcedureRun::missingInOrder(const std::vector<std::string>& texts) const {
  int from = 0;
  for (const std::string& text : texts) {
    from = journalLine(text, from) + 1;
    if (from == 0) return text;
  }
  return "";
}

std::string ProcedureRun::leftAlive() const {
  static const std::set<std::string, std::less<>> handles = {"BpDimension", "BpGroup", "BpCategory"};
  static const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz";
  std::vector<std::string> alive;
  for (const std::string& line : journal_) {
    for (std::size_t mark = line.find('#', 1); mark != std::string::npos; mark = line.find('#', mark + 1)) {
      const std::size_t begin = line.find_last_not_of(letters, mark - 1) + 1;
      const std::size_t end = std::min(line.find_first_not_of("0123456789", mark + 1), line.size());
      if (begin == mark || end == mark + 1 || handles.contains(line.substr(begin, mark - begin))) continue;
      const std::string name = line.substr(begin, end - begin);
      if (begin != 0 && line[begin - 1] == '~') {
        std::erase(alive, name);
      } else if (std::find(alive.begin(), alive.end(), name) == alive.end()) {
        alive.push_back(name);
      }
    }
  }
  std::string all;
  for (const std::string& name : alive) all += (all.empty() ? "" : " ") + name;
  return all;
}

}  // namespace workbench::tests
