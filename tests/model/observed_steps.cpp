#include "tests/model/observed_steps.h"

#include <map>

namespace workbench::tests::model {

namespace {

// What stands between two marks of a line; empty when one of them is not there.
std::string between(const std::string& line, const std::string& before, const std::string& behind) {
  const std::size_t begin = line.find(before);
  if (begin == std::string::npos) return "";
  const std::size_t end = line.find(behind, begin + before.size());
  return end == std::string::npos ? "" : line.substr(begin + before.size(), end - begin - before.size());
}

// The object on which a line's call is made: "BpPivotTable#1" of "BpPivotTable#1.Destroy()".
std::string callerOf(const std::string& line) { return line.substr(0, line.find('.')); }

// Reads a journal line by line and remembers which object stands for what.
class JournalReader {
 public:
  std::vector<std::string> read(const std::vector<std::string>& journal) {
    for (const std::string& line : journal) readLine(line);
    return steps_;
  }

 private:
  void readLine(const std::string& line) {
    const std::string caller = callerOf(line);
    const auto calls = [&](const char* call) { return line.find(call, caller.size()) == caller.size(); };
    if (line.find(" = BpProcedure#1.PivotTable(") != std::string::npos) {
      const std::string table = line.substr(0, line.find(' '));
      names_[table] = between(line, "PivotTable(\"", "\"");
      add("open " + names_[table]);
    } else if (calls(".Destroy()")) {
      add("destroy " + names_[caller]);
    } else if (line.starts_with("BpError(") || line.starts_with("BACKENDERROR(")) {
      add("message");
    } else if (line.starts_with("AddNotesWithGroup(")) {
      add("note " + between(line, "(", ","));
    } else if (line.starts_with("ServerDataManager.GetDataSet(")) {
      add("look up comparison");
    } else if (line.find("SystemFileDataSource.GetSystemFile(") != std::string::npos) {
      add("open comparison file");
    } else if (calls(".CreateCaseIterator(")) {
      const std::string iterator = line.substr(line.find("-> ") + 3);
      names_[iterator] = caller.starts_with("ProcedureDataSource") ? "active" : "comparison";
    } else if (calls(".NextCase()")) {
      add("read " + names_[caller] + " " + line.substr(line.find("-> ") + 3));
    } else {
      readOutputLine(line, caller);
    }
  }

  // The matched cases are what the second UserCaseFileSpec of a run names, the mismatched cases what the third does.
  void readOutputLine(const std::string& line, const std::string& caller) {
    const auto calls = [&](const char* call) { return line.find(call, caller.size()) == caller.size(); };
    if (line.find(" = UserOutputCaseFile(") != std::string::npos) {
      const std::string output = line.substr(0, line.find(' '));
      names_[output] = line.find("UserCaseFileSpec#2)") != std::string::npos ? "matched" : "mismatched";
      add("open " + names_[output]);
    } else if (calls(".GetDataSource() ->")) {
      names_[line.substr(line.find("-> ") + 3)] = names_[caller];
    } else if (caller.starts_with("VRIX_DataSource#") && calls(".MakeVariable(")) {
      add("make " + between(line, ".MakeVariable(VRIX_Variable(", "), index)") + " in " + names_[caller]);
    } else if (calls(".CommitDictionary()")) {
      add("commit " + names_[caller]);
    } else if (calls(".WriteCase(")) {
      add("write " + names_[caller]);
    } else if (calls(".Close()")) {
      add("close " + names_[caller]);
    }
  }

  void add(const std::string& step) { steps_.push_back(step); }

  std::map<std::string, std::string> names_;
  std::vector<std::string> steps_;
};

}  // namespace

std::vector<std::string> observedSteps(const std::vector<std::string>& journal) {
  return JournalReader().read(journal);
}

}  // namespace workbench::tests::model
