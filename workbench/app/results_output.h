// Where the results go: standard output or a file, in the chosen format.
#pragma once

#include <memory>
#include <string>

#include "workbench/app/command_line.h"
#include "workbench/output/document.h"
#include "workbench/output/formats.h"
#include "workbench/runtime/outcome.h"
#include "workbench/text/wording.h"

namespace workbench::app {

class ResultsOutput {
 public:
  // Looks at the choice before anything is run, so that nothing is computed in vain. The wording outlives it.
  static Outcome<std::unique_ptr<ResultsOutput>> open(const OutputChoice& choice, const text::Wording& wording);

  // To standard error: the messages that do not belong among the results.
  void writeDiagnostics(const output::Document& document) const;
  // To standard output, or whole into the file. Takes tables that were not asked for out of the document.
  Outcome<Done> write(output::Document& document) const;

 private:
  ResultsOutput(const OutputChoice& choice, const output::OutputFormat& format, const text::Wording& wording);

  const OutputChoice choice_;
  const output::OutputFormat& format_;
  const text::Wording& wording_;
};

}  // namespace workbench::app
