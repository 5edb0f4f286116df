#include "workbench/language/grammar_help.h"

#include "workbench/language/grammar_state.h"
#include "workbench/language/value_rules.h"
#include "workbench/text/folding.h"

namespace workbench::language {

namespace {

std::string optionally(bool required, const std::string& text) { return required ? text : "[" + text + "]"; }

std::string keywordHelp(const Keyword& keyword) {
  return optionally(keyword.required, keyword.takesValue ? keyword.name + "=" + valueNotation(keyword) : keyword.name);
}

std::string subcommandHelp(const SubComDescriptor::State& subcommand) {
  const bool isNamed = !subcommand.name.empty();
  const std::string indent = isNamed ? "      " : "  ";
  std::string lines;
  if (isNamed) lines = "/" + subcommand.name;
  if (subcommand.exportParam) {
    const std::string values = (isNamed ? "=" : "") + valueNotation(*subcommand.exportParam);
    lines += optionally(subcommand.exportParam->required, values);
  }
  for (const std::string& name : namesOf(subcommand.keywords)) {
    lines += (lines.empty() ? "" : "\n" + indent) + keywordHelp(*findNamed(subcommand.keywords, name));
  }
  if (isNamed) lines = optionally(subcommand.required, lines) + (subcommand.mayRepeat ? " ..." : "");
  return lines.empty() ? lines : "  " + lines + "\n";
}

}  // namespace

std::string grammarHelp(const CommandDescriptor& grammar) {
  const CommandDescriptor::State& command = grammar.state();
  const bool hasTitle = !command.title.empty() && command.title != command.name;
  std::string help = command.name + (hasTitle ? ": " + command.title : "") + "\n";
  if (const SubComDescriptor::State* unnamed = findNamed(command.subcommands, "")) help += subcommandHelp(*unnamed);
  for (const std::string& name : namesOf(command.subcommands)) {
    help += subcommandHelp(*findNamed(command.subcommands, name));
  }
  return help;
}

}  // namespace workbench::language
