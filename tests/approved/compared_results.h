// Comparisons whose results are looked at in every format, as the program writes them.
#pragma once

#include <string>
#include <vector>

#include "workbench/output/formats.h"

namespace workbench::tests {

struct Comparison {
  std::string name;
  std::string folder;              // of the data
  std::vector<std::string> files;  // that are needed there
  std::vector<std::string> arguments;
};

// The demo, and a small one whose names and values try to act on whatever shows them.
std::vector<Comparison> comparisons();

// The results of a comparison, run in a folder of its own, in the bytes of the format; of formats that hold one table
// the table of differing cases. Fails the test when the program does not find that something differs.
std::string resultsOf(const Comparison& comparison, const output::OutputFormat& format, const std::string& language);

// The same as text that people can look at.
std::string readable(const output::OutputFormat& format, const std::string& bytes);

// Sets a variable of the environment for as long as it lives.
class Environment {
 public:
  Environment(const char* name, const char* value);
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  ~Environment();

 private:
  const char* name_;
  bool wasSet_;
  std::string before_;
};

}  // namespace workbench::tests
