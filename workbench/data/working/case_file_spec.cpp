#include "workbench/data/working/case_file_spec.h"

#include "host/datasets.h"
#include "workbench/data/data_file.h"
#include "workbench/data/files/protected_name.h"
#include "workbench/data/working/file_place.h"
#include "workbench/data/working/handle.h"
#include "workbench/data/working/refusal.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"

namespace workbench::data {
namespace {

constexpr std::string_view workingFileName = "*";

Outcome<Done> checkDatasetIsOpen(std::string_view handle) {
  const Journal::Pause pause(journal());
  ServerDataManager* const datasets = currentRun().datasets;
  bool isOpen = false;
  try {
    isOpen = datasets != nullptr && datasets->GetDataSet(handle).IsValid();
  } catch (...) {
    return Done{};  // a look-up that fails says nothing about the dataset; whoever opens it will meet the failure
  }
  if (isOpen) return Done{};
  // The first sentence stands by itself: procedures give their own users the same words.
  return Problem{
      text::sentence("The dataset does not exist."), "",
      text::sentence("No open dataset has the name ^1; open it first, or put the name of a data file in quotes.",
                     {handle})};
}

}  // namespace

Outcome<CaseFileSpec> inputSpec(std::string_view name, bool isQuoted) {
  CaseFileSpec spec;
  if (!isQuoted && name == workingFileName) {
    spec.kind = CaseFileSpec::Kind::workingFile;
    spec.name = std::string(name);
    return spec;
  }
  spec.kind = isQuoted ? CaseFileSpec::Kind::file : CaseFileSpec::Kind::dataset;
  spec.name = isQuoted ? cleanedPath(name) : std::string(name);
  const Outcome<Done> found = isQuoted ? checkInputFile(spec.name) : checkDatasetIsOpen(name);
  if (!found) return found.problem();
  return spec;
}

Outcome<CaseFileSpec> outputSpec(std::string_view name, const Secret& password) {
  CaseFileSpec spec;
  spec.isForOutput = true;
  if (name == workingFileName) {
    return problem("Cases cannot be saved to the working file; name a data file or a dataset.");
  }
  if (isWellFormedHandle(name)) {
    if (!password.empty()) {
      return problem("^1 names a dataset, and a dataset has no password; name a data file, or leave the password out.",
                     {name});
    }
    spec.kind = CaseFileSpec::Kind::dataset;
    spec.name = std::string(name);
    return spec;
  }
  spec.name = cleanedPath(name);
  const Outcome<Done> canBeWritten = checkOutputFile(spec.name);
  if (!canBeWritten) return canBeWritten.problem();
  const Outcome<Done> kind = checkCanBeWritten(spec.name);
  if (!kind) return kind.problem();
  const Outcome<Done> isNamedRight = checkProtectedName(spec.name, !password.empty());
  if (!isNamedRight) return isNamedRight.problem();
  spec.password = password;
  return spec;
}

}  // namespace workbench::data
