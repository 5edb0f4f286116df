#include "workbench/app/procedure_runner.h"

#include <algorithm>
#include <array>
#include <exception>
#include <memory>
#include <span>
#include <utility>

#include "host/messages.h"
#include "workbench/data/output_set.h"
#include "workbench/data/working/active_source.h"
#include "workbench/data/working/handed_out.h"
#include "workbench/runtime/activity.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"

namespace workbench::app {

namespace {

// Calls the plug-in. False when it left by an exception, which is answered for here.
bool callPlugin(EntryPoint entryPoint, CommandRun& run) {
  const std::string& name = run.command().name;
  journal().beginCommand(name);
  try {
    entryPoint();
    return true;
  } catch (const VrixGoToCaller&) {
    // It has reported why.
  } catch (const std::exception& error) {
    run.say(BpErrorLevel::severeError, text::sentence("^1 was ended by an error: ^2", {name, error.what()}));
  } catch (...) {
    run.say(BpErrorLevel::severeError, text::sentence("^1 was ended by an error that names no reason.", {name}));
  }
  return false;
}

output::Command::Outcome callWithSurroundings(Session& session, EntryPoint entryPoint, CommandRun& run) {
  using Outcome = output::Command::Outcome;
  const std::unique_ptr<data::ActiveSource> active = data::makeActiveSource(session.datasets.active());
  data::OutputSet outputs(&session.datasets);
  currentRun().activeSource = active.get();
  currentRun().outputs = &outputs;

  // What people see of a command's name; without wording the name itself.
  const Activity::Stage stage(text::wordingInForce().resolve(run.command().name), Activity::Unit::cases);
  const bool ended = callPlugin(entryPoint, run);
  const Journal::Pause pause(journal());
  data::letGoOfAllHandedOut();
  currentRun().activeSource = nullptr;
  currentRun().outputs = nullptr;
  if (!ended) {
    outputs.abandon();
    return Outcome::failed;
  }
  if (const auto committed = outputs.commit(); !committed) {
    run.refuse(committed.problem());
    return Outcome::failed;
  }
  return run.command().openedTable() ? Outcome::completed : Outcome::refused;
}

// Flags of the active dataset, as FlagLookup has it.
bool visitFlags(Session& session, const std::string& variable, std::int64_t cases, const FlagVisit& visit) {
  const std::shared_ptr<data::Dataset> dataset = session.datasets.active();
  const std::int32_t index = dataset->dictionary().find(variable);
  if (index < dataset->baseVariables()) return false;
  const data::AddedColumn& column = dataset->column(index);
  std::array<OBS, 4096> flags;
  for (std::int64_t first = 0; first < cases; first += static_cast<std::int64_t>(flags.size())) {
    const auto count = std::min(flags.size(), static_cast<std::size_t>(cases - first));
    column.layOver(first, flags.data(), count, 1);
    visit(std::span(flags).first(count));
  }
  return true;
}

}  // namespace

std::optional<output::Verdict> runProcedure(Session& session, CommandRun& run) {
  using Outcome = output::Command::Outcome;
  output::Command& command = run.command();
  command.outcome = Outcome::refused;
  if (session.datasets.active() == nullptr) {
    run.refuse({text::sentence("No dataset is active."), "", text::sentence("Open one with OPEN DATA first.")});
    return std::nullopt;
  }
  const auto entryPoint = session.plugins.entryPoint(command.name);
  if (!entryPoint) {
    run.refuse(entryPoint.problem());
    return std::nullopt;
  }

  command.outcome = callWithSurroundings(session, *entryPoint, run);
  const bool silent = !run.hasReason() && (command.outcome == Outcome::failed || !command.openedTable());
  if (silent)
    run.say(BpErrorLevel::error, text::sentence("^1 ended without a result and without a reason.", {command.name}));

  std::optional<ComparisonVerdict> verdict;
  try {
    verdict = verdictOf(command, [&](const std::string& variable, std::int64_t cases, const FlagVisit& visit) {
      return visitFlags(session, variable, cases, visit);
    });
  } catch (const ErrorText& error) {
    run.refuse({error.GetText(), "", ""});
    command.outcome = Outcome::failed;
    verdict = verdictOf(command, {});
  }
  if (!verdict) return std::nullopt;
  command.answer = std::move(verdict->answer);
  command.charts = std::move(verdict->charts);
  if (verdict->isGuess) {
    run.say(BpErrorLevel::note,
            text::sentence("Neither the summary tables nor a flag variable were asked for, so it is not known whether "
                           "every case has a partner. The result counts as different."));
  }
  return verdict->verdict;
}

}  // namespace workbench::app
