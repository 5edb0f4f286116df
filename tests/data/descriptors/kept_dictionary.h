// The law that a kind of file has to keep: every dictionary that is written with no case is read back as it was.
#pragma once

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <string>
#include <vector>

#include "tests/data/descriptors/random_dictionary.h"
#include "tests/data/files/file_fixture.h"

namespace workbench::data {

// Written as this file, which makes just these files.
inline void checkThatDictionariesAreKept(const std::string& fileName, const std::vector<std::string>& made) {
  EXPECT_TRUE(rc::check([&] {
    const Dictionary dictionary = someDictionary();
    const TestFolder folder;
    auto writer = createDataFile(folder.path(fileName), dictionary, "");
    if (!writer) RC_FAIL(writer.problem().text());
    (*writer)->complete();
    (*writer)->commit();
    const auto file = openDataFile(folder.path(fileName), {});
    if (!file) RC_FAIL(file.problem().text());
    const Dictionary& read = (*file)->dictionary();
    RC_ASSERT(read.size() == dictionary.size());
    for (std::int32_t index = 0; index < dictionary.size(); ++index) {
      const std::string differs = difference(dictionary.at(index), read.at(index));
      if (!differs.empty()) RC_FAIL(differs + " of " + dictionary.at(index).name);
    }
    RC_ASSERT(read.filter == dictionary.filter);
    RC_ASSERT(read.weight == dictionary.weight);
    RC_ASSERT(read.split == dictionary.split);
    RC_ASSERT(read.attributes == dictionary.attributes);
    RC_ASSERT((*file)->caseCount() == 0);
    RC_ASSERT(folder.names() == made);
  }));
}

}  // namespace workbench::data
