// UserCaseFileSpec: a dataset or data file as a user names it in a command.
#include <fmt/format.h>

#include <optional>

#include "host/data.h"
#include "workbench/data/working/case_file_spec.h"
#include "workbench/data/working/journal_call.h"
#include "workbench/data/working/password_decoder.h"
#include "workbench/data/working/password_reference.h"
#include "workbench/data/working/user_case_file_spec_state.h"
#include "workbench/runtime/journal.h"

using workbench::journal;
using workbench::Outcome;
using workbench::Secret;
using workbench::data::CaseFileSpec;
using workbench::data::inJournal;
using workbench::data::journaledCall;

namespace {

Outcome<CaseFileSpec> specOf(std::string_view name, bool isQuoted, bool forOutput, std::string_view password,
                             bool passwordIsEncrypted) {
  Secret plainPassword = workbench::data::givenPassword(password);
  if (passwordIsEncrypted && !password.empty()) {
    const Outcome<Secret> decoded = workbench::data::decodedPassword(plainPassword.view());
    if (!decoded) return decoded.problem();
    plainPassword = *decoded;
  }
  if (forOutput) return workbench::data::outputSpec(name, plainPassword);
  Outcome<CaseFileSpec> spec = workbench::data::inputSpec(name, isQuoted);
  if (spec) spec->password = plainPassword;
  return spec;
}

}  // namespace

UserCaseFileSpec::UserCaseFileSpec() : state_(std::make_unique<State>()) {
  if (journal().isOn()) journal().line(journal().created(this, "UserCaseFileSpec") + " = UserCaseFileSpec()");
}

UserCaseFileSpec::~UserCaseFileSpec() { journal().destroyed(this); }

bool UserCaseFileSpec::Init(std::string_view name, bool isQuoted, bool forOutput) {
  return journaledCall([&] { return state_->take(specOf(name, isQuoted, forOutput, "", false)); },
                       [&] {
                         return fmt::format("{}.Init({}, {}, {})", journal().nameOf(this, "UserCaseFileSpec"),
                                            inJournal(name), isQuoted, forOutput);
                       });
}

bool UserCaseFileSpec::Init(std::string_view name, bool isQuoted, bool forOutput, std::string_view password,
                            bool passwordIsEncrypted) {
  return journaledCall([&] { return state_->take(specOf(name, isQuoted, forOutput, password, passwordIsEncrypted)); },
                       [&] {
                         return fmt::format("{}.Init({}, {}, {}, {}, {})", journal().nameOf(this, "UserCaseFileSpec"),
                                            inJournal(name), isQuoted, forOutput,
                                            workbench::data::hiddenPassword(password), passwordIsEncrypted);
                       });
}

bool UserCaseFileSpec::IsValid() const {
  return journaledCall([&] { return state_->spec.has_value(); },
                       [&] { return journal().nameOf(this, "UserCaseFileSpec") + ".IsValid()"; });
}

bool UserCaseFileSpec::IsDataset() const {
  return journaledCall([&] { return state_->is(CaseFileSpec::Kind::dataset); },
                       [&] { return journal().nameOf(this, "UserCaseFileSpec") + ".IsDataset()"; });
}

bool UserCaseFileSpec::IsFile() const {
  return journaledCall([&] { return state_->is(CaseFileSpec::Kind::file); },
                       [&] { return journal().nameOf(this, "UserCaseFileSpec") + ".IsFile()"; });
}

bool UserCaseFileSpec::IsWorkingFile() const {
  return journaledCall([&] { return state_->is(CaseFileSpec::Kind::workingFile); },
                       [&] { return journal().nameOf(this, "UserCaseFileSpec") + ".IsWorkingFile()"; });
}

const std::string& UserCaseFileSpec::DocumentationString() const {
  return journaledCall([&]() -> const std::string& { return state_->spec ? state_->spec->name : state_->empty; },
                       [&] { return journal().nameOf(this, "UserCaseFileSpec") + ".DocumentationString()"; });
}

const std::string& UserCaseFileSpec::ErrorText() const {
  return journaledCall([&]() -> const std::string& { return state_->error; },
                       [&] { return journal().nameOf(this, "UserCaseFileSpec") + ".ErrorText()"; });
}
