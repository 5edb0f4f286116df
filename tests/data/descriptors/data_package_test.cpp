// Packages and their resources: what has to be there, which files they may name, how a file is read.
#include <gtest/gtest.h>

#include "tests/data/descriptors/package_fixture.h"

namespace workbench::data {
namespace {

TEST(DataPackage, NeedsResourcesWithNamesOfTheirOwn) {
  EXPECT_EQ(PackageFolder("{}").problem(), "datapackage.json: The descriptor has no \"resources\". Add \"resources\".");
  EXPECT_EQ(PackageFolder(packageOf("")).problem(),
            "datapackage.json, /resources: \"resources\" lists no resource. List at least one.");
  EXPECT_EQ(PackageFolder(packageOf(R"({"path": "people.csv"})")).problem(),
            "datapackage.json, /resources/0: An entry of \"resources\" has no \"name\". Add \"name\".");
  EXPECT_EQ(
      PackageFolder(packageOf(R"({"name": "a", "path": "a.csv"}, {"name": "a", "path": "b.csv"})")).problem(),
      "datapackage.json, /resources/1/name: \"name\" is \"a\", as that of another resource is. Give each resource "
      "a name of its own.");
}

TEST(DataPackage, ChecksTheFormOfAllResources) {
  const PackageFolder package(
      packageOf(R"({"name": "people", "path": "people.csv"}, {"name": "b", "path": "../b.csv"})"));
  EXPECT_TRUE(beginsWith(package.problem("people"), "datapackage.json, /resources/1/path: \"pa"));
}

TEST(DataPackage, LeavesToTheirUserWhatOtherResourcesCannotBeReadFor) {
  const PackageFolder package(packageOf(
      R"({"name": "far", "path": "https://example.org/a.csv", "type": "table"}, {"name": "inline", "data": [["a"], [1]]},
         {"name": "map", "path": "map.png", "type": 5, "schema": "none.json"}, {"name": "people", "path": "people.csv"})"));
  EXPECT_EQ(package.problem("people"), "no problem");
  EXPECT_EQ(package.problem("far"),
            "datapackage.json, /resources/0/path: \"path\" is an address, and nothing is fetched from elsewhere. Fetch "
            "the file yourself, put it beside the descriptor and name it by its path there.");
  EXPECT_EQ(package.problem("inline"),
            "datapackage.json, /resources/1/data: \"data\" holds the data themselves, and data are read from files. "
            "Write them into a CSV file beside the descriptor and name it by \"path\".");
  EXPECT_TRUE(beginsWith(package.problem("map"), "datapackage.json, /resources/2/type:"));
}

TEST(Resource, HasAPathOrDataAndNotBoth) {
  EXPECT_EQ(packageProblem(R"("title": "x")"), ": The resource has no \"path\". Name its file.");
  EXPECT_EQ(packageProblem(R"("path": "people.csv", "data": [])"),
            ": The resource has both \"path\" and \"data\". Leave one of them out.");
  EXPECT_EQ(packageProblem(R"("path": [])"), "/path: \"path\" lists no file. Name at least one.");
  EXPECT_TRUE(beginsWith(packageProblem(R"("path": {"a": 1})"), "/path:"));
}

TEST(Resource, MayHaveSeveralFiles) {
  const PackageFolder package(packageWith(R"("path": ["people.csv", "more/people.csv"], "bytes": 7)"));
  EXPECT_EQ(package.dataPaths(), "people.csv more/people.csv");
  EXPECT_EQ(package.table().bytes, std::nullopt) << "it is no size of one file";
  EXPECT_EQ(packageProblem(R"("path": ["people.csv", "https://example.org/a.csv"])"),
            "/path/1: Addresses and files stand in the same list. List files only.");
  EXPECT_TRUE(beginsWith(packageProblem(R"("path": ["people.csv", "../a.csv"])"), "/path/1:"));
}

TEST(Resource, MayBeOfAnEarlierVersion) {
  EXPECT_EQ(PackageFolder(packageWith(R"("url": "people.csv")")).dataPaths(), "people.csv");
  EXPECT_EQ(PackageFolder(packageWith(R"("path": "people.csv", "url": "https://example.org")")).dataPaths(),
            "people.csv");
  EXPECT_EQ(PackageFolder(packageWith(R"("path": "people.txt", "profile": "tabular-data-resource")")).dataPaths(),
            "people.txt");
  EXPECT_TRUE(beginsWith(packageProblem(R"("url": "https://example.org/a.csv")"), "/url:"));
}

TEST(Resource, NamesNoFileOutsideItsFolder) {
  const std::string remedy = " Name a file in the descriptor's folder or below it.";
  const auto refused = [](std::string_view path) { return packageProblem(fmt::format(R"("path": "{}")", path)); };
  EXPECT_EQ(refused("/etc/passwd"), "/path: \"path\" is the absolute path \"/etc/passwd\"." + remedy);
  for (const char* const path : {"../a.csv", "d/../a.csv", "d/..", "d/../../a.csv", ".."}) {
    EXPECT_EQ(refused(path),
              fmt::format("/path: \"path\" is \"{}\", which leads out of its folder by \"..\".{}", path, remedy));
  }
  for (const char* const path : {".a.csv", "d/.a.csv", ".d/a.csv", "./a.csv", "d/./a.csv", "..."}) {
    EXPECT_EQ(
        refused(path),
        fmt::format("/path: \"path\" is \"{}\", and none of its parts may begin with a dot, as hidden files do.{}",
                    path, remedy));
  }
  for (const char* const path : {"file:///a.csv", "FILE:a.csv", "s3://a/b.csv", "d/http://a.csv"}) {
    EXPECT_EQ(refused(path),
              fmt::format("/path: \"path\" is \"{}\", an address of a kind that is not allowed.{}", path, remedy));
  }
  EXPECT_EQ(refused("~/a.csv"), "/path: \"path\" is \"~/a.csv\", and no path may begin with \"~\"." + remedy);
  EXPECT_TRUE(beginsWith(refused("d\\\\a.csv"), "/path: \"path\" is \"d\\a.csv\"; a backslash i"));
  EXPECT_TRUE(beginsWith(refused(""), "/path: \"path\" is empty."));
  EXPECT_TRUE(beginsWith(refused("d//a.csv"), "/path: \"path\" is \"d//a.csv\", which has an empty par"));
  EXPECT_TRUE(beginsWith(refused("d/"), "/path: \"path\" is \"d/\", which has an empty pa"));
  EXPECT_EQ(refused("people.csv\\u0000.txt"), "/path: \"path\" holds a NUL character. Remove it.");
}

TEST(Resource, IsTheOnlyTableWhereNoneIsNamed) {
  const PackageFolder one(packageOf(R"({"name": "map", "path": "map.png"}, {"name": "people", "path": "people.csv"})"));
  EXPECT_EQ(one.dataPaths(), "people.csv");
  const PackageFolder two(packageOf(
      R"({"name": "a", "path": "a.csv"}, {"name": "b", "path": "b", "type": "table"}, {"name": "c", "path": "c.png"},
         {"name": "d", "path": "d", "schema": {}}, {"name": "e", "path": "e.csv", "type": "file"})"));
  EXPECT_EQ(two.problem(), "datapackage.json: The package has 3 tables. Name one of \"a\", \"b\" and \"d\".");
  const PackageFolder none(packageOf(R"({"name": "map", "path": "map.png"})"));
  EXPECT_EQ(none.problem(), "datapackage.json: None of the package's resources is a table. The package has \"map\".");
  EXPECT_EQ(one.problem("poeple"),
            "datapackage.json: No resource has the name \"poeple\". The package has \"map\" and \"people\".");
}

TEST(Resource, SaysHowItsFileIsRead) {
  const DescribedTable table = packageTable(R"("path": "people.csv", "type": "table", "format": "csv",
      "mediatype": "text/csv", "encoding": "iso-8859-1", "bytes": 17, "hash": "sha256:0aF", "compression": "gz",
      "dialect": {"delimiter": ";"}, "schema": {"fields": [{"name": "a"}]})");
  EXPECT_EQ(table.dialect.encoding, "iso-8859-1");
  EXPECT_EQ(table.bytes, 17);
  EXPECT_EQ(table.packing, Packing::gzip);
  EXPECT_EQ(table.dialect.delimiter, ";");
  EXPECT_EQ(table.fields.size(), 1U);
}

TEST(Resource, LeavesOpenWhatItDoesNotSay) {
  const DescribedTable table = packageTable(R"("path": "people.csv")");
  EXPECT_EQ(table.dialect, TableDialect{});
  EXPECT_EQ(table.packing, std::nullopt);
  EXPECT_EQ(table.bytes, std::nullopt);
  EXPECT_TRUE(table.fields.empty());
}

TEST(Resource, HasADelimiterWhereTheNameOfItsFileSaysNone) {
  const auto delimiter = [](std::string_view properties) { return packageTable(properties).dialect.delimiter; };
  EXPECT_EQ(delimiter(R"("path": "people.txt")"), ",");
  EXPECT_EQ(delimiter(R"("path": "people.txt", "format": "tsv")"), "\t");
  EXPECT_EQ(delimiter(R"("path": "people.txt", "mediatype": "text/tab-separated-values")"), "\t");
  EXPECT_EQ(delimiter(R"("path": "people.txt", "format": "tsv", "dialect": {"delimiter": "|"})"), "|");
  EXPECT_EQ(delimiter(R"("path": "people.tsv")"), std::nullopt);
}

TEST(Resource, IsUtf8UnlessItSaysOtherwise) {
  for (const char* const name : {"utf-8", "UTF-8", "utf8"}) {
    EXPECT_EQ(packageTable(fmt::format(R"("path": "people.csv", "encoding": "{}")", name)).dialect.encoding, "");
  }
  EXPECT_EQ(packageProblem(R"("path": "people.csv", "encoding": "")"),
            "/encoding: \"encoding\" is empty. Write the name of an encoding such as \"utf-8\", or leave it out.");
}

TEST(Resource, RefusesWhatIsNoTextTable) {
  EXPECT_EQ(packageProblem(R"("path": "people.csv", "type": "json")"),
            "/type: \"type\" is \"json\", and has to be \"table\". Write this word.");
  EXPECT_EQ(
      packageProblem(R"("path": "people.xlsx", "format": "xlsx")"),
      "/format: \"format\" is \"xlsx\", and only text tables and Parquet files are read. Convert the file to \"csv\".");
  EXPECT_EQ(packageProblem(R"("path": "people.csv.zip", "compression": "zip")"),
            "/compression: \"compression\" is \"zip\", and archives are not read. Pack the file with gzip instead.");
  EXPECT_TRUE(beginsWith(packageProblem(R"("path": "people.csv", "compression": "gzip")"), "/compression:"));
}

TEST(Resource, ChecksTheFormOfWhatItTellsOfItsFile) {
  for (const char* const hash : {"", "0123456789abcdef0123456789ABCDEF", "sha256:00", "own:algo:1f"}) {
    EXPECT_EQ(packageProblem(fmt::format(R"("path": "people.csv", "hash": "{}")", hash)), "no problem") << hash;
  }
  for (const char* const hash : {"0123", "sha256:", ":00", "sha256:xyz", "g123456789abcdef0123456789ABCDEF"}) {
    EXPECT_TRUE(beginsWith(packageProblem(fmt::format(R"("path": "people.csv", "hash": "{}")", hash)), "/hash:"))
        << hash;
  }
  for (const char* const type : {"csv", "/csv", "text/", ""}) {
    EXPECT_TRUE(
        beginsWith(packageProblem(fmt::format(R"("path": "people.csv", "mediatype": "{}")", type)), "/mediatype:"));
  }
  EXPECT_TRUE(beginsWith(packageProblem(R"("path": "people.csv", "bytes": -1)"), "/bytes:"));
}

TEST(Resource, MayNameItsDialectAndSchemaByTheirFiles) {
  const PackageFolder package(
      packageWith(R"("path": "people.csv", "dialect": "about/dialect.json", "schema": "about/schema.json")"));
  std::filesystem::create_directory(package.path("about"));
  package.folder().write("about/dialect.json", R"({"$schema": "x", "delimiter": ";"})");
  package.folder().write("about/schema.json", R"({"fields": [{"name": "a", "type": "integer"}]})");
  EXPECT_EQ(package.table().dialect.delimiter, ";");
  EXPECT_EQ(package.table().fields.size(), 1U);
  EXPECT_EQ(withoutFolder(package.table().descriptorPath, package.folder()), "datapackage.json");
  package.folder().write("about/schema.json", R"({"fields": [{"name": "a", "type": "intger"}]})");
  EXPECT_TRUE(beginsWith(package.problem(), "about/schema.json, /fields/0/type:"));
}

TEST(Resource, NamesNoDialectOrSchemaElsewhere) {
  EXPECT_TRUE(beginsWith(packageProblem(R"("path": "people.csv", "schema": "../schema.json")"),
                         "/schema: \"schema\" is \"../schema.json\", which l"));
  EXPECT_TRUE(beginsWith(packageProblem(R"("path": "people.csv", "dialect": "https://example.org/d.json")"),
                         "/dialect: \"dialect\" is an address, and nothi"));
  EXPECT_EQ(packageProblem(R"("path": "people.csv", "schema": "none.json")"),
            "none.json: There is no such file. A descriptor has to be a JSON file that can be read.");
  EXPECT_TRUE(beginsWith(packageProblem(R"("path": "people.csv", "schema": ["a"])"), "/schema:"));
}

TEST(Resource, SaysWhatItsDatasetIs) {
  const std::string schema = R"("schema": {"fields": [{"name": "a", "type": "number"}]})";
  EXPECT_EQ(
      packageTable(fmt::format(R"("path": "people.csv", {}, "statistics:dataset": {{"weight": "a"}})", schema)).weight,
      "a");
  EXPECT_TRUE(beginsWith(
      packageProblem(fmt::format(R"("path": "people.csv", {}, "statistics:dataset": {{"weight": "b"}})", schema)),
      "/statistics:dataset/weight:"));
  EXPECT_EQ(packageTable(R"("path": "people.csv", "statistics:dataset": {"weight": "b"})").weight, "b")
      << "without fields there is nothing to hold it against yet";
  EXPECT_EQ(packageProblem(R"("path": "people.csv", "statistics:dataset": {"weight": "a"},
                              "schema": {"fields": [{"name": "a", "type": "number"}], "statistics:dataset": {}})"),
            "/statistics:dataset: \"statistics:dataset\" stands in the resource and in its schema. Leave it to one of "
            "them.");
}

}  // namespace
}  // namespace workbench::data
