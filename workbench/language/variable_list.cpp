// VarSpecObj of host/parser.h: a list of variables as a user writes it.

#include <fmt/format.h>

#include <set>
#include <utility>

#include "host/data.h"
#include "host/parser.h"
#include "workbench/language/grammar_state.h"
#include "workbench/language/syntax_report.h"
#include "workbench/language/tokens.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/folding.h"
#include "workbench/text/nearest_word.h"
#include "workbench/text/wording.h"

struct VarSpecObj::State {
  std::vector<TokenInfoObj> leadingTokens;  // of the list to begin with
  std::string subcommand;
  const CommandDescriptor& grammar;
  const VRIX_DataSource& source;
  bool mayBeNew = false;
  std::vector<std::int32_t> variables;
};

namespace workbench::language {

namespace {

using text::sentence;
using Kind = TokenInfoObj::Kind;

constexpr std::int32_t notThere = -1;

bool isKeyword(const TokenInfoObj& token, std::string_view keyword) {
  return token.getKind() != Kind::punctuation && text::sameName(token.getString(), keyword);
}

// Reads one list. Every function that returns false has reported why.
class VariableListReader {
 public:
  VariableListReader(std::vector<TokenInfoObj> tokens, const VRIX_DataSource& source, std::string context,
                     bool mayBeNew)
      : tokens_(std::move(tokens)), source_(source), context_(std::move(context)), mayBeNew_(mayBeNew) {}

  bool read() {
    for (at_ = 0; at_ < tokens_.size();) {
      if (!readEntry()) return false;
    }
    return true;
  }

  std::vector<std::int32_t> take() { return std::move(variables_); }

 private:
  bool readEntry() {
    const TokenInfoObj& token = tokens_[at_];
    if (isPunctuation(token, ",")) return readComma();
    if (isKeyword(token, "TO")) {
      return refuse(token, sentence("TO stands between the names of two variables; there is none before it."));
    }
    const bool isRange = at_ + 1 < tokens_.size() && isKeyword(tokens_[at_ + 1], "TO");
    if (isKeyword(token, "ALL")) {
      if (isRange) return refuse(token, sentence("TO stands between the names of two variables; ALL is none."));
      return readAll();
    }
    if (isRange) return readRange();
    return readName();
  }

  bool readComma() {
    const bool isBetween = at_ > 0 && at_ + 1 < tokens_.size() && !isPunctuation(tokens_[at_ - 1], ",");
    if (!isBetween) return refuse(tokens_[at_], sentence("a comma stands only between two names."));
    ++at_;
    return true;
  }

  bool readAll() {
    const TokenInfoObj& token = tokens_[at_++];
    const std::int32_t count = source_.GetNVars();
    for (std::int32_t variable = 0; variable < count; ++variable) {
      if (!add(variable, token)) return false;
    }
    return true;
  }

  bool readRange() {
    const TokenInfoObj& first = tokens_[at_];
    const TokenInfoObj& keyword = tokens_[at_ + 1];
    const TokenInfoObj* last = at_ + 2 < tokens_.size() ? &tokens_[at_ + 2] : nullptr;
    const bool isName =
        last != nullptr && last->getKind() != Kind::punctuation && !isKeyword(*last, "TO") && !isKeyword(*last, "ALL");
    if (!isName) {
      return refuse(keyword, sentence("TO stands between the names of two variables; there is none behind it."));
    }
    const std::int32_t from = find(first);
    if (from == notThere) return refuseUnknown(first);
    const std::int32_t to = find(*last);
    if (to == notThere) return refuseUnknown(*last);
    if (to < from) {
      return refuse(*last, sentence("^1 stands before ^2 in the dataset; a range names the earlier variable first.",
                                    {last->getString(), first.getString()}));
    }
    for (std::int32_t variable = from; variable <= to; ++variable) {
      if (!add(variable, first)) return false;
    }
    at_ += 3;
    return true;
  }

  bool readName() {
    const TokenInfoObj& token = tokens_[at_++];
    if (token.getKind() == Kind::punctuation) {
      return refuse(token, sentence("found ^1, expected the name of a variable.", {shownToken(token)}));
    }
    const std::int32_t variable = find(token);
    if (variable != notThere) return add(variable, token);
    if (!mayBeNew_) return refuseUnknown(token);
    if (!newNames_.insert(text::foldedName(token.getString())).second) return refuseRepeated(token, token.getString());
    variables_.push_back(notThere);
    return true;
  }

  bool add(std::int32_t variable, const TokenInfoObj& token) {
    if (!seen_.insert(variable).second) return refuseRepeated(token, source_.GetVariable(variable).GetName());
    variables_.push_back(variable);
    return true;
  }

  std::int32_t find(const TokenInfoObj& token) const {
    return source_.FindVarIndex(token.getString(), FindOptions::standard);
  }

  bool refuseUnknown(const TokenInfoObj& token) const {
    std::vector<std::string> names;
    const std::int32_t count = source_.GetNVars();
    for (std::int32_t variable = 0; variable < count; ++variable)
      names.push_back(source_.GetVariable(variable).GetName());
    std::string what = sentence("there is no variable ^1 in the active dataset.", {shownToken(token)});
    if (const auto nearest = text::nearestWord(token.getString(), names))
      what += " " + sentence("Did you mean ^1?", {*nearest});
    return refuse(token, what);
  }

  bool refuseRepeated(const TokenInfoObj& token, const std::string& name) const {
    return refuse(token, sentence("the variable ^1 is named twice.", {name}));
  }

  bool refuse(const TokenInfoObj& token, const std::string& what) const {
    reportSyntaxError(context_, what, &token);
    return false;
  }

  std::vector<TokenInfoObj> tokens_;
  const VRIX_DataSource& source_;
  std::string context_;
  bool mayBeNew_;
  std::size_t at_ = 0;
  std::vector<std::int32_t> variables_;
  std::set<std::int32_t> seen_;
  std::set<std::string> newNames_;
};

}  // namespace

}  // namespace workbench::language

VarSpecObj::VarSpecObj(std::string_view specification, std::string_view subcommand, const CommandDescriptor& grammar,
                       const VRIX_DataSource& source, bool mayBeNew)
    : state_(std::make_unique<State>(State{
          workbench::language::tokensOf(specification), std::string(subcommand), grammar, source, mayBeNew, {}})) {
  using namespace workbench;
  if (journal().isOn()) {
    const std::string name = journal().created(this, "VarSpecObj");
    journal().line(fmt::format("{} = VarSpecObj({}, {}, {}, {}, {})", name, Journal::quoted(specification),
                               Journal::quoted(subcommand), journal().nameOf(&grammar, "CommandDescriptor"),
                               journal().nameOf(&source, "VRIX_DataSource"), mayBeNew));
  }
}

VarSpecObj::~VarSpecObj() { workbench::journal().destroyed(this); }

bool VarSpecObj::ValidateVariables(const std::vector<TokenInfoObj>& tokens, RepeatVarOptions repeats) {
  using namespace workbench;
  bool isValid = false;
  {
    const Journal::Pause pause(journal());
    std::vector<TokenInfoObj> all = state_->leadingTokens;
    all.insert(all.end(), tokens.begin(), tokens.end());
    const std::string command = language::reportedCommand(state_->grammar.state().name);
    const std::string context =
        state_->subcommand.empty() ? command : fmt::format("{}, {}", command, state_->subcommand);
    language::VariableListReader reader(std::move(all), state_->source, context, state_->mayBeNew);
    isValid = reader.read();
    if (isValid) {
      state_->variables = reader.take();
    } else {
      state_->variables.clear();
    }
  }
  if (journal().isOn()) {
    journal().line(fmt::format("{}.ValidateVariables({} tokens, {}) -> {}", journal().nameOf(this, "VarSpecObj"),
                               tokens.size(), static_cast<int>(repeats), isValid));
  }
  return isValid;
}

const std::vector<std::int32_t>& VarSpecObj::GetValidVarList() const {
  using workbench::journal;
  if (journal().isOn()) {
    journal().line(fmt::format("{}.GetValidVarList() -> {} variables", journal().nameOf(this, "VarSpecObj"),
                               state_->variables.size()));
  }
  return state_->variables;
}
