#include "workbench/output/call_text.h"

#include <fmt/format.h>

#include "workbench/output/value_format.h"
#include "workbench/runtime/journal.h"

namespace workbench::output {
namespace {

std::string listed(const std::vector<Text>& items) {
  std::string all;
  for (const Text& item : items) {
    if (!all.empty()) all += ", ";
    all += asArgument(item);
  }
  return "{" + all + "}";
}

std::string call(const StringText& text) {
  return fmt::format("BpString({}, {})", Journal::quoted(text.key), text.translate);
}

std::string call(const NumberText& text) {
  return fmt::format("BpNumber({}, {})", fullNumber(text.value),
                     text.format == BpFormat::percent ? "Percent" : "Count");
}

std::string call(const VariableText& text) {
  return fmt::format("BpVariable({}, {})", Journal::quoted(text.name), static_cast<int>(text.show));
}

std::string call(const ValueText& text) {
  const double* number = std::get_if<double>(&text.value);
  return fmt::format("BpDataValue({}, {}, {})", Journal::quoted(text.variable->name),
                     number != nullptr ? fullNumber(*number) : Journal::quoted(std::get<std::string>(text.value)),
                     static_cast<int>(text.show));
}

std::string call(const CompositeText& text) {
  const std::string start = fmt::format("BpComposite({}, {})", Journal::quoted(text.pattern), text.translate);
  return text.items.empty() ? start : start + listed(text.items);
}

std::string call(const ListText& text) { return listed(text.items); }

struct ClassName {
  std::string_view operator()(const StringText&) const { return "BpString"; }
  std::string_view operator()(const NumberText&) const { return "BpNumber"; }
  std::string_view operator()(const VariableText&) const { return "BpVariable"; }
  std::string_view operator()(const ValueText&) const { return "BpDataValue"; }
  std::string_view operator()(const CompositeText&) const { return "BpComposite"; }
  std::string_view operator()(const ListText&) const { return "Sublist"; }
};

}  // namespace

std::string_view className(const Text& text) { return std::visit(ClassName{}, text.held); }

std::string asCall(const Text& text) {
  return std::visit([](const auto& held) { return call(held); }, text.held);
}

std::string asArgument(const Text& text) {
  const StringText* string = std::get_if<StringText>(&text.held);
  return string != nullptr && string->translate ? Journal::quoted(string->key) : asCall(text);
}

}  // namespace workbench::output
