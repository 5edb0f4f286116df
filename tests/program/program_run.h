// Runs the program as a user does, in a folder of its own that is removed afterwards.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace workbench::tests {

struct ProgramResult {
  int status = -1;  // of the process; 128 + signal when it was ended by one
  std::string out;
  std::string err;
};

class ProgramFolder {
 public:
  ProgramFolder();
  ~ProgramFolder();
  ProgramFolder(const ProgramFolder&) = delete;
  ProgramFolder& operator=(const ProgramFolder&) = delete;

  // Writes a file of the folder.
  void write(const std::string& name, const std::string& content) const;
  std::string read(const std::string& name) const;
  bool has(const std::string& name) const;
  // The names of all that is in the folder, sorted, joined with " ".
  std::string names() const;
  std::filesystem::path path(const std::string& name) const { return folder_ / name; }

  // compare-datasets with these arguments, started in the folder. Fails the test when the results are JSON and no valid
  // document.
  ProgramResult run(const std::vector<std::string>& arguments, const std::string& input = "") const;
  // The results document of the same command; a run with --format json.
  nlohmann::json results(std::vector<std::string> arguments) const;

 private:
  void expectValidDocument(const std::vector<std::string>& arguments, const ProgramResult& result) const;

  std::filesystem::path folder_;
};

// The texts of all messages of a results document, one per line, as "level: text".
std::string messagesOf(const nlohmann::json& results);

// A cell of the first table of that key (which = 0) by the keys of its categories, in the order of the dimensions; its
// text as people see it, or "-".
std::string cellOf(const nlohmann::json& results, const std::string& tableKey,
                   const std::vector<std::string>& categories);

}  // namespace workbench::tests
