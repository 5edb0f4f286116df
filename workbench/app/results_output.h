// Where the results go: standard output or a file, in the chosen format.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "workbench/app/command_line.h"
#include "workbench/output/document.h"
#include "workbench/output/formats.h"
#include "workbench/output/moment.h"
#include "workbench/runtime/outcome.h"
#include "workbench/text/wording.h"

namespace workbench::app {

class ResultsOutput {
 public:
  // Looks at the choice before anything is run, so that nothing is computed in vain. The wording outlives it.
  // A problem as well: a workbook for a terminal, a file that cannot be put there, and an environment whose
  // SOURCE_DATE_EPOCH is no time.
  static Outcome<std::unique_ptr<ResultsOutput>> open(const OutputChoice& choice, const text::Wording& wording);

  // To standard error: the messages that do not belong among the results, and that a table that was asked for is not
  // there.
  void writeDiagnostics(const output::Document& document) const;
  // To standard output, or whole into the file, which is none that data came from or went to. Takes tables that were
  // not asked for out of the document.
  Outcome<Done> write(output::Document& document) const;

 private:
  ResultsOutput(const OutputChoice& choice, const output::OutputFormat& format, const text::Wording& wording,
                const output::MomentOfResults& moment);

  void warnOfMissingTable(const output::Document& document) const;

  const OutputChoice choice_;
  const output::OutputFormat& format_;
  const text::Wording& wording_;
  const output::MomentOfResults moment_;
};

}  // namespace workbench::app
