#include "workbench/app/progress_line.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "workbench/app/progress_text.h"
#include "workbench/output/display_text.h"

namespace workbench::app {

namespace {

constexpr std::string_view eraseLine = "\r\x1b[K";
constexpr int ordinaryWidth = 80;
constexpr std::chrono::milliseconds patience{200};  // with a terminal that takes nothing

}  // namespace

ProgressLine::ProgressLine(Terminal terminal, const text::Wording& wording)
    : terminal_(std::move(terminal)), wording_(wording) {
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    // Without a thread there is no line, and nothing else is different.
  }
}

ProgressLine::~ProgressLine() {
  {
    const std::lock_guard lock(mutex_);
    mustStop_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
  eraseDrawn();
}

void ProgressLine::erase() {
  const std::lock_guard lock(mutex_);
  eraseDrawn();
}

void ProgressLine::eraseAtTheEnd() {
  if (!mutex_.try_lock_for(patience)) return;
  mustStop_ = true;
  eraseDrawn();
  mutex_.unlock();
}

void ProgressLine::run() {
  std::unique_lock lock(mutex_);
  while (!changed_.wait_for(lock, interval, [this] { return mustStop_; })) draw();
}

void ProgressLine::draw() {
  const auto view = activity().view();
  if (!view) {
    eraseDrawn();
    return;
  }
  // The last column stays free: a character there would have some terminals begin another line.
  const std::string text =
      output::shortened(output::visible(progressText(*view, Activity::Clock::now() - view->since, wording_)),
                        std::max(1, terminal_.width() - 1));
  if (text == drawn_) return;
  terminal_.write(std::string(eraseLine) + text);
  drawn_ = text;
}

void ProgressLine::eraseDrawn() {
  if (!std::exchange(drawn_, {}).empty()) terminal_.write(eraseLine);
}

ProgressLine::Terminal standardError() {
  const auto width = [] {
    winsize window{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_col > 0 ? window.ws_col : ordinaryWidth;
  };
  const auto write = [](std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t written = ::write(STDERR_FILENO, bytes.data(), bytes.size());
      if (written < 0 && errno != EINTR) return;  // nobody looks
      if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
    }
  };
  return {width, write};
}

}  // namespace workbench::app
