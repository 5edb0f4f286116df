// CommandSyntax: has the command parsed by the host and reads its subcommands into CompareOptions.
//
// Requires: the tokens, the options and the active source outlive it. Only the active dataset is open at this point:
// every variable name is looked up there, and the comparison dataset is described, not opened.
#pragma once

#include "host/data.h"
#include "host/parser.h"
#include "syntax/compare_options.h"

namespace compdatas {

class CommandSyntax {
 public:
  CommandSyntax(const VRIX_TokenSequence& tokens, CompareOptions& options, const ProcedureDataSource& activeSource);

  // True when the command is valid and the options are filled; otherwise the fault has been reported, and the fields
  // already filled stand as they are.
  bool parse();

 private:
  bool readSubcommands(const CommandSpec& command);
  bool readCompDataset(const SubComObj& subcommand);
  bool readVariables(const SubComObj& subcommand);
  bool readCaseId(const SubComObj& subcommand);

  const VRIX_TokenSequence& tokens_;
  CompareOptions& options_;
  const ProcedureDataSource& activeSource_;
  CommandDescriptor grammar_;  // the two below look at it
  VarSpecObj variables_;
  VarSpecObj caseIds_;
};

}  // namespace compdatas
