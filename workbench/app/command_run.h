// CommandRun: the surroundings of one command. While it lives, the functions of host/ refer to this command.
#pragma once

#include <string>

#include "host/messages.h"
#include "workbench/app/session.h"
#include "workbench/language/job.h"
#include "workbench/runtime/outcome.h"

namespace workbench::app {

class CommandRun {
 public:
  // Adds the command to the document.
  CommandRun(Session& session, const language::JobCommand& command);
  CommandRun(const CommandRun&) = delete;
  CommandRun& operator=(const CommandRun&) = delete;
  ~CommandRun();

  output::Command& command() { return command_; }

  // Adds a message of the host: a note, a warning, or the error that stands in the command's way.
  void say(BpErrorLevel level, const std::string& sentence);
  void say(BpErrorLevel level, output::Text text);
  // The same for a problem; always false.
  bool refuse(const Problem& problem);

  // Whether anything was issued that says why there is no result: a warning or an error outside the results, of the
  // procedure or of the host.
  bool hasReason() const;

 private:
  output::Command& command_;
  const text::Wording* wordingBefore_;
};

}  // namespace workbench::app
