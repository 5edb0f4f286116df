#include "workbench/app/dataset_notes.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <memory>
#include <string_view>
#include <utility>

#include "workbench/output/value_format.h"

namespace workbench::app {

namespace {

using data::KeyValues;
using output::Text;

Text plainText(std::string text) { return Text{output::StringText{std::move(text), false}}; }

Text countText(std::int64_t count) { return Text{output::NumberText{static_cast<double>(count), BpFormat::count}}; }

Text composed(std::string_view pattern, std::vector<Text> items) {
  return Text{output::CompositeText{std::string(pattern), true, std::move(items)}};
}

Text keyNames(const std::vector<std::string>& keys) { return plainText(fmt::format("{}", fmt::join(keys, ", "))); }

// The number in full: with as many decimals as it has.
Text numberText(double value, const data::Variable& variable) {
  using enum FormatType;
  const FormatType shown = variable.format.type;
  const FormatType type =
      shown == date || shown == time || shown == dateTime || shown == duration ? shown : FormatType::number;
  const std::string full = output::fullNumber(value, type);
  if (full.find('e') != std::string::npos) return plainText(full);
  const std::size_t point = full.find('.');
  const auto decimals = point == std::string::npos ? 0 : static_cast<std::int32_t>(full.size() - point - 1);
  output::ValueVariable as{variable.name, type, 0, decimals};
  return Text{output::ValueText{std::make_shared<const output::ValueVariable>(std::move(as)), value, std::nullopt}};
}

Text valuesText(const KeyedDataset& keyed, const KeyValues& values) {
  const data::Dictionary& dictionary = keyed.dataset.dictionary();
  output::ListText all;
  for (std::size_t index = 0; index < keyed.keys.size(); ++index) {
    const auto* number = std::get_if<double>(&values[index]);
    all.items.push_back(number != nullptr ? numberText(*number, dictionary.at(dictionary.find(keyed.keys[index])))
                                          : plainText(std::get<std::string>(values[index])));
  }
  return composed("[%1:, ^1:]1", {Text{std::move(all)}});
}

// Rows are found by their numbers, which are not grouped.
Text rowText(const KeyedDataset& keyed, const data::SortedRow& row) {
  return composed("^1 (^2)", {plainText(fmt::to_string(row.number)), valuesText(keyed, row.keys)});
}

Text outOfOrderNote(const KeyedDataset& keyed, const data::KeyFindings& findings) {
  const auto& [earlier, later] = *findings.firstOutOfOrder;
  return composed("Dataset ^1 is not in ascending order of ^2: row ^3 stands before row ^4.",
                  {plainText(keyed.name), keyNames(keyed.keys), rowText(keyed, earlier), rowText(keyed, later)});
}

// Which rows a note counts, where they lie otherwise now.
Text withRowsMeant(Text note, const data::KeyFindings& findings) {
  if (!findings.wasSorted) return note;
  return composed("^1 ^2", {std::move(note), composed("Rows are counted as they stood before sorting.", {})});
}

Text repeatedNote(const KeyedDataset& keyed, const data::KeyFindings& findings) {
  const data::RepeatedKeys& repeated = findings.repeated;
  output::ListText rows;
  for (const std::int64_t row : repeated.rowsOfLowest) rows.items.push_back(plainText(fmt::to_string(row)));
  const auto unsaid = repeated.casesOfLowest - static_cast<std::int64_t>(repeated.rowsOfLowest.size());
  if (unsaid > 0) rows.items.push_back(composed("… ^1 more", {countText(unsaid)}));
  Text rowList = composed("[%1:, ^1:]1", {Text{std::move(rows)}});
  const Text values = valuesText(keyed, repeated.lowest);
  if (repeated.keys == 1) {
    return composed("Dataset ^1: one value of ^2 stands in several cases: ^3 in rows ^4.",
                    {plainText(keyed.name), keyNames(keyed.keys), values, std::move(rowList)});
  }
  return composed(
      "Dataset ^1: ^2 values of ^3 stand in several cases each, in ^4 cases altogether; the lowest is ^5, in rows ^6.",
      {plainText(keyed.name), countText(repeated.keys), keyNames(keyed.keys), countText(repeated.cases), values,
       std::move(rowList)});
}

Text missingNote(const KeyedDataset& keyed, const data::KeyFindings& findings) {
  Text row = plainText(fmt::to_string(findings.firstMissingRow));
  if (findings.missing == 1) {
    return composed("Dataset ^1: ^2 is missing in one case, row ^3.",
                    {plainText(keyed.name), keyNames(keyed.keys), std::move(row)});
  }
  return composed("Dataset ^1: ^2 is missing in ^3 cases, the first of them row ^4.",
                  {plainText(keyed.name), keyNames(keyed.keys), countText(findings.missing), std::move(row)});
}

}  // namespace

Text sortNote(const KeyedDataset& sorted, const data::SortResult& result) {
  const auto& [earlier, later] = *result.firstOutOfOrder;
  return composed("Dataset ^1 was sorted by ^2: row ^3 stood before row ^4. Row numbers count the sorted cases.",
                  {plainText(sorted.name), keyNames(sorted.keys), rowText(sorted, earlier), rowText(sorted, later)});
}

std::vector<Text> keyNotes(const KeyedDataset& keyed, const data::KeyFindings& findings) {
  // Behind the place where the order breaks nobody has looked.
  if (findings.firstOutOfOrder) return {outOfOrderNote(keyed, findings)};
  std::vector<Text> notes;
  if (findings.repeated.keys != 0) notes.push_back(withRowsMeant(repeatedNote(keyed, findings), findings));
  if (findings.missing != 0) notes.push_back(withRowsMeant(missingNote(keyed, findings), findings));
  return notes;
}

std::optional<Text> onlyThereNote(const std::string& name, const data::Dictionary& dictionary,
                                  const data::Dictionary& other) {
  output::ListText names;
  for (const data::Variable& variable : dictionary.variables()) {
    if (other.find(variable.name) < 0) names.items.push_back(plainText(variable.name));
  }
  if (names.items.empty()) return std::nullopt;
  if (names.items.size() == 1) {
    return composed("One variable stands only in dataset ^1: ^2.", {plainText(name), std::move(names.items.front())});
  }
  Text count = countText(static_cast<std::int64_t>(names.items.size()));
  return composed("^1 variables stand only in dataset ^2: [%1:, ^1:]3.",
                  {std::move(count), plainText(name), Text{std::move(names)}});
}

}  // namespace workbench::app
