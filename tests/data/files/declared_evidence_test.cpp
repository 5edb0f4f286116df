// What a scan finds out of columns that a dictionary declares, and what it refuses.

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/data/files/table_fixture.h"
#include "workbench/data/files/type_inference.h"

namespace workbench::data {
namespace {

Outcome<SharedEvidence> evidenceBy(const std::string& path, const Declared& declared, const TableDialect& how = {}) {
  return evidenceOf(path, *fileKind(path), how, declaring(declared));
}

// The problem of a file under declarations, without the folder's name.
std::string problemBy(const Declared& declared, const std::string& text, const TableDialect& how = {}) {
  const TestFolder folder;
  const auto evidence = evidenceBy(folder.write("a.csv", text), declared, how);
  if (evidence) return "sound";
  std::string problem = evidence.problem().text();
  const std::size_t at = problem.find(folder.path(""));
  return at == std::string::npos ? problem : problem.erase(at, folder.path("").size());
}

constexpr const char* remedy = " Correct the cell or what is declared, or list its text among the missing values.";

TEST(DeclaredEvidence, RefusesACellThatDoesNotReadWithAllThatIsNeededToFindIt) {
  const Declared integer = {{"b", as(declared(CellType::integer))}};
  EXPECT_EQ(
      problemBy(integer, "a,b\nx,1\ny,\"two\n\"\n"),
      std::string("a.csv, line 3: Column \"b\" is declared as an integer, and \"two\n\" is no integer.") + remedy);
  EXPECT_EQ(problemBy(integer, "a,b\n\"x\ny\",1\nz,9007199254740993\n"),
            std::string(
                "a.csv, line 4: Column \"b\" is declared as an integer, and \"9007199254740993\" is beyond 2^53, which "
                "is not held exactly; declare the field as string.") +
                remedy);
  EXPECT_EQ(problemBy(integer, "b\n" + std::string(50, 'x') + "\n"),
            "a.csv, line 2: Column \"b\" is declared as an integer, and \"" + std::string(40, 'x') +
                "...\" is no integer." + remedy);
  EXPECT_EQ(
      problemBy({{"b", as(declared(CellType::integer).noValue({"NA"}))}}, "a,b\nx,\n"),
      std::string("a.csv, line 2: Column \"b\" is declared as an integer, and \"\" is empty, and an empty text is not "
                  "declared as missing.") +
          remedy);
  EXPECT_EQ(
      problemBy({{"b", as(declared(CellType::dateTime))}}, "b\n2026-01-01T00:00:00Z\n2026-01-01T00:00:00\n"),
      std::string("a.csv, line 3: Column \"b\" is declared as a datetime, and \"2026-01-01T00:00:00\" bears no time "
                  "zone, and values before it do.") +
          remedy);
}

TEST(DeclaredEvidence, RefusesACellInEveryDialect) {
  const Declared integer = {{"b", as(declared(CellType::integer))}};
  EXPECT_EQ(problemBy(integer, "# x\na||b\n# y\n1||z\n", dialect().delimiter("||").comments("#")),
            std::string("a.csv, line 4: Column \"b\" is declared as an integer, and \"z\" is no integer.") + remedy);
  EXPECT_EQ(
      problemBy({{"field2", as(declared(CellType::integer))}}, "1,z\n", dialect().noHeader()),
      std::string("a.csv, line 1: Column \"field2\" is declared as an integer, and \"z\" is no integer.") + remedy);
}

TEST(DeclaredEvidence, IsGatheredOverPlainTexts) {
  const TestFolder folder;
  const std::string path =
      folder.write("a.csv", "n,d,t,s\n\"1.234,50\",21.11.2026,23:15,NA\nNA,,9:05,long text\n\"7,125\",1.1.2027,,x\n");
  const auto evidence =
      evidenceBy(path, {{"n", as(declared(CellType::number).decimalChar(",").groupChar(".").noValue({"NA"}))},
                        {"d", as(declared(CellType::date).pattern("%d.%m.%Y"))},
                        {"t", as(declared(CellType::time).pattern("%H:%M"))},
                        {"s", as(declared(CellType::text).noValue({"NA"}))}});
  ASSERT_TRUE(evidence);
  const std::vector<ColumnEvidence>& columns = (*evidence)->columns;
  EXPECT_EQ(columns[0].kind(), CellKind::number);
  EXPECT_EQ(columns[0].filled(), 2U);
  EXPECT_EQ(columns[0].wholeWidth(), 4);
  EXPECT_EQ(columns[0].fractionDigits(), 3);
  EXPECT_EQ(columns[1].kind(), CellKind::date);
  EXPECT_EQ(columns[2].kind(), CellKind::time);
  EXPECT_EQ(columns[3].filled(), 2U);
  EXPECT_EQ(columns[3].longestText(), 9U);
  const std::vector<const DescribedField*> fields((*evidence)->header.size());
  const InferredTypes types = inferTypes({path, "line", (*evidence)->header, (*evidence)->columns, fields}, nullptr);
  EXPECT_EQ(types.variables[0].format.width, 8);
  EXPECT_EQ(types.variables[0].format.decimals, 3);
}

TEST(DeclaredEvidence, IsGatheredAsEverOfOtherColumns) {
  const TestFolder folder;
  const std::string path = folder.write("a.csv", "a,b,c\n1,x,\n2.5,NA,3\n");
  const auto plain = evidenceOf(path, *fileKind(path));
  const auto withOther = evidenceBy(path, {{"b", as(declared(CellType::text).noValue({"NA"}))}});
  ASSERT_TRUE(plain && withOther);
  for (const std::size_t column : {std::size_t{0}, std::size_t{2}}) {
    EXPECT_EQ((*plain)->columns[column].kind(), (*withOther)->columns[column].kind());
    EXPECT_EQ((*plain)->columns[column].filled(), (*withOther)->columns[column].filled());
  }
  EXPECT_EQ((*plain)->columns[1].filled(), 2U);
  EXPECT_EQ((*withOther)->columns[1].filled(), 1U);
}

TEST(DeclaredEvidence, CountsNullsAsEmpty) {
  const TestFolder folder;
  const std::string path = folder.write("a.csv", "a,b\n\\N,\\N\n1,x\n");
  const auto evidence = evidenceBy(path, {{"b", as(declared(CellType::text).noValue({}))}}, dialect().null("\\N"));
  ASSERT_TRUE(evidence);
  EXPECT_EQ((*evidence)->columns[0].kind(), CellKind::number);
  EXPECT_EQ((*evidence)->columns[1].filled(), 1U);
}

TEST(DeclaredEvidence, CountsCellsOutsideOfTheValuesThatAreAllowed) {
  const TestFolder folder;
  const std::string path = folder.write("a.csv", "a,b\n1,low\n03,high \n2,mid\n,\n2.0,low\n9,\n");
  const auto evidence = evidenceBy(path, {{"a", {declared(CellType::number), {1, 3, 9}, {}}},
                                          {"b", {declared(CellType::text), {}, {"low", "high"}}}});
  ASSERT_TRUE(evidence);
  const std::vector<DeclaredFindings>& findings = (*evidence)->findings;
  EXPECT_EQ(findings[0].outside, 2U);
  EXPECT_EQ(findings[0].firstOutside.line, 4U);
  EXPECT_EQ(findings[0].firstOutside.text, "2");
  EXPECT_EQ(findings[1].outside, 1U);
  EXPECT_EQ(findings[1].firstOutside.text, "mid");
}

TEST(DeclaredEvidence, TellsOddGroupsAndZones) {
  const TestFolder folder;
  const std::string path = folder.write(
      "a.csv", "n;z;l\n1.234;2026-01-01T00:00:00Z;2026-01-01T00:00:00\n1.5;2026-01-01T00:00:00+01:00;\n2.50;;\n");
  const auto evidence = evidenceBy(path,
                                   {{"n", as(declared(CellType::number).decimalChar(",").groupChar("."))},
                                    {"z", as(declared(CellType::dateTime))},
                                    {"l", as(declared(CellType::dateTime))}},
                                   dialect().delimiter(";"));
  ASSERT_TRUE(evidence);
  const std::vector<DeclaredFindings>& findings = (*evidence)->findings;
  EXPECT_EQ(findings[0].oddGroups, 2U);
  EXPECT_EQ(findings[0].firstOddGroups.line, 3U);
  EXPECT_EQ(findings[0].firstOddGroups.text, "1.5");
  EXPECT_EQ(findings[0].zoned, std::nullopt);
  EXPECT_EQ(findings[1].zoned, true);
  EXPECT_EQ(findings[2].zoned, false);
}

TEST(DeclaredEvidence, IsRememberedByDialectAndDeclaration) {
  const TestFolder folder;
  const std::string path = folder.write("a.csv", "a,b\n1,2\n");
  std::this_thread::sleep_for(std::chrono::milliseconds(120));
  const Declared number = {{"a", as(declared(CellType::number))}};
  const Declared integer = {{"a", as(declared(CellType::integer))}};
  const SharedEvidence plain = *evidenceOf(path, *fileKind(path));
  const SharedEvidence asNumber = *evidenceBy(path, number);
  const SharedEvidence asInteger = *evidenceBy(path, integer);
  const SharedEvidence headless = *evidenceBy(path, {}, dialect().noHeader());
  EXPECT_NE(plain, asNumber);
  EXPECT_NE(asNumber, asInteger);
  EXPECT_EQ(plain, *evidenceOf(path, *fileKind(path)));
  EXPECT_EQ(plain, *evidenceBy(path, {})) << "nothing is declared of its columns";
  EXPECT_EQ(plain, *evidenceBy(path, {}, dialect().delimiter(",")));
  EXPECT_EQ(asNumber, *evidenceBy(path, number));
  EXPECT_EQ(asInteger, *evidenceBy(path, integer));
  EXPECT_EQ(headless, *evidenceBy(path, {}, dialect().noHeader()));
  EXPECT_NE(asNumber, *evidenceBy(path, {{"a", {declared(CellType::number), {1}, {}}}}));
}

TEST(DeclaredEvidence, NamesTheColumnsOfATextWithoutAHeader) {
  const TestFolder folder;
  const std::string path = folder.write("a.csv", "1,x\n2,y\n");
  const auto evidence = evidenceBy(path, {}, dialect().noHeader());
  ASSERT_TRUE(evidence);
  EXPECT_EQ((*evidence)->header, (std::vector<std::string>{"field1", "field2"}));
  EXPECT_EQ((*evidence)->cases, 2U);
  EXPECT_EQ((*evidence)->columns[0].kind(), CellKind::number);
  EXPECT_EQ(problemBy({}, "", dialect().noHeader()),
            "a.csv: The file is empty, and its first line has to tell the number of columns. Name another file.");
}

TEST(DeclaredEvidence, PassesOnWhatStandsInTheWayOfDeclaring) {
  const TestFolder folder;
  const std::string path = folder.write("a.csv", "a,b\n1,x\n");
  const auto evidence = evidenceOf(path, *fileKind(path), {}, [](const std::vector<std::string>& names) {
    return Outcome<DeclaredColumns>(Problem{fmt::format("No field is named {}.", names.back()), "d.json", ""});
  });
  ASSERT_FALSE(evidence);
  EXPECT_EQ(evidence.problem().text(), "d.json: No field is named b.");
}

TEST(DeclaredEvidence, RefusesDialectsAndEncodingsThatCannotBe) {
  EXPECT_EQ(problemBy({}, "a\n1\n", dialect().delimiter("")),
            "a.csv: The dialect has nothing between fields. Correct the dialect.");
  EXPECT_EQ(problemBy({}, "a\n1\n", dialect().encoding("latin-one")),
            "a.csv: \"latin-one\" is no encoding that is known; name it as IANA does, like utf-8 or windows-1252.");
  EXPECT_EQ(
      problemBy({}, "a\n\xF6\n", dialect().encoding("us-ascii")),
      "a.csv: The byte 0xF6 at offset 2 is no us-ascii. Name the encoding that the file has, or save it as UTF-8.");
}

// The problem of parts, without the folder's name; else the cases of all.
std::string partsProblem(const std::vector<std::string>& texts, const Declared& declared = {}) {
  const TestFolder folder;
  std::vector<std::string> paths;
  for (std::size_t part = 0; part < texts.size(); ++part) {
    paths.push_back(folder.write(fmt::format("{}.csv", part), texts[part]));
  }
  const auto evidence = evidenceOfParts(paths, *fileKind(paths.front()), {}, declaring(declared));
  if (evidence) return fmt::format("{}", evidence->whole->cases);
  std::string text = evidence.problem().text();
  const std::string prefix = folder.path("");
  for (std::size_t at = text.find(prefix); at != std::string::npos; at = text.find(prefix))
    text.erase(at, prefix.size());
  return text;
}

TEST(DeclaredEvidence, OfPartsIsThatOfAllTheirCells) {
  const TestFolder folder;
  const std::vector<std::string> paths = {folder.write("a.csv", "a,b\n1,x\n"),
                                          folder.write("b.csv", "a,b\n22.5,long\n3,\n")};
  const auto evidence = evidenceOfParts(paths, *fileKind(paths.front()), {}, nullptr);
  ASSERT_TRUE(evidence);
  EXPECT_EQ(evidence->whole->cases, 3U);
  EXPECT_EQ(evidence->whole->columns[0].wholeWidth(), 2);
  EXPECT_EQ(evidence->whole->columns[0].fractionDigits(), 1);
  EXPECT_EQ(evidence->whole->columns[1].longestText(), 4U);
  EXPECT_EQ(evidence->parts[1]->cases, 2U);
}

TEST(DeclaredEvidence, RefusesPartsWithOtherColumns) {
  const std::string partRemedy =
      " All files of one table have the same columns; correct the file or the list of files.";
  EXPECT_EQ(partsProblem({"a,b\n1,2\n", "a,b\n3,4\n"}), "2");
  EXPECT_EQ(partsProblem({"a,b\n1,2\n", "a,c\n3,4\n"}),
            "1.csv: Column 2 is \"c\", and it is \"b\" in 0.csv, which stands above it." + partRemedy);
  EXPECT_EQ(partsProblem({"a,b\n1,2\n", "a\n3\n"}),
            "1.csv: The number of columns is 1, and it is 2 in 0.csv, which stands above it." + partRemedy);
  EXPECT_EQ(partsProblem({"a,b\n1,2\n", "a,b\n3\n"}).substr(0, 13), "1.csv, line 2");
}

TEST(DeclaredEvidence, RefusesPartsThatMixZonedAndUnzonedTimes) {
  const Declared moment = {{"a", as(declared(CellType::dateTime))}};
  EXPECT_EQ(
      partsProblem({"a\n2026-01-01T00:00:00Z\n", "a\n\n", "a\n2026-01-01T00:00:00\n"}, moment),
      "2.csv: The values of column \"a\" bear no time zone, and those in 0.csv do. Let all values of the column bear a "
      "time zone, or none.");
  EXPECT_EQ(
      partsProblem({"a\n2026-01-01T00:00:00\n", "a\n2026-01-01T00:00:00Z\n"}, moment),
      "1.csv: The values of column \"a\" bear a time zone, and those in 0.csv bear none. Let all values of the column "
      "bear a time zone, or none.");
}

}  // namespace
}  // namespace workbench::data
