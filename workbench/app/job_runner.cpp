#include "workbench/app/job_runner.h"

#include <algorithm>

#include "workbench/app/command_run.h"
#include "workbench/app/host_command_runner.h"
#include "workbench/app/procedure_runner.h"
#include "workbench/data/files/server_reference.h"
#include "workbench/language/hidden_passwords.h"
#include "workbench/language/host_commands.h"
#include "workbench/language/job.h"
#include "workbench/runtime/protected_data.h"

namespace workbench::app {

namespace {

std::vector<std::string> knownCommands(const Session& session) {
  std::vector<std::string> names = language::hostCommandNames();
  const std::vector<std::string> ofPlugins = session.plugins.commands();
  names.insert(names.end(), ofPlugins.begin(), ofPlugins.end());
  return names;
}

void noteVerdict(Session& session, const output::Command& command, const std::optional<output::Verdict>& verdict) {
  std::optional<output::Verdict> found = verdict;
  if (command.outcome != output::Command::Outcome::completed) found = output::Verdict::trouble;
  if (!found) return;
  std::optional<output::Verdict>& total = session.document.verdict;
  total = total ? worse(*total, *found) : *found;
}

// What a job does with its first command may lie on a disk when its last one opens or saves a protected file.
void noteProtectedDataOf(const std::vector<language::JobCommand>& commands) {
  for (const language::JobCommand& command : commands) {
    for (const TokenInfoObj& token : command.tokens) {
      if (token.getKind() == TokenInfoObj::Kind::word && language::isPasswordKeyword(token.getString())) {
        noteProtectedData();
      }
    }
  }
}

bool preparesComparison(const language::JobCommand& command) {
  return command.name == "SORT CASES" || command.name == "CHECK DATASETS";
}

// True when the command was completed.
bool runCommand(Session& session, const language::JobCommand& jobCommand) {
  using Outcome = output::Command::Outcome;
  CommandRun run(session, jobCommand);
  output::Command& command = run.command();
  std::optional<output::Verdict> verdict;
  if (jobCommand.error) {
    command.items.emplace_back(
        output::parserMessage(jobCommand.error->sentence, jobCommand.error->line, jobCommand.error->column));
    command.outcome = Outcome::refused;
  } else if (language::hostCommand(jobCommand.name) != nullptr) {
    command.outcome = runHostCommand(session, run) ? Outcome::completed : Outcome::refused;
  } else {
    verdict = runProcedure(session, run);
  }
  noteVerdict(session, command, verdict);
  return command.outcome == Outcome::completed;
}

}  // namespace

void runJob(Session& session, const Secret& job, OnError onError) {
  // Columns behind a hidden password are those of the text that is shown.
  const Secret shown = data::jobWithHiddenPasswords(job);
  const std::vector<language::JobCommand> commands = language::readJob(shown.view(), knownCommands(session));
  noteProtectedDataOf(commands);
  bool isPreparing = true;  // until a preparation was refused, what prepares the comparison is done
  for (const language::JobCommand& command : commands) {
    if (!isPreparing && preparesComparison(command)) continue;
    if (runCommand(session, command)) continue;
    if (onError == OnError::stop || (onError == OnError::goOnToComparison && !preparesComparison(command))) return;
    if (onError == OnError::goOnToComparison) isPreparing = false;
  }
}

}  // namespace workbench::app
