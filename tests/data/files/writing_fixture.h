// Data files written for tests, and what every kind of them has to hold.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "host/messages.h"
#include "tests/data/files/file_fixture.h"

namespace workbench::data {

// Copies all cases of one data file into another.
inline void copyCases(const std::string& from, const std::string& to) {
  const SharedFile file = opened(from);
  ASSERT_NE(file, nullptr);
  auto writer = createDataFile(to, file->dictionary(), "");
  ASSERT_TRUE(writer) << writer.problem().text();
  const auto reader = file->openReader();
  CaseBlock block(CaseLayout(file->dictionary()).caseSlots);
  for (reader->fill(block); block.cases() != 0; reader->fill(block)) {
    (*writer)->append(block.begin(), block.cases(), block.caseSlots());
  }
  (*writer)->complete();
  (*writer)->commit();
}

// A text file "a.csv" of 5000 cases with values of all kinds, some missing.
inline std::string mixedTextFile(const TestFolder& folder) {
  std::string text = "id,n,x,s,d,t,m\n";
  for (int row = 0; row < 5000; ++row) {
    text += row % 7 == 0
                ? fmt::format("{},,,,,,\n", row)
                : fmt::format("{},{},{},name{},2026-01-{:02},10:{:02}:30.25,2026-01-{:02}T00:00:{:02}\n", row,
                              row % 100 - 50, row * 0.25, row % 13, row % 28 + 1, row % 60, row % 28 + 1, row % 60);
  }
  return folder.write("a.csv", text);
}

// What the call throws.
template <class Call>
std::string messageOf(Call call) {
  try {
    call();
  } catch (const ErrorText& error) {
    return error.GetText();
  }
  return "nothing was thrown";
}

}  // namespace workbench::data
