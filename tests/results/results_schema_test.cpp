// The schema of the results document says neither too little nor too much: it is shown a document that has everything,
// and what comes of it by damage.
#include "tests/results/results_schema.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <set>

namespace workbench::tests {
namespace {

using Json = nlohmann::json;
using Pointer = Json::json_pointer;

const Json& sample() {
  static const Json document = [] {
    std::ifstream file(SAMPLE);
    return Json::parse(file);
  }();
  return document;
}

std::string joined(const std::vector<std::string>& faults) {
  std::string all;
  for (const std::string& fault : faults) all += fault + "\n";
  return all;
}

TEST(ResultsSchema, TakesADocumentWithEveryKindOfItemAndText) { EXPECT_EQ(joined(faultsOf(sample())), ""); }

TEST(ResultsSchema, HasNoPartThatTheSampleDoesNotNeed) {
  for (const auto& [name, definition] : resultsSchema()["definitions"].items()) {
    Json schema = resultsSchema();
    schema["definitions"][name] = false;
    EXPECT_FALSE(schemaFaultsOf(sample(), schema).empty()) << name;
  }
}

// A damage is an edit of the sample (RFC 6902), and the place in which it has to be found.
struct Damage {
  const char* name;
  const char* edit;
  const char* place;
};

void PrintTo(const Damage& damage, std::ostream* out) { *out << damage.name; }

constexpr Damage damages[] = {
    {"AnotherFormat", R"([{"op":"replace","path":"/format","value":"results"}])", "/format"},
    {"ALaterVersion", R"([{"op":"replace","path":"/version","value":2}])", "/version"},
    {"AVersionAsText", R"([{"op":"replace","path":"/version","value":"1"}])", "/version"},
    {"NoVerdict", R"([{"op":"remove","path":"/verdict"}])", ""},
    {"AnUnknownVerdict", R"([{"op":"replace","path":"/verdict","value":"equal"}])", "/verdict"},
    {"ACommandThatIsAText", R"([{"op":"replace","path":"/commands/0","value":"OPEN DATA."}])", "/commands/0"},
    {"AnUnknownOutcome", R"([{"op":"replace","path":"/commands/0/outcome","value":"done"}])", "/commands/0/outcome"},
    {"AProcedureWithoutACode", R"([{"op":"remove","path":"/commands/1/procedure/code"}])", "/commands/1/procedure"},
    {"AnUnknownItem", R"([{"op":"replace","path":"/commands/1/items/0/item","value":"chart"}])",
     "/commands/1/items/0/item"},
    {"AMessageShownNowhere", R"([{"op":"replace","path":"/commands/1/items/0/show","value":3}])",
     "/commands/1/items/0/show"},
    {"AMessageOfNoLevel", R"([{"op":"replace","path":"/commands/1/items/0/level","value":0}])",
     "/commands/1/items/0/level"},
    {"AMessageWithALevelAndANumber", R"([{"op":"add","path":"/commands/2/items/1/level","value":3}])",
     "/commands/2/items/1"},
    {"ANumberedErrorWithOneCode", R"([{"op":"remove","path":"/commands/2/items/1/codes/1"}])",
     "/commands/2/items/1/codes"},
    {"AnUnknownSource", R"([{"op":"replace","path":"/commands/0/items/0/source","value":"plug-in"}])",
     "/commands/0/items/0"},
    {"ASyntaxErrorWithoutItsColumn", R"([{"op":"remove","path":"/commands/2/items/0/column"}])", "/commands/2/items/0"},
    {"ASyntaxErrorInLine0", R"([{"op":"replace","path":"/commands/2/items/0/line","value":0}])",
     "/commands/2/items/0/line"},
    {"ASyntaxErrorThatIsANote", R"([{"op":"replace","path":"/commands/2/items/0/level","value":1}])",
     "/commands/2/items/0/level"},
    {"APlaceInTheJobOfAMessageOfTheHost", R"([{"op":"add","path":"/commands/0/items/0/line","value":1}])",
     "/commands/0/items/0"},
    {"AMessageThatIsAPlainText", R"([{"op":"replace","path":"/commands/0/items/0/message","value":"Renamed."}])",
     "/commands/0/items/0/message"},
    {"ANoteOfAnUnknownGroup", R"([{"op":"replace","path":"/commands/1/items/3/group","value":4}])",
     "/commands/1/items/3/group"},
    {"ANoteOfTwoTexts", R"([{"op":"remove","path":"/commands/1/items/3/texts/2"}])", "/commands/1/items/3/texts"},
    {"ATableThatWasDestroyed", R"([{"op":"add","path":"/commands/1/items/1/destroyed","value":true}])",
     "/commands/1/items/1"},
    {"ATableWithoutACaptionMember", R"([{"op":"remove","path":"/commands/1/items/1/caption"}])", "/commands/1/items/1"},
    {"ATitleThatIsANumber",
     R"([{"op":"copy","from":"/commands/1/items/1/cells/0/content","path":"/commands/1/items/1/title"}])",
     "/commands/1/items/1/title"},
    {"ADimensionInAFourthPlace",
     R"([{"op":"replace","path":"/commands/1/items/1/dimensions/0/position/place","value":3}])",
     "/commands/1/items/1/dimensions/0/position/place"},
    {"APositionWithOneFlag", R"([{"op":"remove","path":"/commands/1/items/1/dimensions/0/position/flags/0"}])",
     "/commands/1/items/1/dimensions/0/position/flags"},
    {"AnUnknownSort", R"([{"op":"replace","path":"/commands/1/items/1/dimensions/0/sort","value":1}])",
     "/commands/1/items/1/dimensions/0/sort"},
    {"ALeafThatSaysItIsNoGroup",
     R"([{"op":"add","path":"/commands/1/items/1/dimensions/0/categories/0/group","value":false}])",
     "/commands/1/items/1/dimensions/0/categories/0"},
    {"AGroupWithNotes", R"([{"op":"add","path":"/commands/1/items/1/dimensions/1/categories/0/notes","value":[]}])",
     "/commands/1/items/1/dimensions/1/categories/0"},
    {"AGroupWithoutCategories",
     R"([{"op":"remove","path":"/commands/1/items/1/dimensions/1/categories/0/categories"}])",
     "/commands/1/items/1/dimensions/1/categories/0"},
    {"ACellNowhere", R"([{"op":"replace","path":"/commands/1/items/1/cells/0/at","value":[]}])",
     "/commands/1/items/1/cells/0/at"},
    {"ACellBeforeTheFirstCategory", R"([{"op":"replace","path":"/commands/1/items/1/cells/0/at/0","value":-1}])",
     "/commands/1/items/1/cells/0/at/0"},
    {"ACellBetweenCategories", R"([{"op":"replace","path":"/commands/1/items/1/cells/0/at/0","value":0.5}])",
     "/commands/1/items/1/cells/0/at/0"},
    {"AFootnoteTwiceInOnePlace", R"([{"op":"replace","path":"/commands/1/items/1/cells/3/notes","value":[1,1]}])",
     "/commands/1/items/1/cells/3/notes"},
    {"ATextOfAnUnknownKind", R"([{"op":"replace","path":"/commands/1/items/1/caption/kind","value":"key"}])",
     "/commands/1/items/1/caption/kind"},
    {"ATextThatNobodySees", R"([{"op":"remove","path":"/commands/1/items/1/caption/text"}])",
     "/commands/1/items/1/caption"},
    {"ANumberInAnUnknownFormat",
     R"([{"op":"replace","path":"/commands/1/items/1/cells/0/content/format","value":"comma"}])",
     "/commands/1/items/1/cells/0/content/format"},
    {"ANumberAsText", R"([{"op":"replace","path":"/commands/1/items/1/cells/0/content/value","value":"12.5"}])",
     "/commands/1/items/1/cells/0/content/value"},
    {"AMissingNumberThatIsShownAsOne",
     R"([{"op":"replace","path":"/commands/1/items/1/cells/1/content/text","value":"0"}])",
     "/commands/1/items/1/cells/1/content/text"},
    {"AVariableShownInNoKnownWay",
     R"([{"op":"replace","path":"/commands/1/items/1/dimensions/0/categories/0/title/show","value":0}])",
     "/commands/1/items/1/dimensions/0/categories/0/title/show"},
    {"AVariableWithoutALabelMember",
     R"([{"op":"remove","path":"/commands/1/items/1/dimensions/0/categories/1/title/label"}])",
     "/commands/1/items/1/dimensions/0/categories/1/title"},
    {"AValueWhoseLabelIsNull", R"([{"op":"add","path":"/commands/1/items/1/cells/2/content/label","value":null}])",
     "/commands/1/items/1/cells/2/content/label"},
    {"ATextValueWithAWayToShowNumbers", R"([{"op":"add","path":"/commands/1/items/1/cells/2/content/show","value":0}])",
     "/commands/1/items/1/cells/2/content"},
    {"AValueOfNoVariable", R"([{"op":"remove","path":"/commands/1/items/1/cells/2/content/variable"}])",
     "/commands/1/items/1/cells/2/content"},
    {"AListThatStandsAlone",
     R"([{"op":"copy","from":"/commands/1/items/0/message/items/0","path":"/commands/1/items/0/message"}])",
     "/commands/1/items/0/message"},
    {"AListWithATextOfItsOwn", R"([{"op":"add","path":"/commands/1/items/0/message/items/0/text","value":"a, b"}])",
     "/commands/1/items/0/message/items/0"},
    {"AListWithinAList",
     R"([{"op":"copy","from":"/commands/1/items/0/message/items/0","path":"/commands/1/items/0/message/items/0/items/1"}])",
     "/commands/1/items/0/message/items/0/items/1"},
    // What no schema can say.
    {"AKeyThatIsNotTheTitles", R"([{"op":"replace","path":"/commands/1/items/1/key","value":"Size"}])",
     "/commands/1/items/1/key"},
    {"ACellBehindTheLastCategory", R"([{"op":"replace","path":"/commands/1/items/1/cells/0/at","value":[0,3]}])",
     "/commands/1/items/1/cells/0/at"},
    {"ACellOfTooFewDimensions", R"([{"op":"replace","path":"/commands/1/items/1/cells/0/at","value":[0]}])",
     "/commands/1/items/1/cells/0/at"},
    {"TwoCellsAtOnePlace", R"([{"op":"replace","path":"/commands/1/items/1/cells/1/at","value":[0,0]}])",
     "/commands/1/items/1/cells/1/at"},
    {"AFootnoteOfACellThatIsNotThere", R"([{"op":"replace","path":"/commands/1/items/1/cells/0/notes/0","value":2}])",
     "/commands/1/items/1/cells/0/notes"},
    {"AFootnoteOfACategoryThatIsNotThere",
     R"([{"op":"replace","path":"/commands/1/items/1/dimensions/0/categories/1/notes/0","value":2}])",
     "/commands/1/items/1/dimensions"},
    {"TroubleWithoutACommandThatHadIt",
     R"([{"op":"remove","path":"/commands/3"},{"op":"remove","path":"/commands/2"}])", "/verdict"},
    {"ARefusalWithoutTrouble", R"([{"op":"replace","path":"/verdict","value":"same"}])", "/verdict"},
};

class ResultsDamage : public testing::TestWithParam<Damage> {};

TEST_P(ResultsDamage, IsFoundWhereItIs) {
  const Json damaged = sample().patch(Json::parse(GetParam().edit));
  ASSERT_NE(damaged, sample());
  const std::vector<std::string> faults = faultsOf(damaged);
  ASSERT_FALSE(faults.empty());
  for (const std::string& fault : faults) {
    const std::string place = fault.substr(0, fault.find(": "));
    if (place == GetParam().place || place.starts_with(GetParam().place + std::string("/"))) return;
  }
  ADD_FAILURE() << "found elsewhere:\n" << joined(faults);
}

INSTANTIATE_TEST_SUITE_P(Each, ResultsDamage, testing::ValuesIn(damages),
                         [](const auto& each) { return std::string(each.param.name); });

// Every value of the sample, by its place.
void forEachPlace(const Json& value, const Pointer& place, const std::function<void(const Pointer&)>& visit) {
  visit(place);
  if (value.is_object()) {
    for (const auto& [name, member] : value.items()) forEachPlace(member, place / name, visit);
  } else if (value.is_array()) {
    for (std::size_t index = 0; index < value.size(); ++index) forEachPlace(value[index], place / index, visit);
  }
}

TEST(ResultsSchema, RefusesAMemberThatIsNotNamedInAnyObject) {
  forEachPlace(sample(), Pointer(), [](const Pointer& place) {
    if (!sample()[place].is_object()) return;
    Json damaged = sample();
    damaged[place]["added"] = 1;
    EXPECT_FALSE(faultsOf(damaged).empty()) << place;
  });
}

TEST(ResultsSchema, LetsNoMemberBeLeftOutButTheLabelOfAValue) {
  forEachPlace(sample(), Pointer(), [](const Pointer& place) {
    if (place.empty() || !sample()[place.parent_pointer()].is_object()) return;
    Json damaged = sample();
    damaged[place.parent_pointer()].erase(place.back());
    const bool mayBeLeftOut = place.back() == "label" && sample()[place.parent_pointer()]["kind"] == "value";
    // A message of the host without its source is one of a procedure.
    const bool isAnotherMessage = place.back() == "source" && sample()[place] == "host";
    EXPECT_EQ(faultsOf(damaged).empty(), mayBeLeftOut || isAnotherMessage) << place;
  });
}

TEST(ResultsSchema, RefusesAValueOfAnotherTypeAtEveryPlace) {
  forEachPlace(sample(), Pointer(), [](const Pointer& place) {
    Json damaged = sample();
    damaged[place] = sample()[place].is_array() ? Json::object() : Json::array();
    EXPECT_FALSE(faultsOf(damaged).empty()) << place;
  });
}

// A validator passes over words that it does not know, so a misspelled one would let everything through.
TEST(ResultsSchema, IsWrittenInWordsThatAValidatorKnows) {
  const std::set<std::string> words = {"title",    "description", "type",       "required", "additionalProperties",
                                       "const",    "enum",        "items",      "oneOf",    "properties",
                                       "minItems", "maxItems",    "minimum",    "$ref",     "uniqueItems",
                                       "pattern",  "$schema",     "definitions"};
  const std::function<void(const Json&)> check = [&](const Json& schema) {
    for (const auto& [word, value] : schema.items()) {
      EXPECT_TRUE(words.contains(word)) << word;
      if (word == "properties" || word == "definitions") {
        for (const auto& [name, inner] : value.items()) check(inner);
      } else if (word == "oneOf") {
        for (const Json& inner : value) check(inner);
      } else if (word == "items") {
        check(value);
      }
    }
  };
  check(resultsSchema());
}

TEST(ResultsText, ThatIsNotJsonOrNamesAMemberTwiceIsRefused) {
  const std::string text = sample().dump();
  EXPECT_EQ(joined(faultsOfText(text)), "");
  EXPECT_FALSE(faultsOfText("").empty());
  EXPECT_FALSE(faultsOfText(text + text).empty());
  EXPECT_FALSE(faultsOfText("{\"text\": \"\xFC\"}").empty());
  EXPECT_EQ(joined(faultsOfText("{\"version\": 1, " + text.substr(1))), "an object has two members \"version\"\n");
}

TEST(ResultsText, ThatIsNotValidFailsTheTestThatRuns) {
  EXPECT_NONFATAL_FAILURE(expectValidResults("{}"), "The results document is not valid");
  expectValidResults(sample().dump());
}

}  // namespace
}  // namespace workbench::tests
