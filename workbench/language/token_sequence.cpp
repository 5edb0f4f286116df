// TokenInfoObj and VRIX_TokenSequence of host/parser.h.

#include <fmt/format.h>

#include <utility>

#include "host/parser.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"
#include "workbench/runtime/secret.h"

// A token may be a password, and none is to stay in memory behind it: what its text leaves is overwritten, also what a
// short text leaves where it was moved from.
TokenInfoObj::TokenInfoObj(Kind kind, std::string text, std::int32_t line, std::int32_t column)
    : text_(std::move(text)), kind_(kind), line_(line), column_(column) {
  workbench::wipe(text);
}

TokenInfoObj::TokenInfoObj(const TokenInfoObj&) = default;
TokenInfoObj::TokenInfoObj(TokenInfoObj&&) noexcept = default;

TokenInfoObj& TokenInfoObj::operator=(const TokenInfoObj& other) {
  TokenInfoObj copy(other);
  return *this = std::move(copy);
}

TokenInfoObj& TokenInfoObj::operator=(TokenInfoObj&& other) noexcept {
  if (this == &other) return *this;
  workbench::wipe(text_);
  text_ = std::move(other.text_);
  kind_ = other.kind_;
  line_ = other.line_;
  column_ = other.column_;
  return *this;
}

TokenInfoObj::~TokenInfoObj() { workbench::wipe(text_); }

struct VRIX_TokenSequence::State {
  std::vector<TokenInfoObj> tokens;
};

VRIX_TokenSequence::VRIX_TokenSequence(bool fromStart) : state_(std::make_unique<State>()) {
  using namespace workbench;
  if (journal().isOn()) {
    const std::string name = journal().created(this, "VRIX_TokenSequence");
    journal().line(fmt::format("{} = VRIX_TokenSequence({})", name, fromStart));
  }
  // What does not start at the first token starts behind the command's own keywords, at its first subcommand.
  if (currentRun().tokens == nullptr) return;
  const std::vector<TokenInfoObj>& all = *currentRun().tokens;
  auto first = all.begin();
  const auto startsSubcommand = [](const TokenInfoObj& token) {
    return token.getKind() == TokenInfoObj::Kind::punctuation && token.getString() == "/";
  };
  while (!fromStart && first != all.end() && !startsSubcommand(*first)) ++first;
  state_->tokens.assign(first, all.end());
}

VRIX_TokenSequence::~VRIX_TokenSequence() { workbench::journal().destroyed(this); }

const std::vector<TokenInfoObj>& VRIX_TokenSequence::tokens() const {
  using workbench::journal;
  if (journal().isOn()) {
    journal().line(
        fmt::format("{}.tokens() -> {} tokens", journal().nameOf(this, "VRIX_TokenSequence"), state_->tokens.size()));
  }
  return state_->tokens;
}
