// ProgressLine: one line on standard error that says how far the run has come, drawn ten times a second at most and
// gone at the end.
//
// A thread of its own looks at the activity of the process and draws; who works never waits for it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "workbench/runtime/activity.h"
#include "workbench/text/wording.h"

namespace workbench::app {

class ProgressLine {
 public:
  // The terminal: how many columns it has, and how bytes get to it. Both are called on the line's own threads.
  struct Terminal {
    std::function<int()> width;
    std::function<void(std::string_view bytes)> write;
  };
  static constexpr std::chrono::milliseconds interval{100};

  // The wording outlives it.
  ProgressLine(Terminal terminal, const text::Wording& wording);
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  // Erases the line.
  ~ProgressLine();

  // Erases the line until it is drawn again, so that something else can be written there.
  void erase();
  // Erases it for good, and gives up when a terminal takes nothing: for the end of an interrupted run.
  void eraseAtTheEnd();

 private:
  void run();
  void draw();
  void eraseDrawn();

  const Terminal terminal_;
  const text::Wording& wording_;
  std::timed_mutex mutex_;  // guards all below, and the terminal
  std::condition_variable_any changed_;
  std::string drawn_;  // empty: nothing stands there
  bool mustStop_ = false;
  std::thread thread_;  // last: it runs as soon as it is made
};

// Standard error, as wide as its terminal.
ProgressLine::Terminal standardError();

}  // namespace workbench::app
