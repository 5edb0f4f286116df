#include "workbench/language/syntax_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "host/messages.h"
#include "workbench/language/hidden_passwords.h"
#include "workbench/output/document.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/folding.h"
#include "workbench/text/utf8.h"
#include "workbench/text/wording.h"

struct ParserMessage::State {
  std::string commandName;
  std::string procedureTitle;
};

namespace workbench::language {

namespace {

using text::sentence;

constexpr std::size_t mostCharactersShown = 40;

// The names set by the parser messages that live, innermost last.
struct ReportedNames {
  const void* owner;
  const std::string* commandName;
  const std::string* procedureTitle;
};
std::vector<ReportedNames>& reportedNames() {
  static std::vector<ReportedNames> names;
  return names;
}

void append(std::string what, std::int32_t line, std::int32_t column) {
  if (currentRun().command == nullptr) throw ErrorText(sentence("A command was parsed while no command was running."));
  currentRun().command->items.emplace_back(output::parserMessage(std::move(what), line, column));
}

}  // namespace

std::string reportedCommand(std::string_view commandName) {
  if (reportedNames().empty()) return std::string(commandName);
  const ReportedNames& names = reportedNames().back();
  std::string name = names.commandName->empty() ? std::string(commandName) : *names.commandName;
  const std::string& title = *names.procedureTitle;
  if (title.empty() || text::sameName(title, name)) return name;
  return fmt::format("{} ({})", name, title);
}

std::string shownToken(const TokenInfoObj& token) {
  const std::string& whole = token.getString();
  std::string shown;
  std::size_t characters = 0;
  for (std::size_t at = 0; at < whole.size(); ++characters) {
    if (characters == mostCharactersShown) {
      shown += "…";
      break;
    }
    const text::Character character = text::characterAt(whole, at);
    const bool isShowable = character.codePoint >= 0x20 && character.codePoint != 0x7f;
    shown += isShowable ? whole.substr(at, character.bytes) : "\uFFFD";
    at += character.bytes;
  }
  return token.getKind() == TokenInfoObj::Kind::quotedString ? "'" + shown + "'" : shown;
}

std::string eitherOf(const std::vector<std::string>& words) {
  if (words.empty()) return "";
  std::string all = words.front();
  for (std::size_t at = 1; at + 1 < words.size(); ++at) all += ", " + words[at];
  return words.size() == 1 ? all : sentence("^1 or ^2", {all, words.back()});
}

void reportUnexpected(std::string_view context, const UnexpectedToken& problem) {
  std::string found;
  if (problem.token == nullptr) {
    found = sentence("the end of the command");
  } else {
    found = problem.isPassword ? std::string(hiddenPassword) : shownToken(*problem.token);
  }
  std::string what = sentence("^1: found ^2, expected ^3.", {context, found, problem.expected});
  if (problem.nearest) what += " " + sentence("Did you mean ^1?", {*problem.nearest});
  const TokenInfoObj* place = problem.token != nullptr ? problem.token : problem.lastToken;
  if (place == nullptr) {
    append(std::move(what), currentRun().commandLine, currentRun().commandColumn);
  } else {
    append(std::move(what), place->getLine(), place->getColumn());
  }
}

void reportSyntaxError(std::string_view context, std::string_view what, const TokenInfoObj* token) {
  append(fmt::format("{}: {}", context, what), token != nullptr ? token->getLine() : currentRun().commandLine,
         token != nullptr ? token->getColumn() : currentRun().commandColumn);
}

}  // namespace workbench::language

ParserMessage::ParserMessage() : state_(std::make_unique<State>()) {
  using namespace workbench;
  if (journal().isOn()) journal().line(journal().created(this, "ParserMessage") + " = ParserMessage()");
  language::reportedNames().push_back({this, &state_->commandName, &state_->procedureTitle});
}

ParserMessage::~ParserMessage() {
  using namespace workbench;
  std::erase_if(language::reportedNames(), [this](const auto& names) { return names.owner == this; });
  journal().destroyed(this);
}

void ParserMessage::SetCommandName(std::string_view name) {
  using namespace workbench;
  if (journal().isOn()) {
    journal().line(
        fmt::format("{}.SetCommandName({})", journal().nameOf(this, "ParserMessage"), Journal::quoted(name)));
  }
  state_->commandName = name;
}

void ParserMessage::SetProcedureTitle(std::string_view title) {
  using namespace workbench;
  if (journal().isOn()) {
    journal().line(
        fmt::format("{}.SetProcedureTitle({})", journal().nameOf(this, "ParserMessage"), Journal::quoted(title)));
  }
  state_->procedureTitle = title;
}
