// JSON lines as they are written, and that they read back as the same cases with the same dictionary.
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>
#include <cstring>
#include <nlohmann/json.hpp>

#include "host/messages.h"
#include "tests/data/descriptors/kept_dictionary.h"
#include "tests/data/files/file_fixture.h"

namespace workbench::data {
namespace {

constexpr std::int32_t textWidth = 24;
constexpr std::size_t caseSlots = 2 + textWidth / sizeof(OBS);

Dictionary numberTextAndMoment() {
  Dictionary dictionary;
  Variable number;
  number.name = "a \"number\"";
  dictionary.add(number);
  Variable moment;
  moment.name = "moment";
  moment.format = {FormatType::dateTime, 23, 3};
  dictionary.add(moment);
  Variable text;
  text.name = "text\n";
  text.width = textWidth;
  text.format = {FormatType::text, textWidth, 0};
  dictionary.add(text);
  return dictionary;
}

void setCase(OBS* values, double number, double moment, std::string_view text) {
  values[0].number = number;
  values[1].number = moment;
  std::memset(values + 2, ' ', textWidth);
  std::memcpy(values + 2, text.data(), text.size());
}

void write(const std::string& path, const Dictionary& dictionary, const std::vector<OBS>& slots,
           const Secret& password = {}) {
  const auto writer = createDataFile(path, dictionary, password);
  if (!writer) throw std::runtime_error(writer.problem().text());
  (*writer)->append(slots.data(), slots.size() / caseSlots, caseSlots);
  (*writer)->complete();
  (*writer)->commit();
}

std::vector<OBS> slotsOf(const DataFile& file) {
  CaseBlock block(caseSlots);
  std::vector<OBS> slots;
  const auto reader = file.openReader();
  for (reader->fill(block); block.cases() != 0; reader->fill(block)) {
    slots.insert(slots.end(), block.begin(), block.begin() + block.cases() * caseSlots);
  }
  return slots;
}

bool areSame(const std::vector<OBS>& left, const std::vector<OBS>& right) {
  return left.size() == right.size() &&
         (left.empty() || std::memcmp(left.data(), right.data(), left.size() * sizeof(OBS)) == 0);
}

TEST(JsonLinesWriting, PutsACaseIntoEachLineWithKeysInTheOrderOfTheVariables) {
  const TestFolder folder;
  std::vector<OBS> slots(2 * caseSlots);
  setCase(slots.data(), 0.1, 1706697000.25, "\"x\" \\ \n ä");
  setCase(slots.data() + caseSlots, systemMissing, systemMissing, "");
  write(folder.path("a.jsonl"), numberTextAndMoment(), slots);
  EXPECT_EQ(
      folder.read("a.jsonl"),
      "{\"a \\\"number\\\"\":0.1,\"moment\":\"2024-01-31T10:30:00.25\",\"text\\u000a\":\"\\\"x\\\" \\\\ \\u000a ä\"}\n"
      "{\"a \\\"number\\\"\":null,\"moment\":null,\"text\\u000a\":null}\n");
  EXPECT_EQ(folder.names(), (std::vector<std::string>{"a.jsonl", "a.schema.json"}));
}

TEST(JsonLinesWriting, RefusesWhatACsvFileRefuses) {
  const TestFolder folder;
  std::vector<OBS> slots(caseSlots);
  const auto refusal = [&](const char* name, double number, double moment, std::string_view text) {
    setCase(slots.data(), number, moment, text);
    try {
      write(folder.path(name), numberTextAndMoment(), slots);
    } catch (const ErrorText& error) {
      return std::string(error.what()).substr(folder.path(name).size());
    }
    return std::string("written");
  };
  const double infinite = HUGE_VAL;
  for (const auto& [number, moment, text] : std::vector<std::tuple<double, double, std::string>>{
           {infinite, 0, ""}, {0, infinite, ""}, {0, 1e300, ""}, {0, 0, "\xFF"}, {0, 0, std::string("a\0b", 3)}}) {
    const std::string said = refusal("a.jsonl", number, moment, text);
    EXPECT_EQ(said, refusal("b.csv", number, moment, text));
    EXPECT_TRUE(said.starts_with(": In case 1 the value of ")) << said;
  }
  EXPECT_EQ(createDataFile(folder.path("a.jsonl"), Dictionary(), "").problem().what,
            createDataFile(folder.path("a.csv"), Dictionary(), "").problem().what);
  EXPECT_EQ(folder.names(), std::vector<std::string>());
}

TEST(JsonLinesWriting, BringsTheResourceOfAPackageUpToDateWithoutADelimiter) {
  const TestFolder folder;
  folder.write("datapackage.json",
               R"({"resources": [{"name": "a", "path": "a.jsonl", "dialect": {"delimiter": ";"}}]})");
  std::vector<OBS> slots(caseSlots);
  setCase(slots.data(), 1, 0, "x");
  write(folder.path("a.jsonl"), numberTextAndMoment(), slots);
  const auto package = nlohmann::json::parse(folder.read("datapackage.json"));
  EXPECT_FALSE(package["resources"][0].contains("dialect"));
  EXPECT_EQ(package["resources"][0]["schema"]["fields"].size(), 3U);
  EXPECT_TRUE(areSame(slotsOf(*opened(folder.path("a.jsonl"))), slots));
}

TEST(JsonLinesWriting, ProtectsWhatIsToBeProtected) {
  const TestFolder folder;
  std::vector<OBS> slots(caseSlots);
  setCase(slots.data(), 1, 0, "secret text");
  write(folder.path("a.jsonl.gz.pgp"), numberTextAndMoment(), slots, "correct horse");
  const auto file = openDataFile(folder.path("a.jsonl.gz.pgp"), {"correct horse"});
  ASSERT_TRUE(file) << file.problem().text();
  EXPECT_TRUE(areSame(slotsOf(**file), slots));
  EXPECT_EQ(folder.names(), (std::vector<std::string>{"a.jsonl.gz.pgp", "a.schema.json.pgp"}));
}

TEST(JsonLinesWriting, GivesTheSameCasesBackInEveryPackingAndIsJsonToOthers) {
  const TestFolder folder;
  const Dictionary dictionary = numberTextAndMoment();
  static const std::vector<std::string> pieces{"a",    "1", ",", "\"", "\n", "\r", "\\", " ",    "\t",
                                               "\x01", "ä", "€", "😀", "{",  "}",  "[",  "\x7F", "\xEF\xBB\xBF"};
  EXPECT_TRUE(rc::check([&](std::uint8_t pick) {
    constexpr const char* names[] = {"a.jsonl", "a.ndjson.gz", "a.jsonl.zst"};
    const std::string path = folder.path(names[pick % std::size(names)]);
    const auto cases = *rc::gen::inRange<std::size_t>(0, 30);
    std::vector<OBS> slots(cases * caseSlots);
    std::vector<std::string> texts;
    for (std::size_t index = 0; index < cases; ++index) {
      const auto number = std::bit_cast<double>(*rc::gen::arbitrary<std::uint64_t>());
      std::string text;
      for (const auto& piece : *rc::gen::container<std::vector<std::string>>(rc::gen::elementOf(pieces))) {
        if (text.size() + piece.size() <= textWidth) text += piece;
      }
      const auto milliseconds = *rc::gen::inRange<std::int64_t>(-1'000'000'000'000, 1'000'000'000'000);
      setCase(slots.data() + index * caseSlots, std::isfinite(number) ? number : systemMissing,
              static_cast<double>(milliseconds) / 1000, text);
      texts.push_back(withoutBlanksAtItsEnd(text));
    }
    write(path, dictionary, slots);
    RC_ASSERT(areSame(slotsOf(*opened(path)), slots));

    const std::string all = unpackedText(path);
    std::istringstream lines(all);
    std::size_t index = 0;
    for (std::string line; std::getline(lines, line); ++index) {
      const auto object = nlohmann::json::parse(line);
      const double number = slots[index * caseSlots].number;
      RC_ASSERT(object.size() == 3U);
      if (number == systemMissing) {
        RC_ASSERT(object["a \"number\""].is_null());
      } else {
        RC_ASSERT(object["a \"number\""].get<double>() == number);
      }
      const bool isText = texts[index].empty() ? object["text\n"].is_null() : object["text\n"] == texts[index];
      RC_ASSERT(isText);
    }
    RC_ASSERT(index == cases);
  }));
}

TEST(JsonLinesWriting, WritesDownEveryDictionary) {
  checkThatDictionariesAreKept("a.jsonl", {"a.jsonl", "a.schema.json"});
}

}  // namespace
}  // namespace workbench::data
