// The descriptors of host/parser.h.

#include <fmt/format.h>

#include "workbench/language/grammar_state.h"
#include "workbench/runtime/journal.h"

namespace {

using workbench::Journal;
using workbench::journal;

void journalCreated(const void* object, std::string_view type, std::string_view arguments) {
  if (!journal().isOn()) return;
  const std::string name = journal().created(object, type);
  journal().line(fmt::format("{} = {}({})", name, type, arguments));
}

void journalCopied(const void* copy, const void* original, std::string_view type) {
  if (journal().isOn()) journalCreated(copy, type, journal().nameOf(original, type));
}

template <class... Arguments>
void journalCall(const void* object, std::string_view type, fmt::format_string<Arguments...> format,
                 Arguments&&... arguments) {
  if (!journal().isOn()) return;
  const std::string call = fmt::format(format, std::forward<Arguments>(arguments)...);
  journal().line(fmt::format("{}.{}", journal().nameOf(object, type), call));
}

template <class Options>
std::optional<ParamDescriptor::State::Bound> bound(double value, Options options) {
  if (options == Options::none) return std::nullopt;
  return ParamDescriptor::State::Bound{value, options == Options::inclusive};
}

}  // namespace

ParamDescriptor::ParamDescriptor(std::string_view name, UPSpecTypes::ParamSpec spec, bool required, bool takesValue,
                                 BracketOptions brackets)
    : state_(std::make_unique<State>()) {
  state_->name = name;
  state_->spec = spec;
  state_->required = required;
  state_->takesValue = takesValue;
  journalCreated(this, "ParamDescriptor",
                 fmt::format("{}, {}, {}, {}, {}", Journal::quoted(name), static_cast<int>(spec), required, takesValue,
                             static_cast<int>(brackets)));
}

ParamDescriptor::ParamDescriptor(const ParamDescriptor& other) : state_(std::make_unique<State>(*other.state_)) {
  journalCopied(this, &other, "ParamDescriptor");
}

ParamDescriptor::~ParamDescriptor() { journal().destroyed(this); }

void ParamDescriptor::addStringValue(std::string_view allowed) {
  journalCall(this, "ParamDescriptor", "addStringValue({})", Journal::quoted(allowed));
  state_->allowed.emplace_back(allowed);
}

void ParamDescriptor::setLowerBoundary(double value, UPSpecTypes::LowerBdryOptions options) {
  journalCall(this, "ParamDescriptor", "setLowerBoundary({}, {})", value, static_cast<int>(options));
  state_->lower = bound(value, options);
}

void ParamDescriptor::setUpperBoundary(double value, UPSpecTypes::UpperBdryOptions options) {
  journalCall(this, "ParamDescriptor", "setUpperBoundary({}, {})", value, static_cast<int>(options));
  state_->upper = bound(value, options);
}

SubComDescriptor::SubComDescriptor(std::string_view name, UPSpecTypes::SubComSpec spec, bool required, bool mayRepeat)
    : state_(std::make_unique<State>()) {
  state_->name = name;
  state_->spec = spec;
  state_->required = required;
  state_->mayRepeat = mayRepeat;
  journalCreated(this, "SubComDescriptor",
                 fmt::format("{}, {}, {}, {}", Journal::quoted(name), static_cast<int>(spec), required, mayRepeat));
}

SubComDescriptor::SubComDescriptor(const SubComDescriptor& other) : state_(std::make_unique<State>(*other.state_)) {
  journalCopied(this, &other, "SubComDescriptor");
}

SubComDescriptor::~SubComDescriptor() { journal().destroyed(this); }

void SubComDescriptor::setExportParamDesc(UPSpecTypes::ParamSpec spec, bool required) {
  journalCall(this, "SubComDescriptor", "setExportParamDesc({}, {})", static_cast<int>(spec), required);
  ParamDescriptor::State values;
  values.spec = spec;
  values.required = required;
  state_->exportParam = std::move(values);
}

void SubComDescriptor::addParamDescriptor(const ParamDescriptor& keyword) {
  journalCall(this, "SubComDescriptor", "addParamDescriptor({})",
              journal().isOn() ? journal().nameOf(&keyword, "ParamDescriptor") : std::string());
  state_->keywords.push_back(keyword.state());
}

CommandDescriptor::CommandDescriptor(std::string_view name, std::string_view title)
    : state_(std::make_unique<State>()) {
  state_->name = name;
  state_->title = title;
  journalCreated(this, "CommandDescriptor", fmt::format("{}, {}", Journal::quoted(name), Journal::quoted(title)));
}

CommandDescriptor::CommandDescriptor(const CommandDescriptor& other) : state_(std::make_unique<State>(*other.state_)) {
  journalCopied(this, &other, "CommandDescriptor");
}

CommandDescriptor::~CommandDescriptor() { journal().destroyed(this); }

void CommandDescriptor::addSubComDescriptor(const SubComDescriptor& subcommand) {
  journalCall(this, "CommandDescriptor", "addSubComDescriptor({})",
              journal().isOn() ? journal().nameOf(&subcommand, "SubComDescriptor") : std::string());
  state_->subcommands.push_back(subcommand.state());
}
