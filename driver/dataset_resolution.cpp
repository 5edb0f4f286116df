#include "driver/dataset_resolution.h"

#include "driver/messages.h"

namespace compdatas {

namespace {

constexpr const char* sameOutputs = "The datasets for matched a...";

bool sameDatasetName(const std::string& left, const std::string& right) { return VRIXMBstricmp_A(left, right) == 0; }

bool checkNotActive(const UserCaseFileSpec& comparison, RunNames& names) {
  if (!comparison.IsDataset()) return true;
  names.comparison = comparison.DocumentationString();
  SvrDMDataset* active = GetAdapter().GetActiveDataset();
  if (active == nullptr) return true;
  names.active = active->GetHandle();
  if (!sameDatasetName(names.comparison, names.active)) return true;
  reportRefusal("The active dataset and the comparison dataset are the same dataset. No comparison was performed.");
  return false;
}

// A file of either of the two datasets is not looked for here: the host refuses to write over an input.
bool checkMatched(const CompareOptions& options, UserCaseFileSpec& spec, RunNames& names) {
  if (!options.matchDataset()) return true;
  if (!spec.Init(options.matchName(), false, true, options.matchPassword(), options.encryptedPassword())) {
    reportRefusal(spec.ErrorText());
    return false;
  }
  names.matched = spec.DocumentationString();
  if (spec.IsDataset() &&
      (sameDatasetName(names.matched, names.active) || sameDatasetName(names.matched, names.comparison))) {
    reportRefusal("MATCHNAME cannot be one of ...");
    return false;
  }
  return true;
}

bool checkMismatched(const CompareOptions& options, const UserCaseFileSpec& matchedSpec, UserCaseFileSpec& spec,
                     RunNames& names) {
  if (!options.mismatchDataset()) return true;
  if (!spec.Init(options.mismatchName(), false, true, options.mismatchPassword(), options.encryptedPassword())) {
    reportRefusal(spec.ErrorText());
    return false;
  }
  names.mismatched = spec.DocumentationString();
  if (spec.IsDataset()) {
    if (sameDatasetName(names.mismatched, names.active) || sameDatasetName(names.mismatched, names.comparison)) {
      reportRefusal("MISMATCHNAME cannot be one of ...");
      return false;
    }
    if (sameDatasetName(names.mismatched, names.matched)) {
      reportRefusal(sameOutputs);
      return false;
    }
  } else if (spec.IsFile() && matchedSpec.IsFile() && VRIXMBstrcmp_A(names.mismatched, names.matched) == 0) {
    reportRefusal(sameOutputs);
    return false;
  }
  return true;
}

}  // namespace

bool checkNames(const CompareOptions& options, UserCaseFileSpec& matchedSpec, UserCaseFileSpec& mismatchedSpec,
                RunNames& names) {
  return checkNotActive(options.compDataset(), names) && checkMatched(options, matchedSpec, names) &&
         checkMismatched(options, matchedSpec, mismatchedSpec, names);
}

SvrDMItemPtr findManagedDataset(const UserCaseFileSpec& comparison, const std::string& comparisonName) {
  try {
    ServerDataManager& manager = ServerDataManager::GetInstance();
    if (comparison.IsDataset()) return manager.GetDataSet(comparisonName);
  } catch (...) {
    // Whatever the manager throws: the run goes on as if it held no such dataset.
    BP_ToFront(0, std::string_view("caught an exception here"));
  }
  return SvrDMItemPtr();
}

VRIX_DataSource* ComparisonData::source() const { return view != nullptr ? &**view : fileSource.get(); }

void ComparisonData::close() {
  fileSource.reset();
  view.reset();
}

void ComparisonData::leaveOpen() {
  static_cast<void>(fileSource.release());
  static_cast<void>(view.release());
}

bool openComparison(const CompareOptions& options, const SvrDMItemPtr& managed, ComparisonData& data) {
  const UserCaseFileSpec& comparison = options.compDataset();
  if (managed.IsValid()) {
    data.view = std::make_unique<SvrDMInputDataSource>(managed, false);
    data.displayText = data.view->GetHandle();
    return true;
  }
  if (!comparison.IsFile()) return true;  // no comparison data at all
  data.displayText = comparison.DocumentationString();
  try {
    data.fileSource.reset(
        SystemFileDataSource::GetSystemFile(data.displayText, options.compDatasetPassword(), true, nullptr));
    return true;
  } catch (const ErrorText& error) {
    report(error.GetText(), BpErrorShow::diagnostics, BpErrorLevel::severeError);
    return false;
  }
}

}  // namespace compdatas
