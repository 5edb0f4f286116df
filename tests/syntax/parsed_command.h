// Has one command parsed by the real parser into options, over a small active dataset.
//
// The active dataset is open as "a" with the numbers x, y, z and the text town; another one is open as "b".
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/data.h"
#include "syntax/compare_options.h"
#include "workbench/datasets/dataset_manager.h"
#include "workbench/output/document.h"

namespace compdatas {

class ParsedCommand {
 public:
  // What stands behind the command's name.
  explicit ParsedCommand(const std::string& subcommands);

  bool accepted() const { return accepted_; }
  const CompareOptions& options() const { return options_; }
  // Every message on a line: "2/3 text"; "7414 2 2" for a numbered one; "parser" for one of the parser.
  std::string messages() const;
  const std::vector<std::string>& journal() const { return journal_; }

 private:
  workbench::datasets::DatasetManager manager_;
  workbench::output::Command command_;
  std::vector<std::string> journal_;
  CompareOptions options_;
  bool accepted_ = false;
};

}  // namespace compdatas
