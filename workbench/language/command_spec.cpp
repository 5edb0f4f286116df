// CommandSpec, SubComObj and ParamObj of host/parser.h: what a command said, and how it is read.

#include <fmt/format.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <charconv>
#include <utility>

#include "workbench/language/grammar_state.h"
#include "workbench/language/hidden_passwords.h"
#include "workbench/language/spec_state.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/folding.h"

struct ParamObj::State {
  std::string name;
  std::vector<TokenInfoObj> values;

  const TokenInfoObj* only() const { return values.size() == 1 ? &values.front() : nullptr; }
};

namespace {

using workbench::Journal;
using workbench::journal;
using Kind = TokenInfoObj::Kind;

// One line: the call and its result. A pointer's object is named, null is "null".
void journalGet(const void* object, std::string_view type, std::string_view call, std::string_view result) {
  if (!journal().isOn()) return;
  journal().line(fmt::format("{}.{} -> {}", journal().nameOf(object, type), call, result));
}

std::string nameOrNull(const void* object, std::string_view type) {
  return object == nullptr ? "null" : journal().nameOf(object, type);
}

std::string upperCase(const std::string& word) {
  std::string upper;
  icu::UnicodeString::fromUTF8(word).toUpper(icu::Locale::getRoot()).toUTF8String(upper);
  return upper;
}

bool isText(const TokenInfoObj& token) {
  return token.getKind() == Kind::word || token.getKind() == Kind::quotedString;
}

}  // namespace

ParamObj::ParamObj(std::string_view name, std::vector<TokenInfoObj> values) : state_(std::make_unique<State>()) {
  state_->name = name;
  state_->values = std::move(values);
}

ParamObj::~ParamObj() { journal().destroyed(this); }

bool ParamObj::isStringValueCase(std::string_view text) const {
  const TokenInfoObj* value = state_->only();
  const bool isEqual = value != nullptr && workbench::text::sameName(value->getString(), text);
  if (journal().isOn()) {
    const bool isHidden = workbench::language::isPasswordKeyword(state_->name);
    const std::string shown = isHidden ? std::string(workbench::language::hiddenPassword) : Journal::quoted(text);
    journalGet(this, "ParamObj", fmt::format("isStringValueCase({})", shown), isEqual ? "true" : "false");
  }
  return isEqual;
}

bool ParamObj::getStringOrLiteral(std::string& value, bool& isQuoted) const {
  const TokenInfoObj* only = state_->only();
  const bool isThere = only != nullptr;
  journalGet(this, "ParamObj", "getStringOrLiteral()", isThere ? "true" : "false");
  if (!isThere) return false;
  value = only->getString();
  isQuoted = only->getKind() == Kind::quotedString;
  return true;
}

bool ParamObj::getLiteral(std::string& value) const {
  const TokenInfoObj* only = state_->only();
  const bool isThere = only != nullptr && only->getKind() == Kind::quotedString;
  journalGet(this, "ParamObj", "getLiteral()", isThere ? "true" : "false");
  if (isThere) value = only->getString();
  return isThere;
}

std::string ParamObj::getStringToken() const {
  const TokenInfoObj* only = state_->only();
  const std::string value = only != nullptr ? only->getString() : "";
  if (journal().isOn()) {
    const bool isHidden = workbench::language::isPasswordKeyword(state_->name);
    journalGet(this, "ParamObj", "getStringToken()",
               isHidden ? std::string(workbench::language::hiddenPassword) : Journal::quoted(value));
  }
  return value;
}

bool ParamObj::getUpStringList(std::vector<std::string>& words) const {
  bool isList = !state_->values.empty();
  for (const TokenInfoObj& value : state_->values) isList = isList && isText(value);
  journalGet(this, "ParamObj", "getUpStringList()", isList ? "true" : "false");
  if (!isList) return false;
  words.clear();
  for (const TokenInfoObj& value : state_->values) words.push_back(upperCase(value.getString()));
  return true;
}

bool ParamObj::getIntegerValue(std::int32_t& value) const {
  std::int32_t number = 0;
  bool isInteger = false;
  if (const TokenInfoObj* only = state_->only(); only != nullptr && only->getKind() == Kind::number) {
    std::string_view digits = only->getString();
    if (digits.starts_with('+')) digits.remove_prefix(1);
    const std::from_chars_result read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    isInteger = read.ec == std::errc() && read.ptr == digits.data() + digits.size();
  }
  journalGet(this, "ParamObj", "getIntegerValue()", isInteger ? std::to_string(number) : "false");
  if (isInteger) value = number;
  return isInteger;
}

std::vector<TokenInfoObj> ParamObj::getTokenList() const {
  journalGet(this, "ParamObj", "getTokenList()", fmt::format("{} tokens", state_->values.size()));
  return state_->values;
}

SubComObj::SubComObj(std::string_view name) : state_(std::make_unique<State>()) { state_->name = name; }

SubComObj::~SubComObj() { journal().destroyed(this); }

const ParamObj* SubComObj::getParamObj(std::string_view name) const {
  const State::Keyword* keyword = workbench::language::findNamed(state_->keywords, name);
  const ParamObj* values = keyword != nullptr ? keyword->values.get() : nullptr;
  if (journal().isOn()) {
    journalGet(this, "SubComObj", fmt::format("getParamObj({})", Journal::quoted(name)),
               nameOrNull(values, "ParamObj"));
  }
  return values;
}

const ParamObj* SubComObj::getExportParamObj() const {
  const ParamObj* values = state_->exportParam.get();
  if (journal().isOn()) journalGet(this, "SubComObj", "getExportParamObj()", nameOrNull(values, "ParamObj"));
  return values;
}

CommandSpec::CommandSpec() : state_(std::make_unique<State>()) {
  if (journal().isOn()) journal().line(journal().created(this, "CommandSpec") + " = CommandSpec()");
}

CommandSpec::~CommandSpec() { journal().destroyed(this); }

const SubComObj* CommandSpec::getSubComObj(std::string_view name) const {
  const State::Subcommand* subcommand = workbench::language::findNamed(state_->subcommands, name);
  const SubComObj* content = subcommand != nullptr ? subcommand->content.get() : nullptr;
  if (journal().isOn()) {
    journalGet(this, "CommandSpec", fmt::format("getSubComObj({})", Journal::quoted(name)),
               nameOrNull(content, "SubComObj"));
  }
  return content;
}
