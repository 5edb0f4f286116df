#include "workbench/language/command_parser.h"

#include <fmt/format.h>

#include <utility>

#include "workbench/language/hidden_passwords.h"
#include "workbench/language/tokens.h"
#include "workbench/language/value_rules.h"
#include "workbench/text/nearest_word.h"
#include "workbench/text/wording.h"

namespace workbench::language {

namespace {

using text::sentence;

std::string eitherOfSubcommands(const CommandDescriptor::State& grammar) {
  std::vector<std::string> names = namesOf(grammar.subcommands);
  for (std::string& name : names) name.insert(0, 1, '/');
  return eitherOf(names);
}

}  // namespace

CommandParser::CommandParser(const std::vector<TokenInfoObj>& tokens, const CommandDescriptor::State& grammar)
    : tokens_(tokens), grammar_(grammar), command_(reportedCommand(grammar.name)) {}

bool CommandParser::parse(CommandSpec::State& spec) {
  spec.subcommands.clear();
  if (!parseLeadingKeywords(spec)) return false;
  while (here() != nullptr) {
    if (!parseSubcommand(spec)) return false;
  }
  return checkRequired(spec);
}

bool CommandParser::parseLeadingKeywords(CommandSpec::State& spec) {
  if (const SubcommandGrammar* unnamed = findNamed(grammar_.subcommands, "")) return parseBody(*unnamed, spec);
  return true;
}

bool CommandParser::parseSubcommand(CommandSpec::State& spec) {
  const std::vector<std::string> names = namesOf(grammar_.subcommands);
  if (!atMark("/")) {
    const bool isMissingSlash = atWord() && findNamed(grammar_.subcommands, here()->getString()) != nullptr;
    if (isMissingSlash) return unexpected(command_, sentence("a slash before the name of the subcommand"));
    return unexpected(command_, names.empty() ? sentence("the end of the command") : eitherOfSubcommands(grammar_),
                      names);
  }
  ++at_;
  const SubcommandGrammar* subcommand = atWord() ? findNamed(grammar_.subcommands, here()->getString()) : nullptr;
  if (subcommand == nullptr || subcommand->name.empty()) {
    return unexpected(command_, names.empty() ? sentence("no subcommand") : eitherOf(names), names);
  }
  if (!subcommand->mayRepeat && findNamed(spec.subcommands, subcommand->name) != nullptr) {
    reportSyntaxError(
        command_, sentence("the subcommand ^1 is given twice; it may stand only once.", {subcommand->name}), here());
    return false;
  }
  ++at_;
  return parseBody(*subcommand, spec);
}

bool CommandParser::parseBody(const SubcommandGrammar& grammar, CommandSpec::State& spec) {
  auto object = std::make_unique<SubComObj>(grammar.name);
  SubComObj::State& content = object->state();
  if (grammar.spec == UPSpecTypes::SubComSpec::valuesThenKeywords && grammar.exportParam) {
    if (!parseExportValues(grammar, content)) return false;
  }
  while (here() != nullptr && !atMark("/")) {
    if (!parseKeyword(grammar, content)) return false;
  }
  if (!checkRequired(grammar, content)) return false;
  spec.subcommands.push_back({grammar.name, std::move(object)});
  return true;
}

bool CommandParser::parseExportValues(const SubcommandGrammar& grammar, SubComObj::State& content) {
  if (!grammar.name.empty()) {
    if (here() == nullptr || atMark("/") || atKeyword()) return true;
    if (!atMark("=")) {
      return unexpected(contextOf(grammar), sentence("^1 after the name of the subcommand", {"="}));
    }
    ++at_;
  } else if (atListEnd(grammar)) {
    return true;
  }
  std::vector<TokenInfoObj> values;
  if (!parseValues(grammar, *grammar.exportParam, values)) return false;
  content.exportParam = std::make_unique<ParamObj>("", std::move(values));
  return true;
}

bool CommandParser::parseKeyword(const SubcommandGrammar& grammar, SubComObj::State& content) {
  const KeywordGrammar* keyword = atWord() ? findNamed(grammar.keywords, here()->getString()) : nullptr;
  if (keyword == nullptr) return unexpectedKeyword(grammar);
  const std::string context = contextOf(grammar);
  if (findNamed(content.keywords, keyword->name) != nullptr) {
    reportSyntaxError(context, sentence("the keyword ^1 is given twice; it may stand only once.", {keyword->name}),
                      here());
    return false;
  }
  ++at_;
  std::vector<TokenInfoObj> values;
  if (keyword->takesValue) {
    const bool isPassword = isPasswordKeyword(keyword->name);
    if (!atMark("=")) return unexpected(context, sentence("^1 after ^2", {"=", keyword->name}), {}, isPassword);
    ++at_;
    if (atListEnd(grammar)) {
      return unexpected(context, sentence("a value of ^1: ^2", {keyword->name, expectedValue(*keyword)}));
    }
    if (!parseValues(grammar, *keyword, values)) return false;
  } else if (atMark("=")) {
    return unexpected(context, sentence("no value, as ^1 takes none", {keyword->name}));
  }
  content.keywords.push_back({keyword->name, std::make_unique<ParamObj>(keyword->name, std::move(values))});
  return true;
}

bool CommandParser::parseValues(const SubcommandGrammar& subcommand, const KeywordGrammar& grammar,
                                std::vector<TokenInfoObj>& values) {
  const std::string context = contextOf(subcommand);
  const bool isPassword = isPasswordKeyword(grammar.name);
  const std::string expected = grammar.name.empty()
                                   ? expectedValue(grammar)
                                   : sentence("a value of ^1: ^2", {grammar.name, expectedValue(grammar)});
  bool isAfterComma = false;
  while (!atListEnd(subcommand) || isAfterComma) {
    const bool isSeparated = !values.empty() && !isAfterComma && takesList(grammar);
    if (isSeparated && atMark(",")) {
      isAfterComma = true;
      ++at_;
      continue;
    }
    if (atMark("(") || atMark("[")) return unexpected(context, sentence("a value without brackets around it"));
    if (atListEnd(subcommand)) return unexpected(context, expected);
    if (!values.empty() && !takesList(grammar)) {
      // What stands here may be a keyword whose "=" was forgotten; that is judged as a keyword.
      if (atWord() && findNamed(subcommand.keywords, here()->getString()) != nullptr) return true;
      const std::string only =
          grammar.name.empty() ? sentence("one value only") : sentence("one value of ^1 only", {grammar.name});
      return unexpected(context, only, {}, isPassword);
    }
    if (!takes(grammar, *here())) return unexpected(context, expected, grammar.allowed, isPassword);
    values.push_back(*here());
    isAfterComma = false;
    ++at_;
  }
  return true;
}

bool CommandParser::checkRequired(const CommandSpec::State& spec) {
  for (const std::string& name : namesOf(grammar_.subcommands)) {
    if (!findNamed(grammar_.subcommands, name)->required || findNamed(spec.subcommands, name) != nullptr) continue;
    return unexpected(command_, sentence("the subcommand ^1, which is required", {"/" + name}));
  }
  return true;
}

bool CommandParser::checkRequired(const SubcommandGrammar& grammar, const SubComObj::State& content) {
  if (grammar.exportParam && grammar.exportParam->required && content.exportParam == nullptr) {
    return unexpected(contextOf(grammar), expectedValue(*grammar.exportParam));
  }
  for (const std::string& name : namesOf(grammar.keywords)) {
    if (!findNamed(grammar.keywords, name)->required || findNamed(content.keywords, name) != nullptr) continue;
    return unexpected(contextOf(grammar), sentence("the keyword ^1, which is required", {name}));
  }
  return true;
}

bool CommandParser::atMark(std::string_view mark) const { return here() != nullptr && isPunctuation(*here(), mark); }

bool CommandParser::atWord() const { return here() != nullptr && here()->getKind() == TokenInfoObj::Kind::word; }

bool CommandParser::atKeyword() const {
  return atWord() && at_ + 1 < tokens_.size() && isPunctuation(tokens_[at_ + 1], "=");
}

bool CommandParser::atListEnd(const SubcommandGrammar& subcommand) const {
  if (here() == nullptr || atMark("/") || atKeyword()) return true;
  const KeywordGrammar* keyword = atWord() ? findNamed(subcommand.keywords, here()->getString()) : nullptr;
  return keyword != nullptr && !keyword->takesValue;
}

std::string CommandParser::contextOf(const SubcommandGrammar& subcommand) const {
  return subcommand.name.empty() ? command_ : fmt::format("{}, {}", command_, subcommand.name);
}

std::string CommandParser::expectedAfter(const SubcommandGrammar& subcommand) const {
  const std::vector<std::string> keywords = namesOf(subcommand.keywords);
  if (!keywords.empty()) return eitherOf(keywords);
  return namesOf(grammar_.subcommands).empty() ? sentence("the end of the command")
                                               : sentence("a slash and the next subcommand");
}

bool CommandParser::unexpected(std::string_view context, std::string expected, const std::vector<std::string>& known,
                               bool isPassword) const {
  UnexpectedToken problem;
  problem.token = here();
  problem.lastToken = tokens_.empty() ? nullptr : &tokens_.back();
  problem.expected = std::move(expected);
  problem.isPassword = isPassword;
  if (atWord() && !isPassword) problem.nearest = text::nearestWord(here()->getString(), known);
  reportUnexpected(context, problem);
  return false;
}

bool CommandParser::unexpectedKeyword(const SubcommandGrammar& grammar) const {
  if (atKeyword() && findNamed(grammar_.subcommands, here()->getString()) != nullptr) {
    return unexpected(contextOf(grammar), sentence("a slash before the name of the subcommand"));
  }
  return unexpected(contextOf(grammar), expectedAfter(grammar), namesOf(grammar.keywords));
}

}  // namespace workbench::language
