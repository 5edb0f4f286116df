#include "tests/model/dataset.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tests/model/cell_text.h"

namespace workbench::tests::model {

namespace {

// Capital letters beyond ASCII that random names use, each with its small one.
constexpr std::pair<std::string_view, std::string_view> capitals[] = {{"\u00c9", "\u00e9"}, {"\u03a3", "\u03c3"}};

std::string describeAttributes(const std::vector<Attribute>& attributes) {
  std::string all;
  for (const Attribute& attribute : attributes) {
    all += fmt::format(" ${}=[{}]", attribute.name, fmt::join(attribute.values, "|"));
  }
  return all;
}

std::string describeVariable(const Variable& variable) {
  std::string all =
      fmt::format("  {}:{} format {}:{}.{} columns {} alignment {} level {} role {} missing {}", variable.name,
                  variable.width, variable.format.type, variable.format.width, variable.format.decimals,
                  variable.columns, variable.alignment, variable.level, variable.role, variable.missing.code);
  const int code = variable.missing.code;
  const int used = code < -1 && code > -4 ? -code : code > 0 && code < 4 ? code : 0;
  for (int place = 0; place < used; ++place) {
    all += ' ' + bareValue(variable.missing.values[static_cast<std::size_t>(place)]);
  }
  if (variable.label) all += " label " + plain(*variable.label);
  for (const auto& [value, label] : variable.valueLabels) all += fmt::format(" {}={}", bareValue(value), plain(label));
  return all + describeAttributes(variable.attributes) + '\n';
}

}  // namespace

std::string folded(std::string_view name) {
  std::string all(name);
  for (char& character : all) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character + ('a' - 'A'));
  }
  for (const auto& [capital, small] : capitals) {
    for (std::size_t at = all.find(capital); at != std::string::npos; at = all.find(capital)) {
      all.replace(at, capital.size(), small);
    }
  }
  return all;
}

std::optional<std::size_t> placeOf(const Dataset& dataset, std::string_view name) {
  for (std::size_t place = 0; place < dataset.variables.size(); ++place) {
    if (sameName(dataset.variables[place].name, name)) return place;
  }
  return std::nullopt;
}

std::string withoutTrailingBlanks(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return std::string(text);
}

std::string ofWidth(std::string_view text, std::size_t width) {
  std::string all(text);
  all.resize(width, ' ');
  return all;
}

std::string describe(const Dataset& dataset) {
  std::string all = "attributes" + describeAttributes(dataset.attributes) + '\n';
  if (dataset.filter) all += fmt::format("filter {}\n", *dataset.filter);
  if (dataset.weight) all += fmt::format("weight {}\n", *dataset.weight);
  if (!dataset.split.empty()) all += fmt::format("split {}\n", fmt::join(dataset.split, " "));
  for (const Variable& variable : dataset.variables) all += describeVariable(variable);
  for (const Case& one : dataset.cases) {
    all += "  |";
    for (const Value& value : one) all += ' ' + bareValue(value);
    all += '\n';
  }
  return all;
}

}  // namespace workbench::tests::model
