#include "tests/results/results_schema.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <stdexcept>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validation_results.hpp>
#include <valijson/validator.hpp>

#include "tests/results/schema_complaints.h"

namespace workbench::tests {

namespace {

using Json = nlohmann::json;
using Faults = std::vector<std::string>;

std::unique_ptr<valijson::Schema> compiled(const Json& schema) {
  auto result = std::make_unique<valijson::Schema>();
  valijson::SchemaParser(valijson::SchemaParser::kDraft7)
      .populateSchema(valijson::adapters::NlohmannJsonAdapter(schema), *result);
  return result;
}

Faults faultsAgainst(const Json& document, const valijson::Schema& schema) {
  const valijson::adapters::NlohmannJsonAdapter target(document);
  valijson::Validator validator;
  if (validator.validate(schema, target, nullptr)) return {};  // gathering complaints takes its time
  valijson::ValidationResults results;
  validator.validate(schema, target, &results);
  Faults faults = faultsOfMeantAlternatives(results);
  return faults.empty() ? Faults{": the schema refuses it"} : faults;
}

std::size_t leavesOf(const Json& categories) {
  std::size_t count = 0;
  for (const Json& category : categories) count += category.contains("group") ? leavesOf(category["categories"]) : 1;
  return count;
}

void checkNotes(const Json& notes, const Json& table, const std::string& place, Faults& faults) {
  for (const Json& note : notes) {
    if (note.get<std::size_t>() >= table["footnotes"].size()) faults.push_back(place + ": there is no such footnote");
  }
}

void checkNotesOfCategories(const Json& categories, const Json& table, const std::string& place, Faults& faults) {
  for (const Json& category : categories) {
    if (category.contains("group")) {
      checkNotesOfCategories(category["categories"], table, place, faults);
    } else {
      checkNotes(category["notes"], table, place, faults);
    }
  }
}

void checkTable(const Json& table, const std::string& place, Faults& faults) {
  if (table["key"] != table["title"]["key"]) faults.push_back(place + "/key: it is not the key of the title");
  std::vector<std::size_t> leaves;
  for (const Json& dimension : table["dimensions"]) {
    leaves.push_back(leavesOf(dimension["categories"]));
    checkNotesOfCategories(dimension["categories"], table, place + "/dimensions", faults);
  }
  std::set<std::vector<std::size_t>> places;
  for (std::size_t number = 0; number < table["cells"].size(); ++number) {
    const Json& cell = table["cells"][number];
    const std::string cellPlace = place + "/cells/" + std::to_string(number);
    const auto at = cell["at"].get<std::vector<std::size_t>>();
    if (!std::equal(at.begin(), at.end(), leaves.begin(), leaves.end(), std::less<>())) {
      faults.push_back(cellPlace + "/at: it is no place of the table");
    }
    if (!places.insert(at).second) faults.push_back(cellPlace + "/at: another cell has this place");
    checkNotes(cell["notes"], table, cellPlace + "/notes", faults);
  }
}

// Requires: the document keeps the schema.
Faults faultsWithin(const Json& document) {
  Faults faults;
  bool isTrouble = false;
  for (std::size_t number = 0; number < document["commands"].size(); ++number) {
    const Json& command = document["commands"][number];
    isTrouble = isTrouble || command["outcome"] != "completed";
    for (std::size_t item = 0; item < command["items"].size(); ++item) {
      if (command["items"][item]["item"] != "table") continue;
      const std::string place = "/commands/" + std::to_string(number) + "/items/" + std::to_string(item);
      checkTable(command["items"][item], place, faults);
    }
  }
  if ((document["verdict"] == "trouble") != isTrouble) {
    faults.push_back("/verdict: it is trouble when a command was refused or failed, and only then");
  }
  return faults;
}

// Notes the members that an object names twice, of which the parsed document keeps one.
struct RepeatedMembers {
  std::vector<std::set<std::string>> open;
  Faults faults;

  bool operator()(int, Json::parse_event_t event, const Json& parsed) {
    if (event == Json::parse_event_t::object_start) open.emplace_back();
    if (event == Json::parse_event_t::object_end) open.pop_back();
    if (event == Json::parse_event_t::key && !open.back().insert(parsed.get<std::string>()).second) {
      faults.push_back("an object has two members " + parsed.dump());
    }
    return true;
  }
};

}  // namespace

const Json& resultsSchema() {
  static const Json schema = [] {
    std::ifstream file(RESULTS_SCHEMA);
    if (!file) throw std::runtime_error("the schema of the results cannot be read: " RESULTS_SCHEMA);
    return Json::parse(file);
  }();
  return schema;
}

Faults schemaFaultsOf(const Json& document, const Json& schema) { return faultsAgainst(document, *compiled(schema)); }

Faults faultsOf(const Json& document) {
  static const std::unique_ptr<valijson::Schema> schema = compiled(resultsSchema());
  Faults faults = faultsAgainst(document, *schema);
  return faults.empty() ? faultsWithin(document) : faults;
}

Faults faultsOfText(std::string_view text) {
  RepeatedMembers repeated;
  try {
    const Json document = Json::parse(text, std::ref(repeated));
    return repeated.faults.empty() ? faultsOf(document) : repeated.faults;
  } catch (const Json::parse_error& error) {
    return {error.what()};
  }
}

void expectValidResults(std::string_view text) {
  const Faults faults = faultsOfText(text);
  if (faults.empty()) return;
  std::string all;
  for (const std::string& fault : faults) all += "\n  " + fault;
  constexpr std::size_t mostShown = 20000;
  ADD_FAILURE() << "The results document is not valid:" << all << "\n" << text.substr(0, mostShown);
}

}  // namespace workbench::tests
