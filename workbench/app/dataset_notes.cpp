#include "workbench/app/dataset_notes.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <utility>

#include "workbench/output/sentences.h"
#include "workbench/output/value_format.h"
#include "workbench/text/wording.h"

namespace workbench::app {

namespace {

using data::KeyValues;
using output::Text;

constexpr std::string_view oneOnlyThere = output::sentences::sentence("One variable stands only in dataset ^1: ^2.");
constexpr std::string_view severalOnlyThere =
    output::sentences::sentence("^1 variables stand only in dataset ^2: [%1:, ^1:]3.");

std::string keyNames(const std::vector<std::string>& keys) { return fmt::format("{}", fmt::join(keys, ", ")); }

// The values as their variables show them.
std::string valuesText(const KeyedDataset& keyed, const KeyValues& values) {
  std::string all;
  for (std::size_t index = 0; index < keyed.keys.size(); ++index) {
    if (index > 0) all += ", ";
    const data::Dictionary& dictionary = keyed.dataset.dictionary();
    const FormatType type = dictionary.at(dictionary.find(keyed.keys[index])).format.type;
    const auto* number = std::get_if<double>(&values[index]);
    all += number != nullptr ? output::fullNumber(*number, type) : std::get<std::string>(values[index]);
  }
  return all;
}

std::string rowText(const KeyedDataset& keyed, const data::SortedRow& row) {
  return fmt::format("{} ({})", row.number, valuesText(keyed, row.keys));
}

std::string outOfOrderNote(const KeyedDataset& keyed, const data::KeyFindings& findings) {
  const auto& [earlier, later] = *findings.firstOutOfOrder;
  return text::sentence("Dataset ^1 is not in ascending order of ^2: row ^3 stands before row ^4.",
                        {keyed.name, keyNames(keyed.keys), rowText(keyed, earlier), rowText(keyed, later)});
}

// Which rows a note counts, where they lie otherwise now.
std::string withRowsMeant(std::string note, const data::KeyFindings& findings) {
  if (findings.wasSorted) note += ' ' + text::sentence("Rows are counted as they stood before sorting.");
  return note;
}

std::string repeatedNote(const KeyedDataset& keyed, const data::KeyFindings& findings) {
  const data::RepeatedKeys& repeated = findings.repeated;
  std::string rows = fmt::format("{}", fmt::join(repeated.rowsOfLowest, ", "));
  const auto unsaid = repeated.casesOfLowest - static_cast<std::int64_t>(repeated.rowsOfLowest.size());
  if (unsaid > 0) rows += ", " + text::sentence("… ^1 more", {fmt::to_string(unsaid)});
  const std::string values = valuesText(keyed, repeated.lowest);
  if (repeated.keys == 1) {
    return text::sentence("Dataset ^1: one value of ^2 stands in several cases: ^3 in rows ^4.",
                          {keyed.name, keyNames(keyed.keys), values, rows});
  }
  return text::sentence(
      "Dataset ^1: ^2 values of ^3 stand in several cases each, in ^4 cases altogether; the lowest is ^5, in rows ^6.",
      {keyed.name, fmt::to_string(repeated.keys), keyNames(keyed.keys), fmt::to_string(repeated.cases), values, rows});
}

std::string missingNote(const KeyedDataset& keyed, const data::KeyFindings& findings) {
  const std::string row = fmt::to_string(findings.firstMissingRow);
  if (findings.missing == 1) {
    return text::sentence("Dataset ^1: ^2 is missing in one case, row ^3.", {keyed.name, keyNames(keyed.keys), row});
  }
  return text::sentence("Dataset ^1: ^2 is missing in ^3 cases, the first of them row ^4.",
                        {keyed.name, keyNames(keyed.keys), fmt::to_string(findings.missing), row});
}

Text plainText(std::string text) { return Text{output::StringText{std::move(text), false}}; }

}  // namespace

std::string sortNote(const KeyedDataset& sorted, const data::SortResult& result) {
  const auto& [earlier, later] = *result.firstOutOfOrder;
  return text::sentence("Dataset ^1 was sorted by ^2: row ^3 stood before row ^4. Row numbers count the sorted cases.",
                        {sorted.name, keyNames(sorted.keys), rowText(sorted, earlier), rowText(sorted, later)});
}

std::vector<std::string> keyNotes(const KeyedDataset& keyed, const data::KeyFindings& findings) {
  // Behind the place where the order breaks nobody has looked.
  if (findings.firstOutOfOrder) return {outOfOrderNote(keyed, findings)};
  std::vector<std::string> notes;
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
  output::CompositeText note;
  note.translate = true;
  if (names.items.size() == 1) {
    note.pattern = oneOnlyThere;
    note.items = {plainText(name), std::move(names.items.front())};
  } else {
    note.pattern = severalOnlyThere;
    note.items = {plainText(fmt::to_string(names.items.size())), plainText(name)};
    note.items.push_back(Text{std::move(names)});
  }
  return Text{std::move(note)};
}

}  // namespace workbench::app
