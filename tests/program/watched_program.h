// The program under the eyes of a test: on a terminal, or standing still with its memory open.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/program/program_run.h"

namespace workbench::tests {

struct WithoutTerminal {};

// Started in the folder, on a terminal of its own: what is typed there comes to it, and what it shows is gathered.
class ProgramOnTerminal {
 public:
  ProgramOnTerminal(const ProgramFolder& folder, const std::vector<std::string>& arguments);
  // In a session without a terminal, its output shown all the same.
  ProgramOnTerminal(const ProgramFolder& folder, const std::vector<std::string>& arguments, WithoutTerminal);
  ~ProgramOnTerminal();
  ProgramOnTerminal(const ProgramOnTerminal&) = delete;
  ProgramOnTerminal& operator=(const ProgramOnTerminal&) = delete;

  // Until the text was shown, behind what was waited for before; fails the test when the program ends without it.
  void waitFor(const std::string& text);
  void type(const std::string& keys);
  void sendSignal(int signal) const;
  bool isEchoing() const;
  std::string commandLine() const;
  int statusAtEnd();
  const std::string& shown() const { return shown_; }

 private:
  void start(const ProgramFolder& folder, const std::vector<std::string>& arguments, bool hasTerminal);
  bool takeMore();

  int terminal_ = -1;
  int programsEnd_ = -1;  // kept open, so that the terminal outlives the program
  pid_t child_ = -1;
  std::string shown_;
  std::size_t waitedFor_ = 0;
};

// Started in the folder; nobody reads what it writes to its standard output.
class StandingProgram {
 public:
  StandingProgram(const ProgramFolder& folder, const std::vector<std::string>& arguments);
  ~StandingProgram();
  StandingProgram(const StandingProgram&) = delete;
  StandingProgram& operator=(const StandingProgram&) = delete;

  // Until as much was written as fits. Requires: it writes more than that.
  void waitUntilResultsAreWritten() const;
  bool memoryHolds(const std::string& text) const;

 private:
  int output_ = -1;
  pid_t child_ = -1;
};

}  // namespace workbench::tests
