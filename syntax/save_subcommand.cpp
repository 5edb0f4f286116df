#include "syntax/save_subcommand.h"

#include <string>

#include "driver/messages.h"

namespace compdatas {

namespace {

bool isYes(const ParamObj* keyword) { return keyword != nullptr && keyword->isStringValueCase("YES"); }

void readFlagVariable(const ParamObj* flagMismatches, const ParamObj* varName, CompareOptions& options) {
  if (flagMismatches != nullptr) {
    options.setFlagMismatches(isYes(flagMismatches));
    if (!isYes(flagMismatches)) return;
  }
  if (varName == nullptr) return;
  const std::string name = varName->getStringToken();
  if (!name.empty()) options.setFlagVarName(name);
}

// Where cases of one kind are saved, and how the options take it.
struct SavedCases {
  const ParamObj* dataset;
  const ParamObj* name;
  const ParamObj* password;
  void (CompareOptions::*setDataset)(bool);
  void (CompareOptions::*setName)(const std::string&);
  void (CompareOptions::*setPassword)(const std::string&);
  const char* passwordTooShort;
};

// A password counts only when both it and the name were written as quoted strings, that is for files. `isQuoted` is the
// flag of the last value read; it goes on from one kind of cases to the next. False after a password that is too short.
bool readSavedCases(const SavedCases& cases, bool& isQuoted, CompareOptions& options) {
  if (!isYes(cases.dataset)) return true;
  (options.*cases.setDataset)(true);

  std::string value;
  if (cases.name != nullptr && cases.name->getStringOrLiteral(value, isQuoted)) (options.*cases.setName)(value);

  if (cases.password == nullptr || !isQuoted) return true;
  if (!cases.password->getStringOrLiteral(value, isQuoted) || !isQuoted) return true;
  if (value.empty()) {
    reportRefusal(cases.passwordTooShort);
    return false;
  }
  (options.*cases.setPassword)(value);
  return true;
}

}  // namespace

bool readSave(const SubComObj& subcommand, CompareOptions& options) {
  const ParamObj* flagMismatches = subcommand.getParamObj("FLAGMISMATCHES");
  const ParamObj* varName = subcommand.getParamObj("VARNAME");
  const ParamObj* matchDataset = subcommand.getParamObj("MATCHDATASET");
  const ParamObj* matchName = subcommand.getParamObj("MATCHNAME");
  const ParamObj* matchPassword = subcommand.getParamObj("MATCHPASS");
  const ParamObj* mismatchDataset = subcommand.getParamObj("MISMATCHDATASET");
  const ParamObj* mismatchName = subcommand.getParamObj("MISMATCHNAME");
  const ParamObj* mismatchPassword = subcommand.getParamObj("MISMATCHPASS");
  const ParamObj* encryptedPassword = subcommand.getParamObj("ENCRYPTEDPW");

  readFlagVariable(flagMismatches, varName, options);

  bool isQuoted = true;
  bool accepted = readSavedCases(
      {matchDataset, matchName, matchPassword, &CompareOptions::setMatchDataset, &CompareOptions::setMatchName,
       &CompareOptions::setMatchPassword, "MATCHPASS password too short."},
      isQuoted, options);
  if (accepted) {
    accepted = readSavedCases(
        {mismatchDataset, mismatchName, mismatchPassword, &CompareOptions::setMismatchDataset,
         &CompareOptions::setMismatchName, &CompareOptions::setMismatchPassword, "MISMATCHPASS password too short."},
        isQuoted, options);
  }

  options.setEncryptedPassword(isYes(encryptedPassword));  // also after a password that is too short
  return accepted;
}

}  // namespace compdatas
