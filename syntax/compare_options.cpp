#include "syntax/compare_options.h"

namespace compdatas {

namespace {

void store(std::string& field, const std::string& value) {
  if (&field != &value) field = value;
}

}  // namespace

CompareOptions::CompareOptions() : record_(std::make_unique<CompareOptionsRecord>()) {}

CompareOptions::~CompareOptions() = default;

void CompareOptions::setCompDatasetPassword(const std::string& password) {
  store(record_->compDatasetPassword, password);
}

void CompareOptions::setFlagVarName(const std::string& name) { store(record_->flagVarName, name); }

void CompareOptions::setMatchName(const std::string& name) { store(record_->matchName, name); }

void CompareOptions::setMatchPassword(const std::string& password) { store(record_->matchPassword, password); }

void CompareOptions::setMismatchName(const std::string& name) { store(record_->mismatchName, name); }

void CompareOptions::setMismatchPassword(const std::string& password) { store(record_->mismatchPassword, password); }

void CompareOptions::setCompareVariables(const std::vector<std::int32_t>& variables) {
  record_->compareVariables.insert(record_->compareVariables.end(), variables.begin(), variables.end());
}

void CompareOptions::setCaseIdVariables(const std::vector<std::int32_t>& variables) {
  record_->caseIdVariables.insert(record_->caseIdVariables.end(), variables.begin(), variables.end());
}

void CompareOptions::setVariablesNotInActive(const std::vector<VrixVarName>& names) {
  record_->variablesNotInActive = names;
}

void CompareOptions::setVarPropertiesNone() {
  record_->varPropertiesNone = true;
  record_->varPropertiesAll = false;
}

void CompareOptions::setVarPropertiesAll() {
  record_->varPropertiesAll = true;
  record_->varPropertiesNone = false;
}

void CompareOptions::setVarProperties(const VarPropertySet& properties) {
  record_->varProperties = properties;
  if (properties.empty()) return;
  record_->varPropertiesNone = false;
  record_->varPropertiesAll = false;
}

void CompareOptions::setTableLimit(std::int32_t limit) {
  record_->tableLimit = limit;
  record_->tableLimitNone = false;
}

}  // namespace compdatas
