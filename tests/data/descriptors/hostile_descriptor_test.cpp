// Descriptors that mean harm: paths that leave the folder, input without end, names that are not what they seem.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/data/descriptors/package_fixture.h"
#include "workbench/data/descriptors/json_text.h"

namespace workbench::data {
namespace {

namespace fs = std::filesystem;

// A folder with a package in it, and a secret beside that folder.
class Trap {
 public:
  explicit Trap(std::string_view properties) {
    folder_.write("secret.json", R"({"fields": [{"name": "a", "title": "secret"}]})");
    fs::create_directory(folder_.path("inside"));
    fs::create_directory(folder_.path("inside/deep"));
    folder_.write("inside/people.csv", "a\n1\n");
    folder_.write("inside/datapackage.json", packageWith(properties));
  }

  void link(const std::string& target, std::string_view name) const {
    fs::create_symlink(target, folder_.path("inside/" + std::string(name)));
  }
  std::string path(std::string_view name) const { return folder_.path(name); }
  std::string problem() const {
    const Outcome<DescribedTable> table = describedResource(folder_.path("inside/datapackage.json"), "people");
    return table ? "no problem" : withoutFolder(table.problem().text(), folder_);
  }

 private:
  TestFolder folder_;
};

constexpr const char* leavesByLink = "a symbolic link that leads out of the descriptor's folder.";

TEST(HostileDescriptor, DoesNotLeaveItsFolderByASymbolicLink) {
  const Trap data(R"("path": "link.csv")");
  data.link("../secret.json", "link.csv");
  EXPECT_NE(data.problem().find(leavesByLink), std::string::npos) << data.problem();

  const Trap absolute(R"("path": "link.csv")");
  absolute.link(absolute.path("secret.json"), "link.csv");
  EXPECT_NE(absolute.problem().find(leavesByLink), std::string::npos);

  const Trap folder(R"("path": "up/secret.json")");
  folder.link("..", "up");
  EXPECT_NE(folder.problem().find(leavesByLink), std::string::npos);

  const Trap schema(R"("path": "people.csv", "schema": "link.json")");
  schema.link("../secret.json", "link.json");
  EXPECT_NE(schema.problem().find(leavesByLink), std::string::npos);

  const Trap dialect(R"("path": "people.csv", "dialect": "deep/link.json")");
  dialect.link("../../secret.json", "deep/link.json");
  EXPECT_NE(dialect.problem().find(leavesByLink), std::string::npos);

  const Trap one(R"("path": ["people.csv", "link.csv"])");
  one.link("../secret.json", "link.csv");
  EXPECT_NE(one.problem().find(leavesByLink), std::string::npos);
}

TEST(HostileDescriptor, DoesNotTakeAFolderForItsOwnBecauseTheNameBeginsLikeIt) {
  const Trap trap(R"("path": "link.csv")");
  fs::create_directory(trap.path("inside-too"));
  fs::copy(trap.path("inside/people.csv"), trap.path("inside-too/people.csv"));
  trap.link("../inside-too/people.csv", "link.csv");
  EXPECT_NE(trap.problem().find(leavesByLink), std::string::npos);
}

TEST(HostileDescriptor, MayUseLinksInsideItsFolder) {
  const Trap trap(R"("path": "deep/link.csv")");
  trap.link("../people.csv", "deep/link.csv");
  EXPECT_EQ(trap.problem(), "no problem");
}

TEST(HostileDescriptor, IsNotFollowedInCircles) {
  const Trap trap(R"("path": "a.csv")");
  trap.link("b.csv", "a.csv");
  trap.link("a.csv", "b.csv");
  EXPECT_TRUE(
      beginsWith(trap.problem(), "inside/datapackage.json, /resources/0/path: \"path\" is \"a.csv\", which cannot"));
}

TEST(HostileDescriptor, NestsWithoutEnd) {
  for (const char* const opening : {"[", "{\"a\":"}) {
    std::string text;
    for (int depth = 0; depth < 100'000; ++depth) text += opening;
    EXPECT_NE(problemOf(text).find("stand inside each other"), std::string::npos);
  }
}

TEST(HostileDescriptor, IsLargerThanAnyDescriptor) {
  const std::string text = "{\"fields\": [\"" + std::string(largestJsonFile, 'x') + "\"]}";
  EXPECT_EQ(
      problemOf(text),
      "people.schema.json: The file has more than 16 MiB, and no descriptor is that large. Is it the right file?");
}

TEST(HostileDescriptor, HasMoreKeysThanAreEverLookedAt) {
  std::string text = R"({"fields": [{"name": "a"}])";
  for (int key = 0; key < 200'000; ++key) text += fmt::format(R"(, "key{}": {})", key, key);
  EXPECT_EQ(problemOf(text + "}"), "no problem");
  EXPECT_TRUE(beginsWith(problemOf(text + ", \"key199999\": 1}"), "people.schema.json, /key199999"));
}

TEST(HostileDescriptor, ListsMoreThanAnybodyMeans) {
  std::string entries = "\"\"";
  for (int entry = 0; entry < 1000; ++entry) entries += fmt::format(", \"x{}\"", entry);
  EXPECT_TRUE(beginsWith(problemWith(fmt::format(R"("missingValues": [{}])", entries)),
                         "/missingValues: \"missingValues\" has 1001 entries; 1000 are the most."));
  std::string attributes = "\"a\": []";
  for (int name = 0; name < 10'000; ++name) attributes += fmt::format(", \"a{}\": []", name);
  EXPECT_TRUE(beginsWith(problemWith(fmt::format(R"("statistics:variable": {{"attributes": {{{}}}}})", attributes)),
                         "/statistics:variable/attributes: \"attributes\" has 10001 names; 10000 are the most."));
}

TEST(HostileDescriptor, HasHugeNumbers) {
  EXPECT_TRUE(beginsWith(problemWith(R"("statistics:variable": {"columns": 1e308})"), "/statistics:variable/columns:"));
  EXPECT_TRUE(beginsWith(problemWith(R"("statistics:variable": {"columns": 18446744073709551615})"),
                         "/statistics:variable/columns:"));
  EXPECT_TRUE(beginsWith(problemWith(R"("statistics:variable": {"columns": -9223372036854775808})"),
                         "/statistics:variable/columns:"));
  EXPECT_TRUE(beginsWith(problemWith(R"("type": "number", "statistics:variable": {"missing": {"values": [1e-400]}})"),
                         "/statistics:variable/missing/v"));
  EXPECT_NE(problemWith(R"("constraints": {"minimum": 1e400})").find("beyond the range"), std::string::npos);
  EXPECT_TRUE(
      beginsWith(packageProblem(R"("path": "people.csv", "bytes": 123456789012345678901234567890)"), "/bytes:"));
}

TEST(HostileDescriptor, HidesWhatANameIsBehindANul) {
  EXPECT_EQ(packageProblem(R"("path": "people.csv", "schema": "a.json\u0000")"),
            "/schema: \"schema\" holds a NUL character. Remove it.");
  EXPECT_TRUE(beginsWith(packageProblem(R"("path": "people.csv", "encoding": "utf-8\u0000")"),
                         "/encoding: \"encoding\" holds a NUL charac"));
  EXPECT_EQ(fieldWith(R"("title": "a\u0000b")").variable.label, std::string("a\0b", 3)) << "a label may hold anything";
}

}  // namespace
}  // namespace workbench::data
