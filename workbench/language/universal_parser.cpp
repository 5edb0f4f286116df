// UniversalParser of host/parser.h.

#include <fmt/format.h>

#include "host/parser.h"
#include "workbench/language/command_parser.h"
#include "workbench/runtime/journal.h"

struct UniversalParser::State {
  const VRIX_TokenSequence& tokens;
  CommandSpec& spec;
  const CommandDescriptor& grammar;
};

UniversalParser::UniversalParser(const VRIX_TokenSequence& tokens, CommandSpec& spec, const CommandDescriptor& grammar)
    : state_(std::make_unique<State>(State{tokens, spec, grammar})) {
  using workbench::journal;
  if (journal().isOn()) {
    const std::string name = journal().created(this, "UniversalParser");
    journal().line(fmt::format("{} = UniversalParser({}, {}, {})", name,
                               journal().nameOf(&tokens, "VRIX_TokenSequence"), journal().nameOf(&spec, "CommandSpec"),
                               journal().nameOf(&grammar, "CommandDescriptor")));
  }
}

UniversalParser::~UniversalParser() { workbench::journal().destroyed(this); }

std::int32_t UniversalParser::getCommandSpecifications() {
  using namespace workbench;
  bool isAccepted = false;
  {
    const Journal::Pause pause(journal());
    isAccepted = language::CommandParser(state_->tokens.tokens(), state_->grammar.state()).parse(state_->spec.state());
    if (!isAccepted) state_->spec.state().subcommands.clear();
  }
  const std::int32_t result = isAccepted ? 0 : 1;
  if (journal().isOn()) {
    journal().line(
        fmt::format("{}.getCommandSpecifications() -> {}", journal().nameOf(this, "UniversalParser"), result));
  }
  return result;
}
