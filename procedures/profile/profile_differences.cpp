// PROFILE DIFFERENCES: the entry point, and the run of one command from start to end. It tells by how much, how often
// and in which direction the values of two datasets differ.
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/data.h"
#include "host/datasets.h"
#include "host/messages.h"
#include "host/output.h"
#include "host/parser.h"
#include "procedures/profile/messages.h"
#include "procedures/profile/paired_cases.h"
#include "procedures/profile/profile_command.h"
#include "procedures/profile/profile_tables.h"
#include "procedures/profile/profile_walk.h"
#include "procedures/profile/variable_pairs.h"

namespace profile {

namespace {

constexpr std::int32_t procedureCode = 8;

// The comparison dataset: a view of an open one, or a data file.
class ComparisonDataset {
 public:
  explicit ComparisonDataset(const UserCaseFileSpec& spec) {
    const std::string& name = spec.DocumentationString();
    if (spec.IsDataset()) {
      view_ = std::make_unique<SvrDMInputDataSource>(ServerDataManager::GetInstance().GetDataSet(name), false);
    } else {
      file_.reset(SystemFileDataSource::GetSystemFile(name, "", true, nullptr));
    }
  }

  VRIX_DataSource& source() const { return view_ != nullptr ? **view_ : *file_; }

 private:
  std::unique_ptr<SvrDMInputDataSource> view_;
  std::unique_ptr<VRIX_DataSource> file_;
};

std::vector<VariableProfile> emptyProfiles(std::vector<VariablePair> pairs, ChangeMemory& memory) {
  std::vector<VariableProfile> profiles;
  profiles.reserve(pairs.size());
  for (VariablePair& pair : pairs) profiles.push_back({std::move(pair), 0, {}, ChangeCounts(memory)});
  return profiles;
}

// Tables are opened when the walk has ended well: a command that has a table counts as completed.
void profileDifferences(BpProcedure& procedure, ProcedureDataSource& active, VRIX_DataSource& comparison,
                        const ProfileOptions& options) {
  auto ids = pairCaseIds(options, active, comparison);
  if (!ids) {
    refuse("The case IDs are not in both datasets with the same type. Name others in CASEID.");
    return;
  }
  std::vector<std::string> unpaired;
  ChangeMemory memory;
  Profile profile;
  profile.variables = emptyProfiles(pairVariables(options, active, comparison, unpaired), memory);
  warnOfUnprofiled(unpaired);

  PairedCases cases(active, comparison, std::move(*ids));
  if (!walkCases(cases, profile)) return;
  writeTables(procedure, profile, cases, static_cast<std::size_t>(options.changesShown));
}

void runCommand() {
  BpProcedure procedure(procedureTitle, procedureCode);
  const VRIX_TokenSequence tokens(true);
  ProcedureDataSource active;
  ProfileOptions options;
  if (!readCommand(tokens, active, options)) return;
  const ComparisonDataset comparison(options.comparison);
  profileDifferences(procedure, active, comparison.source(), options);
}

}  // namespace

}  // namespace profile

extern "C" __attribute__((visibility("default"))) void PROFDIFF() { profile::runCommand(); }
