// A data package in a folder that goes away.
#pragma once

#include <string>
#include <string_view>

#include "tests/data/descriptors/descriptor_fixture.h"

namespace workbench::data {

class PackageFolder {
 public:
  explicit PackageFolder(std::string_view package) {
    folder_.write("people.csv", "a\n1\n");
    folder_.write("datapackage.json", package);
  }

  const TestFolder& folder() const { return folder_; }
  std::string path(std::string_view name) const { return folder_.path(name); }

  Outcome<DescribedTable> resource(const std::string& name = "") const {
    return describedResource(path("datapackage.json"), name);
  }
  DescribedTable table(const std::string& name = "") const {
    const Outcome<DescribedTable> described = resource(name);
    if (described) return *described;
    ADD_FAILURE() << described.problem().text();
    return {};
  }
  std::string problem(const std::string& name = "") const {
    const Outcome<DescribedTable> described = resource(name);
    return described ? "no problem" : withoutFolder(described.problem().text(), folder_);
  }
  // Of the table's files, without the folder.
  std::string dataPaths(const std::string& name = "") const {
    return withoutFolder(fmt::format("{}", fmt::join(table(name).dataPaths, " ")), folder_);
  }

 private:
  TestFolder folder_;
};

inline std::string packageOf(std::string_view resources) { return fmt::format(R"({{"resources": [{}]}})", resources); }
// One resource of the name "people" with these properties.
inline std::string packageWith(std::string_view properties) {
  return packageOf(fmt::format(R"({{"name": "people", {}}})", properties));
}
inline std::string packageProblem(std::string_view properties) {
  const std::string text = PackageFolder(packageWith(properties)).problem("people");
  const std::string prefix = "datapackage.json, /resources/0";
  return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}
inline DescribedTable packageTable(std::string_view properties) {
  return PackageFolder(packageWith(properties)).table("people");
}

}  // namespace workbench::data
