#include "tests/program/watched_program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cinttypes>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace workbench::tests {

namespace {

constexpr int patience = 60'000;  // milliseconds

// What stands between fork and exec does nothing that allocates.
[[noreturn]] void becomeProgram(const std::string& folder, std::vector<char*>& words) {
  if (::chdir(folder.c_str()) == 0) ::execv(PROGRAM, words.data());
  ::_exit(127);
}

std::vector<std::string> wordsOf(const std::vector<std::string>& arguments) {
  std::vector<std::string> words = {PROGRAM};
  words.insert(words.end(), arguments.begin(), arguments.end());
  return words;
}

std::vector<char*> pointersOf(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

ProgramOnTerminal::ProgramOnTerminal(const ProgramFolder& folder, const std::vector<std::string>& arguments) {
  start(folder, arguments, true);
}

ProgramOnTerminal::ProgramOnTerminal(const ProgramFolder& folder, const std::vector<std::string>& arguments,
                                     WithoutTerminal) {
  start(folder, arguments, false);
}

ProgramOnTerminal::~ProgramOnTerminal() {
  if (child_ > 0) {
    ::kill(child_, SIGKILL);
    ::waitpid(child_, nullptr, 0);
  }
  ::close(terminal_);
  ::close(programsEnd_);
}

void ProgramOnTerminal::start(const ProgramFolder& folder, const std::vector<std::string>& arguments,
                              bool hasTerminal) {
  if (::openpty(&terminal_, &programsEnd_, nullptr, nullptr, nullptr) != 0) throw std::runtime_error("no terminal");
  std::vector<std::string> words = wordsOf(arguments);
  std::vector<char*> pointers = pointersOf(words);
  const std::string place = folder.path("").string();
  child_ = ::fork();
  if (child_ != 0) return;
  ::setsid();
  if (hasTerminal) ::ioctl(programsEnd_, TIOCSCTTY, 0);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(programsEnd_, stream);
  becomeProgram(place, pointers);
}

void ProgramOnTerminal::waitFor(const std::string& text) {
  for (;;) {
    const std::size_t found = shown_.find(text, waitedFor_);
    if (found != std::string::npos) {
      waitedFor_ = found + text.size();
      return;
    }
    if (!takeMore()) {
      ADD_FAILURE() << "\"" << text << "\" was not shown: " << shown_;
      return;
    }
  }
}

// False when nothing comes any more.
bool ProgramOnTerminal::takeMore() {
  pollfd waiting{terminal_, POLLIN, 0};
  for (int waited = 0; waited < patience; waited += 50) {
    if (::poll(&waiting, 1, 50) > 0) {
      std::array<char, 4096> bytes;
      const ssize_t count = ::read(terminal_, bytes.data(), bytes.size());
      if (count <= 0) return false;
      shown_.append(bytes.data(), static_cast<std::size_t>(count));
      return true;
    }
    siginfo_t ended{};
    if (::waitid(P_PID, static_cast<id_t>(child_), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 && ended.si_pid != 0) {
      return ::poll(&waiting, 1, 0) > 0;
    }
  }
  return false;
}

void ProgramOnTerminal::type(const std::string& keys) {
  if (::write(terminal_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
    throw std::runtime_error("the terminal takes no keys");
  }
}

void ProgramOnTerminal::sendSignal(int signal) const { ::kill(child_, signal); }

bool ProgramOnTerminal::isEchoing() const {
  termios modes{};
  return ::tcgetattr(programsEnd_, &modes) == 0 && (modes.c_lflag & ECHO) != 0;
}

std::string ProgramOnTerminal::commandLine() const {
  std::ifstream file("/proc/" + std::to_string(child_) + "/cmdline", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

int ProgramOnTerminal::statusAtEnd() {
  while (takeMore()) continue;
  int status = 0;
  ::waitpid(child_, &status, 0);
  child_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

StandingProgram::StandingProgram(const ProgramFolder& folder, const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  output_ = ends[0];
  std::vector<std::string> words = wordsOf(arguments);
  std::vector<char*> pointers = pointersOf(words);
  const std::string place = folder.path("").string();
  child_ = ::fork();
  if (child_ == 0) {
    ::dup2(ends[1], STDOUT_FILENO);
    becomeProgram(place, pointers);
  }
  ::close(ends[1]);
}

StandingProgram::~StandingProgram() {
  ::kill(child_, SIGKILL);
  ::waitpid(child_, nullptr, 0);
  ::close(output_);
}

void StandingProgram::waitUntilResultsAreWritten() const {
  const int room = ::fcntl(output_, F_GETPIPE_SZ);
  for (int waited = 0; waited < patience; waited += 20) {
    int written = 0;
    ::ioctl(output_, FIONREAD, &written);
    if (written >= room) return;
    ::usleep(20'000);
  }
  ADD_FAILURE() << "the program did not write as much as was expected";
}

bool StandingProgram::memoryHolds(const std::string& text) const {
  const std::string process = "/proc/" + std::to_string(child_);
  std::ifstream maps(process + "/maps");
  const int memory = ::open((process + "/mem").c_str(), O_RDONLY | O_CLOEXEC);
  if (memory < 0) throw std::runtime_error("the program's memory cannot be read");
  bool isFound = false;
  for (std::string line; !isFound && std::getline(maps, line);) {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    char rights[5] = {};
    if (std::sscanf(line.c_str(), "%" SCNx64 "-%" SCNx64 " %4s", &begin, &end, rights) != 3 || rights[1] != 'w')
      continue;
    std::string content(end - begin, '\0');
    const ssize_t bytes = ::pread(memory, content.data(), content.size(), static_cast<off_t>(begin));
    if (bytes > 0) isFound = content.substr(0, static_cast<std::size_t>(bytes)).find(text) != std::string::npos;
  }
  ::close(memory);
  return isFound;
}

}  // namespace workbench::tests
