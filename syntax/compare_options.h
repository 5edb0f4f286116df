// CompareOptions: everything that one COMPARE DATASETS command asks for.
//
// A handle that owns one record on the heap. The readers of the subcommands fill it, in the order COMPDATASET,
// VARIABLES, CASEID, SAVE, OUTPUT; afterwards it is only read. Invariant: varPropertiesNone, varPropertiesAll and
// varProperties describe one choice, tableLimitNone and tableLimit another; the setters keep them so. An empty password
// means that none is used.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/data.h"

namespace compdatas {

// The property keywords of OUTPUT VARPROPERTIES in upper case and in the user's order, duplicates kept; never NONE or
// ALL.
using VarPropertySet = std::vector<std::string>;

struct CompareOptionsRecord {
  bool initialFlag = false;  // set by nobody
  UserCaseFileSpec compDataset;
  std::string compDatasetPassword;
  std::vector<std::int32_t> compareVariables;  // indexes into the active dataset's dictionary
  bool spareFlag = false;                      // has a setter that nobody calls
  std::vector<VrixVarName> variablesNotInActive;
  std::vector<std::int32_t> caseIdVariables;  // like compareVariables
  bool flagMismatches = true;
  std::string flagVarName = "CasesCompare";
  bool matchDataset = false;
  std::string matchName = "MatchedCases";
  std::string matchPassword;
  bool mismatchDataset = false;
  std::string mismatchName = "MismatchedCases";
  std::string mismatchPassword;
  bool encryptedPassword = false;
  bool varPropertiesNone = true;
  bool varPropertiesAll = false;
  VarPropertySet varProperties;
  bool caseTable = true;
  bool tableLimitNone = false;
  std::int32_t tableLimit = 100;
};

class CompareOptions {
 public:
  CompareOptions();
  CompareOptions(const CompareOptions&) = delete;
  CompareOptions& operator=(const CompareOptions&) = delete;
  ~CompareOptions();

  // The spec is initialised in place, so this one is a reference to the stored object.
  UserCaseFileSpec& compDataset() { return record_->compDataset; }
  const UserCaseFileSpec& compDataset() const { return record_->compDataset; }

  // Lists: the stored ones, not copies.
  const std::vector<std::int32_t>& compareVariables() const { return record_->compareVariables; }
  const std::vector<VrixVarName>& variablesNotInActive() const { return record_->variablesNotInActive; }
  const std::vector<std::int32_t>& caseIdVariables() const { return record_->caseIdVariables; }

  // Texts and properties: copies.
  std::string compDatasetPassword() const { return record_->compDatasetPassword; }
  std::string flagVarName() const { return record_->flagVarName; }
  std::string matchName() const { return record_->matchName; }
  std::string matchPassword() const { return record_->matchPassword; }
  std::string mismatchName() const { return record_->mismatchName; }
  std::string mismatchPassword() const { return record_->mismatchPassword; }
  VarPropertySet varProperties() const { return record_->varProperties; }

  bool flagMismatches() const { return record_->flagMismatches; }
  bool matchDataset() const { return record_->matchDataset; }
  bool mismatchDataset() const { return record_->mismatchDataset; }
  bool encryptedPassword() const { return record_->encryptedPassword; }
  bool varPropertiesNone() const { return record_->varPropertiesNone; }
  bool varPropertiesAll() const { return record_->varPropertiesAll; }
  bool caseTable() const { return record_->caseTable; }
  bool tableLimitNone() const { return record_->tableLimitNone; }
  bool spareFlag() const { return record_->spareFlag; }
  std::int32_t tableLimit() const { return record_->tableLimit; }

  // Setters of texts do nothing when handed the field itself.
  void setCompDatasetPassword(const std::string& password);
  void setFlagVarName(const std::string& name);
  void setMatchName(const std::string& name);
  void setMatchPassword(const std::string& password);
  void setMismatchName(const std::string& name);
  void setMismatchPassword(const std::string& password);

  void setFlagMismatches(bool value) { record_->flagMismatches = value; }
  void setMatchDataset(bool value) { record_->matchDataset = value; }
  void setMismatchDataset(bool value) { record_->mismatchDataset = value; }
  void setEncryptedPassword(bool value) { record_->encryptedPassword = value; }
  void setCaseTable(bool value) { record_->caseTable = value; }
  void setSpareFlag() { record_->spareFlag = true; }

  // Both append.
  void setCompareVariables(const std::vector<std::int32_t>& variables);
  void setCaseIdVariables(const std::vector<std::int32_t>& variables);
  void setVariablesNotInActive(const std::vector<VrixVarName>& names);  // replaces

  void setVarPropertiesNone();
  void setVarPropertiesAll();
  // An empty list leaves the choice between none and all as it was.
  void setVarProperties(const VarPropertySet& properties);

  void setTableLimit(std::int32_t limit);
  void setTableLimitNone() { record_->tableLimitNone = true; }

 private:
  std::unique_ptr<CompareOptionsRecord> record_;
};

}  // namespace compdatas
