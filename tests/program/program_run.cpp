#include "tests/program/program_run.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "tests/results/results_schema.h"

extern char** environ;

namespace workbench::tests {

namespace {

constexpr const char* outName = ".standard-output";
constexpr const char* errName = ".standard-error";
constexpr const char* inName = ".standard-input";

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

ProgramFolder::ProgramFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "compare-datasets-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder for a test could be made");
  folder_ = pattern;
}

ProgramFolder::~ProgramFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

void ProgramFolder::write(const std::string& name, const std::string& content) const {
  std::ofstream file(folder_ / name, std::ios::binary);
  file << content;
  if (!file) throw std::runtime_error("a file of a test could not be written: " + name);
}

std::string ProgramFolder::read(const std::string& name) const { return contentOf(folder_ / name); }

bool ProgramFolder::has(const std::string& name) const { return std::filesystem::exists(folder_ / name); }

std::string ProgramFolder::names() const {
  std::vector<std::string> all;
  for (const auto& entry : std::filesystem::directory_iterator(folder_)) all.push_back(entry.path().filename());
  std::erase_if(all, [](const std::string& name) { return name == outName || name == errName || name == inName; });
  std::sort(all.begin(), all.end());
  std::string joined;
  for (const std::string& name : all) joined += (joined.empty() ? "" : " ") + name;
  return joined;
}

ProgramResult ProgramFolder::run(const std::vector<std::string>& arguments, const std::string& input) const {
  write(inName, input);
  std::vector<std::string> words = {PROGRAM};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addchdir_np(&actions, folder_.c_str());
  posix_spawn_file_actions_addopen(&actions, 0, inName, O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, outName, O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, errName, O_WRONLY | O_CREAT | O_TRUNC, 0600);
  pid_t child = 0;
  const int failed = posix_spawn(&child, PROGRAM, &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failed != 0) throw std::runtime_error("the program could not be started");

  int status = 0;
  waitpid(child, &status, 0);
  ProgramResult result;
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  result.out = read(outName);
  result.err = read(errName);
  expectValidDocument(arguments, result);
  return result;
}

void ProgramFolder::expectValidDocument(const std::vector<std::string>& arguments, const ProgramResult& result) const {
  const auto valueOf = [&](const std::string& option) {
    const auto found = std::find(arguments.begin(), arguments.end(), option);
    return found == arguments.end() || found + 1 == arguments.end() ? std::string() : found[1];
  };
  const std::string file = valueOf("-o");
  const bool isJson = valueOf("--format") == "json" || (valueOf("--format").empty() && file.ends_with(".json"));
  const bool isQuiet = file.empty() && std::find(arguments.begin(), arguments.end(), "-q") != arguments.end();
  // A pipe or a stream keeps nothing that could be looked at.
  const bool isKept = file.empty() || !has(file) || std::filesystem::is_regular_file(path(file));
  if (!isJson || isQuiet || !isKept) return;
  // A run that is refused before its first command writes no document; what was there stays.
  const std::string written = file.empty() ? result.out : has(file) ? read(file) : "";
  const bool isDocument = file.empty() ? !written.empty() : written.find("\"verdict\"") != std::string::npos;
  if (result.status != 2 || isDocument) expectValidResults(written);
}

nlohmann::json ProgramFolder::results(std::vector<std::string> arguments) const {
  arguments.insert(arguments.end(), {"--format", "json"});
  const ProgramResult result = run(arguments);
  auto document = nlohmann::json::parse(result.out, nullptr, false);
  if (document.is_discarded()) throw std::runtime_error("no results document: " + result.out + result.err);
  return document;
}

std::string messagesOf(const nlohmann::json& results) {
  std::string all;
  for (const auto& command : results["commands"]) {
    for (const auto& item : command["items"]) {
      if (item["item"] != "message") continue;
      const int level = item.value("level", 0);
      all += std::to_string(level) + ": " + item["message"]["text"].get<std::string>() + "\n";
    }
  }
  return all;
}

namespace {

std::string keyOf(const nlohmann::json& text) {
  for (const char* member : {"key", "name", "text"}) {
    if (text.contains(member)) return text[member].get<std::string>();
  }
  return {};
}

void collectLeaves(const nlohmann::json& categories, std::vector<std::string>& keys) {
  for (const auto& category : categories) {
    if (category.value("group", false)) {
      collectLeaves(category["categories"], keys);
    } else {
      keys.push_back(keyOf(category["title"]));
    }
  }
}

// The content of the table's cell that stands at those categories; null when there is none.
const nlohmann::json* findCell(const nlohmann::json& table, const std::vector<std::string>& categories) {
  const auto& dimensions = table["dimensions"];
  if (dimensions.size() != categories.size()) return nullptr;
  std::vector<std::vector<std::string>> leaves(dimensions.size());
  for (std::size_t index = 0; index < dimensions.size(); ++index) {
    collectLeaves(dimensions[index]["categories"], leaves[index]);
  }
  for (const auto& cell : table["cells"]) {
    bool standsThere = true;
    for (std::size_t index = 0; standsThere && index < leaves.size(); ++index) {
      standsThere = leaves[index][cell["at"][index].get<std::size_t>()] == categories[index];
    }
    if (standsThere) return &cell["content"];
  }
  return nullptr;
}

}  // namespace

std::string cellOf(const nlohmann::json& results, const std::string& tableKey,
                   const std::vector<std::string>& categories) {
  for (const auto& command : results["commands"]) {
    for (const auto& item : command["items"]) {
      if (item["item"] != "table" || item["key"] != tableKey || !item.contains("cells")) continue;
      if (const nlohmann::json* content = findCell(item, categories)) return (*content)["text"].get<std::string>();
    }
  }
  return "-";
}

}  // namespace workbench::tests
