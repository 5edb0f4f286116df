#include "workbench/app/command_run.h"

#include <algorithm>
#include <utility>

#include "host/runtime.h"
#include "workbench/data/working/handed_out.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"

namespace workbench::app {

namespace {

output::Command& addCommand(output::Document& document, const language::JobCommand& command) {
  document.commands.push_back(std::make_unique<output::Command>());
  output::Command& added = *document.commands.back();
  added.name = command.name;
  added.syntax = command.syntax;
  return added;
}

}  // namespace

CommandRun::CommandRun(Session& session, const language::JobCommand& command)
    : command_(addCommand(session.document, command)), wordingBefore_(currentRun().wording) {
  const Journal::Pause pause(journal());
  CurrentRun& run = currentRun();
  run.command = &command_;
  run.tokens = &command.tokens;
  run.commandLine = command.line;
  run.commandColumn = command.column;
  run.datasets = &session.datasets;
  run.adapter = &session.datasets;
  run.wording = session.wording.get();
  pvGetCmnGlb()->pendingError = 0;
}

CommandRun::~CommandRun() {
  {
    // A host's own command may have closed a dataset to which a procedure before it left a reference.
    const Journal::Pause pause(journal());
    data::letGoOfAllHandedOut();
  }
  CurrentRun between;
  between.settings = currentRun().settings;  // these hold for the commands that follow
  between.wording = wordingBefore_;
  currentRun() = between;
}

void CommandRun::say(BpErrorLevel level, const std::string& sentence) {
  command_.items.emplace_back(output::hostMessage(level, sentence));
}

void CommandRun::say(BpErrorLevel level, output::Text text) {
  output::Message message = output::hostMessage(level, "");
  message.text = std::move(text);
  command_.items.emplace_back(std::move(message));
}

bool CommandRun::refuse(const Problem& problem) {
  say(BpErrorLevel::error, problem.text());
  return false;
}

bool CommandRun::hasReason() const {
  return std::any_of(command_.items.begin(), command_.items.end(), [](const output::Item& item) {
    const auto* message = std::get_if<output::Message>(&item);
    if (message == nullptr || message->show == static_cast<int>(BpErrorShow::results)) return false;
    return message->number.has_value() || message->level >= static_cast<int>(BpErrorLevel::error) ||
           (message->source == output::Message::Source::procedure &&
            message->level >= static_cast<int>(BpErrorLevel::warning));
  });
}

}  // namespace workbench::app
