#include "tests/model/cell_text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace workbench::tests::model {

std::string plain(std::string_view text) {
  std::string all = "\"";
  for (const char character : text) all += character == '\n' ? std::string("\\n") : std::string(1, character);
  return all + '"';
}

std::string bareNumber(double number) { return number == systemMissing ? "." : fmt::format("{}", number); }

std::string bareValue(const Value& value) {
  return value.index() == 0 ? bareNumber(numberOf(value)) : plain(textOf(value));
}

std::string variableText(const Variable& variable) {
  return variable.label ? fmt::format("<{} {} 2>", variable.name, plain(*variable.label))
                        : fmt::format("<{} 2>", variable.name);
}

std::string valueText(const Variable& variable, const Value& value) {
  const Value shown = value.index() == 0 ? value : Value(withoutTrailingBlanks(textOf(value)));
  std::string labelled;
  for (const auto& [known, label] : variable.valueLabels) {
    if (known == shown) labelled = ' ' + plain(label);
  }
  return fmt::format("{}({}:{}.{})={}{} 0", variable.name, variable.format.type, variable.format.width,
                     variable.format.decimals, bareValue(shown), labelled);
}

std::string list(const std::vector<std::string>& items) { return fmt::format("[{}]", fmt::join(items, "|")); }

std::string composite(std::string_view pattern, const std::vector<std::string>& items) {
  return keyedComposite(plain(pattern), items);
}

std::string keyedComposite(std::string_view pattern, const std::vector<std::string>& items) {
  return fmt::format("{}{{{}}}", pattern, fmt::join(items, "|"));
}

std::string bothSides(const std::string& active, const std::string& compared) {
  return composite("(1) ^1\n(2) ^2", {active, compared});
}

}  // namespace workbench::tests::model
