#include "tests/syntax/parsed_command.h"

#include <fmt/format.h>

#include "syntax/command_syntax.h"
#include "tests/support/dataset_builder.h"
#include "workbench/data/working/active_source.h"
#include "workbench/language/tokens.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/wording.h"

namespace compdatas {

namespace {

const workbench::text::Wording& english() {
  static const auto wording = std::move(*workbench::text::Wording::load("en"));
  return *wording;
}

}  // namespace

ParsedCommand::ParsedCommand(const std::string& subcommands) {
  using workbench::currentRun;
  using workbench::tests::dataset;
  static_cast<void>(manager_.open(dataset().numeric("x", {1}).build(), "b"));
  static_cast<void>(manager_.open(
      dataset().numeric("x", {1}).numeric("y", {1}).numeric("z", {1}).text("town", 8, {"Ghent"}).build(), "a"));
  const std::vector<TokenInfoObj> tokens = workbench::language::tokensOf(subcommands);
  const auto active = manager_.makeActiveSource();

  workbench::CurrentRun& run = currentRun();
  run.command = &command_;
  run.tokens = &tokens;
  run.datasets = &manager_;
  run.adapter = &manager_;
  run.wording = &english();
  run.activeSource = active.get();
  pvGetCmnGlb()->pendingError = 0;
  workbench::journal().sendTo([this](std::string_view line) { journal_.emplace_back(line); });
  workbench::journal().beginCommand("COMPARE DATASETS");
  {
    const VRIX_TokenSequence sequence(true);
    const ProcedureDataSource source;
    CommandSyntax syntax(sequence, options_, source);
    accepted_ = syntax.parse();
  }
  workbench::journal().sendTo({});
  run = workbench::CurrentRun();
}

std::string ParsedCommand::messages() const {
  std::string all;
  for (const auto& item : command_.items) {
    const auto& message = std::get<workbench::output::Message>(item);
    if (message.number) {
      all += fmt::format("{} {} {}\n", *message.number, message.show, message.level);
    } else if (message.source == workbench::output::Message::Source::parser) {
      all += "parser\n";
    } else {
      all += fmt::format("{}/{} {}\n", message.show, message.level,
                         std::get<workbench::output::StringText>(message.text.held).key);
    }
  }
  return all;
}

}  // namespace compdatas
