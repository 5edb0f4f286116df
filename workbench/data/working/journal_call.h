// Runs a call and, when the journal is on, writes what was asked and what came out.
#pragma once

#include <fmt/format.h>

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "host/data.h"
#include "host/messages.h"
#include "workbench/runtime/journal.h"

namespace workbench::data {

// How arguments and results stand in a line.
inline std::string inJournal(std::string_view text) { return Journal::quoted(text); }
inline std::string inJournal(const std::string& text) { return Journal::quoted(text); }
inline std::string inJournal(bool truth) { return truth ? "true" : "false"; }
inline std::string inJournal(std::int32_t number) { return fmt::to_string(number); }
inline std::string inJournal(std::uint32_t number) { return fmt::to_string(number); }
inline std::string inJournal(std::size_t number) { return fmt::to_string(number); }
inline std::string inJournal(const ExtNameStr& name) { return Journal::quoted(name.GetGeneric()); }
inline std::string inJournal(const DatasourceAttributes& attributes) {
  return fmt::format("DatasourceAttributes({})", attributes.Size());
}
inline std::string inJournal(const VRIX_Variable& variable) {
  const Journal::Pause pause(journal());
  return fmt::format("VRIX_Variable({})", variable.GetName());
}
inline std::string inJournal(const std::unique_ptr<VRIX_InputCaseIterator>& iterator) {
  return iterator ? journal().nameOf(iterator.get(), "VRIX_InputCaseIterator") : "null";
}

// A password as it stands in a line: that there is one.
inline std::string hiddenPassword(std::string_view password) { return password.empty() ? "''" : "'***'"; }

// `describe` gives the call as text, and is asked only when the journal is on.
template <class Call, class Describe>
decltype(auto) journaledCall(Call call, Describe describe) {
  using Result = decltype(call());
  if (!journal().isOn()) return call();
  const std::string described = describe();
  try {
    if constexpr (std::is_void_v<Result>) {
      call();
      journal().line(described);
    } else {
      Result result = call();
      journal().line(described + " -> " + inJournal(result));
      return result;
    }
  } catch (const ErrorText& error) {
    journal().line(described + " throws ErrorText(" + Journal::quoted(error.GetText()) + ")");
    throw;
  }
}

}  // namespace workbench::data
