#include "workbench/output/json_writer.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "host/messages.h"
#include "tests/output/fakes.h"
#include "tests/results/results_schema.h"
#include "tests/text/any_text.h"
#include "workbench/output/text_access.h"

namespace workbench::output {
namespace {

using Json = nlohmann::ordered_json;

std::string jsonOf(const BpCellText& text) { return jsonText(textOf(text), english()).dump(); }

std::string documentOf(const Document& document) {
  std::ostringstream out;
  writeJson(out, document, english());
  tests::expectValidResults(out.str());
  return out.str();
}

TEST(JsonWriter, WritesEveryKindOfText) {
  FakeVariable age("age");
  age.labelled("Age in years");
  FakeVariable sex("sex");
  sex.valueLabel(1, "Male");
  const FakeVariable town("town", 8);
  EXPECT_EQ(jsonOf(key("CD_Active")), R"({"kind":"string","key":"CD_Active","translate":true,"text":"Active"})");
  EXPECT_EQ(jsonOf(plain("")), R"({"kind":"string","key":"","translate":false,"text":""})");
  EXPECT_EQ(jsonOf(percent(12.5)), R"({"kind":"number","value":12.5,"format":"percent","text":"12.5%"})");
  EXPECT_EQ(jsonOf(count(150)), R"({"kind":"number","value":150,"format":"count","text":"150"})");
  EXPECT_EQ(jsonOf(count(-DBL_MAX)), R"({"kind":"number","value":null,"format":"count","text":"."})");
  EXPECT_EQ(jsonOf(BpVariable(age, BpVariableShow::nameAndLabel)),
            R"json({"kind":"variable","name":"age","label":"Age in years","show":2,"text":"age (Age in years)"})json");
  EXPECT_EQ(jsonOf(BpVariable(sex, BpVariableShow::nameAndLabel)),
            R"({"kind":"variable","name":"sex","label":null,"show":2,"text":"sex"})");
  EXPECT_EQ(jsonOf(BpDataValue(sex, 1, BpValueShow::inPrintFormat)),
            R"({"kind":"value","variable":"sex","value":1,"label":"Male","show":0,"text":"1"})");
  EXPECT_EQ(jsonOf(BpDataValue(town, "Ghent", BpValueShow::inPrintFormat)),
            R"({"kind":"value","variable":"town","value":"Ghent","text":"Ghent"})");
  EXPECT_EQ(jsonOf(both(count(5), plain("7"))),
            R"({"kind":"composite","pattern":"(1) ^1\n(2) ^2","translate":false,"items":[)"
            R"({"kind":"number","value":5,"format":"count","text":"5"},)"
            R"({"kind":"string","key":"7","translate":false,"text":"7"}],"text":"(1) 5\n(2) 7"})");
}

TEST(JsonWriter, WritesASublistAsAListWithoutATextOfItsOwn) {
  BpComposite composite("[%1:, ^1:]1", false);
  composite.Sublist();
  composite.Add(plain("A"));
  composite.EndSublist();
  composite.Finish();
  EXPECT_EQ(jsonOf(composite),
            R"({"kind":"composite","pattern":"[%1:, ^1:]1","translate":false,"items":[{"kind":"list","items":[)"
            R"({"kind":"string","key":"A","translate":false,"text":"A"}]}],"text":"A"})");
}

TEST(JsonWriter, ReplacesBytesThatAreNotUtf8) {
  const RunningCommand command;
  const std::string text = jsonText(textOf(plain("Gr\xFC\xDF")), english())
                               .dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
  EXPECT_NE(text.find("Gr\uFFFD\uFFFD"), std::string::npos) << text;
}

TEST(JsonWriter, WritesASmallTableToTheLetter) {
  RunningCommand command;
  {
    BpProcedure procedure("Test Procedure", 7);
    BpPivotTable table = procedure.PivotTable(key("Sizes"), plain("All sizes"), true);
    BpDimension rows = table.Dimension(plain("Kind"), BpSort::asMade);
    BpDimension columns = table.Dimension(plain("Size"), BpSort::asMade);
    columns.Position(BpPlace::columns, 1, true, false);
    BpCategory last = rows.Category(plain("last"));
    BpGroup group = columns.Group(plain("group"), false, BpSort::asMade);
    group.Category(plain("small"));
    BpCategory large = columns.Category(plain("large"));
    const BpAnnotation note(plain("note").Replicate());
    large.Note(note);
    last.Cell(count(1));
    group.Category(plain("small"));
    last.Cell(count(2));
    last.CellNote(note);
    BpPivotTable destroyed = procedure.PivotTable(key("Gone"), plain("Gone"), true);
    destroyed.Destroy();
  }
  command->syntax = "TEST.";
  EXPECT_EQ(documentOf(command.intoDocument()), R"({
  "format": "compare-datasets-results",
  "version": 1,
  "commands": [
    {
      "name": "TEST",
      "syntax": "TEST.",
      "outcome": "completed",
      "procedure": {"title":"Test Procedure","code":7},
      "items": [
        {
          "item": "table",
          "key": "Sizes",
          "title": {"kind":"string","key":"Sizes","translate":true,"text":"Sizes"},
          "defaultTitle": {"kind":"string","key":"All sizes","translate":false,"text":"All sizes"},
          "caption": null,
          "minDataColumnWidth": null,
          "flag": true,
          "dimensions": [
            {
              "title": {"kind":"string","key":"Kind","translate":false,"text":"Kind"},
              "sort": 2,
              "position": null,
              "categories": [
                {"title":{"kind":"string","key":"last","translate":false,"text":"last"},"notes":[]}
              ]
            },
            {
              "title": {"kind":"string","key":"Size","translate":false,"text":"Size"},
              "sort": 2,
              "position": {"place":1,"index":1,"flags":[true,false]},
              "categories": [
                {
                  "title": {"kind":"string","key":"group","translate":false,"text":"group"},
                  "group": true,
                  "flag": false,
                  "sort": 2,
                  "categories": [
                    {"title":{"kind":"string","key":"small","translate":false,"text":"small"},"notes":[]}
                  ]
                },
                {"title":{"kind":"string","key":"large","translate":false,"text":"large"},"notes":[0]}
              ]
            }
          ],
          "cells": [
            {"at":[0,1],"content":{"kind":"number","value":1,"format":"count","text":"1"},"notes":[]},
            {"at":[0,0],"content":{"kind":"number","value":2,"format":"count","text":"2"},"notes":[0]}
          ],
          "footnotes": [
            {"kind":"string","key":"note","translate":false,"text":"note"}
          ]
        }
      ]
    }
  ],
  "verdict": null
}
)");
}

TEST(JsonWriter, WritesMessagesInTheirThreeFormsAndNotes) {
  RunningCommand command;
  BpError(key("All values in the tw..."), BpErrorShow::results, BpErrorLevel::note);
  AddNotesWithGroup(BpNoteKind::addedVariable, plain(""), plain(""), plain("flag"));
  Message numbered;
  numbered.number = 7414;
  numbered.show = 2;
  numbered.level = 2;
  numbered.text = Text{StringText{"numbered", false}};
  command->items.emplace_back(numbered);
  command->items.emplace_back(parserMessage("unexpected", 3, 14));
  command->items.emplace_back(hostMessage(BpErrorLevel::warning, "renamed"));
  const Json document = Json::parse(documentOf(command.intoDocument()));
  const Json& items = document["commands"][0]["items"];
  EXPECT_EQ(items[0].dump(),
            R"({"item":"message","show":4,"level":1,"message":{"kind":"string","key":"All values in the tw...",)"
            R"("translate":true,"text":"All values in the two datasets match."}})");
  EXPECT_EQ(items[1]["item"], "note");
  EXPECT_EQ(items[1]["group"], 3);
  EXPECT_EQ(items[1]["texts"][2]["text"], "flag");
  EXPECT_EQ(items[2].dump(),
            R"({"item":"message","number":7414,"codes":[2,2],"message":{"kind":"string","key":"numbered",)"
            R"("translate":false,"text":"numbered"}})");
  EXPECT_EQ(items[3]["source"], "parser");
  EXPECT_EQ(items[3]["line"], 3);
  EXPECT_EQ(items[3]["column"], 14);
  EXPECT_EQ(items[4]["source"], "host");
  EXPECT_EQ(items[4]["level"], 2);
}

TEST(JsonWriter, LeavesATableThatWasNeverFilledWithoutDimensionsAndCells) {
  RunningCommand command;
  {
    BpProcedure("Test", 1).PivotTable(key("Empty"), plain("Empty"), true);
  }
  const Json document = Json::parse(documentOf(command.intoDocument()));
  const Json& table = document["commands"][0]["items"][0];
  EXPECT_EQ(table["dimensions"], Json::array());
  EXPECT_EQ(table["cells"], Json::array());
}

TEST(JsonWriter, SaysHowCommandsEndedAndTheVerdict) {
  RunningCommand command;
  command->outcome = Command::Outcome::refused;
  Document document = command.intoDocument();
  document.verdict = Verdict::trouble;
  const Json written = Json::parse(documentOf(document));
  EXPECT_EQ(written["commands"][0]["outcome"], "refused");
  EXPECT_EQ(written["commands"][0]["procedure"], nullptr);
  EXPECT_EQ(written["verdict"], "trouble");
}

void expectReadsBack(double value) {
  const double read = Json::parse(jsonNumber(value).dump()).get<double>();
  RC_ASSERT(std::bit_cast<std::uint64_t>(read) == std::bit_cast<std::uint64_t>(value));
}

RC_GTEST_PROP(JsonWriter, WritesNumbersThatReadBackBitByBit, (std::uint64_t bits, std::int32_t whole)) {
  const double value = std::bit_cast<double>(bits);
  if (std::isfinite(value) && value != -DBL_MAX) expectReadsBack(value);
  expectReadsBack(whole);
  expectReadsBack(whole / 100.0);
}

TEST(JsonWriter, WritesExtremeNumbersThatReadBackBitByBit) {
  for (const double value : {0.0, -0.0, DBL_MAX, DBL_MIN, 4.9e-324, 9007199254740992.0, 9007199254740994.0,
                             -9007199254740992.0, 1e21, 1e22, 0.1, std::nextafter(-DBL_MAX, 0.0)}) {
    const double read = Json::parse(jsonNumber(value).dump()).get<double>();
    EXPECT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(value)) << value;
  }
  EXPECT_EQ(jsonNumber(std::numeric_limits<double>::infinity()), nullptr);
}

// A text of any kind over any number there is, the system-missing one and those that JSON has no words for included.
std::unique_ptr<BpCellText> anyCellText() {
  const double number = *rc::gen::oneOf(rc::gen::element(-DBL_MAX, HUGE_VAL, -HUGE_VAL, std::nan(""), -std::nan("")),
                                        rc::gen::map(rc::gen::arbitrary<std::uint64_t>(),
                                                     [](std::uint64_t bits) { return std::bit_cast<double>(bits); }));
  const FormatTypeRow row = formatTypeRows[*rc::gen::inRange<std::size_t>(0, std::size(formatTypeRows))];
  FakeVariable variable(*text::anyText());
  variable.labelled(*text::anyText()).formatted(row.type, *rc::gen::inRange(1, 40), *rc::gen::inRange(0, 16));
  variable.valueLabel(number, *text::anyText());
  switch (*rc::gen::inRange(0, 5)) {
    case 0:
      return count(number).Replicate();
    case 1:
      return percent(number).Replicate();
    case 2:
      return BpVariable(variable, *rc::gen::element(BpVariableShow::name, BpVariableShow::labelElseName)).Replicate();
    case 3:
      return BpDataValue(variable, *text::anyText(), BpValueShow::inPrintFormat).Replicate();
    default:
      return BpDataValue(variable, number, BpValueShow::inPrintFormat).Replicate();
  }
}

RC_GTEST_PROP(JsonWriter, KeepsTheFormatWhateverIsShown, ()) {
  RunningCommand command;
  BpError(both(*anyCellText(), *anyCellText()), BpErrorShow::results, BpErrorLevel::note);
  AddNotesWithGroup(BpNoteKind::savedFile, *anyCellText(), *anyCellText(), *anyCellText());
  documentOf(command.intoDocument());
}

RC_GTEST_PROP(JsonWriter, IsValidWhateverTheTexts, ()) {
  RunningCommand command(*text::anyText());
  BpError(BpString(*text::anyText(), *rc::gen::arbitrary<bool>()), BpErrorShow::results, BpErrorLevel::note);
  const Json written = Json::parse(documentOf(command.intoDocument()));
  RC_ASSERT(written["commands"].size() == 1U);
}

}  // namespace
}  // namespace workbench::output
