// Runs the real plug-in over the datasets of a world and reports what it issued and left behind.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "tests/model/command.h"
#include "tests/model/naive_run.h"
#include "tests/model/report.h"
#include "tests/model/world.h"
#include "tests/procedure/procedure_run.h"

namespace workbench::tests::model {

// The texts of the message catalog, the order of texts of a locale.
void equip(World& world);

// A file of a folder that lives as long as the process.
std::string scratchFile(const std::string& name);
// The same of the folder that runs write their data files to; it is empty when a run begins.
std::string outputFile(const std::string& name);

class ObservedRun {
 public:
  // With a journal cases come in blocks of one, without one in blocks of many.
  enum class Journal { kept, none };

  // Runs the command. Datasets with a path are opened from that file, which must hold what they hold.
  ObservedRun(const World& world, const Command& command, Journal journal = Journal::none);

  // `foretold` says where saved cases are to be looked for.
  Report report(const Foretold& foretold) const;
  // A saved dataset; nothing when there is none under that handle.
  std::optional<Dataset> saved(const std::string& handle);
  ProcedureRun& run() { return run_; }
  const ProcedureRun& run() const { return run_; }

 private:
  std::string savedText(const std::optional<ForetoldOutput>& output) const;

  mutable ProcedureRun run_;  // looking changes nothing
  bool isInJournal_;
};

// Empty when the run did all that was foretold; else the first difference.
std::string disagreement(const World& world, const Command& command,
                         ObservedRun::Journal journal = ObservedRun::Journal::none);

}  // namespace workbench::tests::model
