// Files for tests: a folder that goes away, and what stands in a data file as short texts.
#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/cells/system_missing.h"
#include "workbench/data/data_file.h"
#include "workbench/data/files/byte_source.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/input_file.h"

namespace workbench::data {

class TestFolder {
 public:
  TestFolder() {
    std::random_device random;
    folder_ = std::filesystem::temp_directory_path() / fmt::format("data-files-{:08x}{:08x}", random(), random());
    std::filesystem::create_directory(folder_);
  }
  ~TestFolder() {
    std::error_code failure;
    std::filesystem::remove_all(folder_, failure);
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  std::string path(std::string_view name) const { return (folder_ / name).string(); }
  std::string write(std::string_view name, std::string_view bytes) const {
    std::ofstream(path(name), std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return path(name);
  }
  std::string read(std::string_view name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) found.push_back(entry.path().filename());
    std::sort(found.begin(), found.end());
    return found;
  }

 private:
  std::filesystem::path folder_;
};

// What the file holds, unpacked as its name says. Requires: it can be read.
inline std::string unpackedText(const std::string& path) {
  const auto file = InputFile::open(path);
  if (!file) throw std::runtime_error(file.problem().text());
  const auto source = openByteSource(*file, fileKind(path)->packing);
  std::string text;
  std::vector<char> buffer(std::size_t{1} << 16);
  for (;;) {
    const Outcome<std::size_t> bytes = source->read(buffer.data(), buffer.size());
    if (!bytes) throw std::runtime_error(bytes.problem().text());
    if (*bytes == 0) return text;
    text.append(buffer.data(), *bytes);
  }
}

using SharedFile = std::shared_ptr<const DataFile>;

// The opened file, or null and a failed test.
inline SharedFile opened(const std::string& path, std::optional<std::string> typesWith = std::nullopt) {
  auto file = openDataFile(path, {"", std::move(typesWith)});
  if (file) return *file;
  ADD_FAILURE() << file.problem().text();
  return nullptr;
}

inline std::string cellText(const Variable& variable, const OBS* value) {
  if (variable.isNumeric()) return value->number == systemMissing ? "." : fmt::format("{}", value->number);
  std::string text(value->text, static_cast<std::size_t>(variable.width));
  return "'" + text.erase(text.find_last_not_of(' ') + 1) + "'";
}

// All cases, each a list of texts: numbers, "." for system-missing, strings in quotes.
inline std::vector<std::vector<std::string>> casesOf(const DataFile& file) {
  const Dictionary& dictionary = file.dictionary();
  const CaseLayout layout(dictionary);
  const std::unique_ptr<CaseReader> reader = file.openReader();
  CaseBlock block(layout.caseSlots);
  std::vector<std::vector<std::string>> cases;
  for (reader->fill(block); block.cases() != 0; reader->fill(block)) {
    for (std::size_t index = 0; index < block.cases(); ++index) {
      std::vector<std::string>& texts = cases.emplace_back();
      for (std::int32_t variable = 0; variable < dictionary.size(); ++variable) {
        texts.push_back(cellText(dictionary.at(variable),
                                 block.at(index) + layout.slotOfVariable[static_cast<std::size_t>(variable)]));
      }
    }
  }
  return cases;
}

// The same as one short text: values of a case parted by blanks, cases by " / ".
inline std::string shown(const SharedFile& file) {
  if (file == nullptr) return "not opened";
  std::string all;
  for (const auto& texts : casesOf(*file)) {
    if (!all.empty()) all += " / ";
    all += fmt::format("{}", fmt::join(texts, " "));
  }
  return all;
}

// Names and types of the variables: "id F2.0, name A12".
inline std::string types(const SharedFile& file) {
  if (file == nullptr) return "not opened";
  std::string all;
  for (const Variable& variable : file->dictionary().variables()) {
    std::string_view format = "?";
    for (const FormatTypeRow& row : formatTypeRows) {
      if (row.type == variable.format.type) format = row.name;
    }
    if (!all.empty()) all += ", ";
    all += fmt::format("{} {}{}", variable.name, format, variable.format.width);
    if (variable.isNumeric()) all += fmt::format(".{}", variable.format.decimals);
  }
  return all;
}

inline std::string warningsOf(const SharedFile& file) {
  return file == nullptr ? "not opened" : fmt::format("{}", fmt::join(file->warnings(), " "));
}

// What stood in the way of opening it, without the folder's name.
inline std::string problemOf(const TestFolder& folder, const std::string& path) {
  auto file = openDataFile(path, {});
  if (file) return "opened";
  std::string text = file.problem().text();
  const std::string prefix = folder.path("");
  for (std::size_t at = text.find(prefix); at != std::string::npos; at = text.find(prefix))
    text.erase(at, prefix.size());
  return text;
}

}  // namespace workbench::data
