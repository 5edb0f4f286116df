// CommandParser: reads the tokens of a command against its grammar, and reports the first thing that does not fit.
//
// The tokens before the first "/" belong to the grammar's subcommand without a name, when it has one: the host's own
// commands have their keywords there. A value list reaches to the next "/", to a word followed by "=", or to the end;
// its values may be set apart by single commas.
// Requires: tokens and grammar outlive the parser; a command is running.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/parser.h"
#include "workbench/language/grammar_state.h"
#include "workbench/language/spec_state.h"
#include "workbench/language/syntax_report.h"

namespace workbench::language {

class CommandParser {
 public:
  CommandParser(const std::vector<TokenInfoObj>& tokens, const CommandDescriptor::State& grammar);

  // Fills what was given. False when an error was reported.
  bool parse(CommandSpec::State& spec);

 private:
  using Grammar = CommandDescriptor::State;
  using SubcommandGrammar = SubComDescriptor::State;
  using KeywordGrammar = ParamDescriptor::State;

  bool parseLeadingKeywords(CommandSpec::State& spec);
  bool parseSubcommand(CommandSpec::State& spec);
  bool parseBody(const SubcommandGrammar& grammar, CommandSpec::State& spec);
  bool parseExportValues(const SubcommandGrammar& grammar, SubComObj::State& content);
  bool parseKeyword(const SubcommandGrammar& grammar, SubComObj::State& content);
  bool parseValues(const SubcommandGrammar& subcommand, const KeywordGrammar& grammar,
                   std::vector<TokenInfoObj>& values);
  bool checkRequired(const CommandSpec::State& spec);
  bool checkRequired(const SubcommandGrammar& grammar, const SubComObj::State& content);

  const TokenInfoObj* here() const { return at_ < tokens_.size() ? &tokens_[at_] : nullptr; }
  bool atMark(std::string_view mark) const;
  bool atWord() const;
  bool atKeyword() const;  // a word followed by "="
  bool atListEnd(const SubcommandGrammar& subcommand) const;

  std::string contextOf(const SubcommandGrammar& subcommand) const;
  std::string expectedAfter(const SubcommandGrammar& subcommand) const;
  // Reports the token here; always false.
  bool unexpected(std::string_view context, std::string expected, const std::vector<std::string>& known = {},
                  bool isPassword = false) const;
  bool unexpectedKeyword(const SubcommandGrammar& grammar) const;

  const std::vector<TokenInfoObj>& tokens_;
  const Grammar& grammar_;
  std::string command_;  // the name under which errors are reported
  std::size_t at_ = 0;
};

}  // namespace workbench::language
