// The progress line: what it says, how often it is drawn, and that nothing of it stays.
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <string>
#include <thread>

#include "workbench/app/progress_line.h"
#include "workbench/app/progress_text.h"
#include "workbench/runtime/activity.h"

namespace workbench::app {
namespace {

using Unit = Activity::Unit;
using std::chrono::milliseconds;

const text::Wording& wordingOf(const std::string& language) {
  static const auto english = std::move(*text::Wording::load("en"));
  static const auto german = std::move(*text::Wording::load("de"));
  return language == "de" ? *german : *english;
}

std::string textOf(std::int64_t done, std::int64_t expected, double seconds, Unit unit = Unit::cases,
                   const std::string& language = "en") {
  return progressText({"Sorting", unit, done, expected, {}}, std::chrono::duration<double>(seconds),
                      wordingOf(language));
}

TEST(ProgressText, TellsShareSpeedAndTimeLeft) {
  EXPECT_EQ(textOf(300'000, 1'200'000, 2), "Sorting: 25%, 150 k cases/s, 0:06 left");
  EXPECT_EQ(textOf(3'000'000, 9'000'000, 1, Unit::bytes), "Sorting: 33%, 3.00 MB/s, 0:02 left");
  EXPECT_EQ(textOf(1, 4000, 1), "Sorting: 0%, 1 cases/s, 1:06:39 left");
  EXPECT_EQ(textOf(12, 24, 1, Unit::cases, "de"), "Sorting: 50\u00a0%, 12 F\u00e4lle/s, noch 0:01");
  EXPECT_EQ(textOf(3'000'000, 9'000'000, 1, Unit::bytes, "de"), "Sorting: 33\u00a0%, 3,00 MB/s, noch 0:02");
}

TEST(ProgressText, LeavesOutWhatIsNotKnown) {
  EXPECT_EQ(textOf(0, 0, 5), "Sorting");
  EXPECT_EQ(textOf(500, 0, 1), "Sorting: 500 cases/s");
  EXPECT_EQ(textOf(500, 1000, 0.1), "Sorting: 50%");
  EXPECT_EQ(textOf(1500, 1000, 1), "Sorting: 1.50 k cases/s");
  EXPECT_EQ(textOf(1000, 1000, 1), "Sorting: 100%, 1.00 k cases/s");
}

TEST(Activity, CountsForTheInnermostStageAndGoesOnWithTheOuterOne) {
  EXPECT_FALSE(activity().view());
  const Activity::Stage outer("outer", Unit::cases);
  activity().expect(Unit::cases, 10);
  activity().add(Unit::cases, 4);
  {
    const Activity::Stage inner("inner", Unit::cases);
    activity().add(Unit::cases, 100);
    EXPECT_EQ(activity().view()->name, "inner");
    EXPECT_EQ(activity().view()->done, 100);
    EXPECT_EQ(activity().view()->expected, 0);
  }
  activity().add(Unit::bytes, 7);
  activity().add(Unit::cases, 1);
  EXPECT_EQ(activity().view()->name, "outer");
  EXPECT_EQ(activity().view()->done, 5);
  EXPECT_EQ(activity().view()->expected, 10);
}

// A terminal that keeps what it is sent.
struct KeptTerminal {
  std::mutex mutex;
  std::string all;
  int writes = 0;
  int columns = 80;

  ProgressLine::Terminal terminal() {
    return {[this] { return columns; },
            [this](std::string_view bytes) {
              const std::lock_guard lock(mutex);
              all += bytes;
              ++writes;
            }};
  }
  std::string shown() {
    const std::lock_guard lock(mutex);
    return all;
  }
};

constexpr std::string_view eraseLine = "\r\x1b[K";

void waitFor(KeptTerminal& terminal, std::string_view part) {
  for (int times = 0; times < 500 && terminal.shown().find(part) == std::string::npos; ++times) {
    std::this_thread::sleep_for(milliseconds(10));
  }
}

TEST(ProgressLine, IsDrawnTenTimesASecondAtMostAndErasedAtTheEnd) {
  KeptTerminal terminal;
  const auto start = Activity::Clock::now();
  {
    const Activity::Stage stage("Sorting", Unit::cases);
    activity().expect(Unit::cases, 1'000'000);
    ProgressLine line(terminal.terminal(), wordingOf("en"));
    for (int step = 0; step < 60; ++step) {
      activity().add(Unit::cases, 10'000);
      std::this_thread::sleep_for(milliseconds(5));
    }
    waitFor(terminal, "Sorting");
  }
  const auto intervals = (Activity::Clock::now() - start) / ProgressLine::interval;
  EXPECT_LE(terminal.writes, intervals + 1);
  EXPECT_NE(terminal.all.find("\r\x1b[KSorting: "), std::string::npos) << terminal.all;
  EXPECT_TRUE(terminal.all.ends_with(eraseLine)) << terminal.all;
}

TEST(ProgressLine, WritesNothingWhenNothingIsDone) {
  KeptTerminal terminal;
  {
    ProgressLine line(terminal.terminal(), wordingOf("en"));
    std::this_thread::sleep_for(ProgressLine::interval * 3);
  }
  EXPECT_EQ(terminal.all, "");
}

TEST(ProgressLine, IsShortenedToTheTerminalAndShowsNoControlCharacter) {
  KeptTerminal terminal;
  terminal.columns = 12;
  {
    const Activity::Stage stage("Reading types of \x1b[2J a long name", Unit::bytes);
    ProgressLine line(terminal.terminal(), wordingOf("en"));
    waitFor(terminal, "Reading");
  }
  EXPECT_EQ(terminal.all, std::string(eraseLine) + "Reading ty\u2026" + std::string(eraseLine));
}

TEST(ProgressLine, MakesRoomForOtherLines) {
  KeptTerminal terminal;
  const Activity::Stage stage("Sorting", Unit::cases);
  ProgressLine line(terminal.terminal(), wordingOf("en"));
  waitFor(terminal, "Sorting");
  line.eraseAtTheEnd();
  const std::string shown = terminal.shown();
  EXPECT_TRUE(shown.ends_with(eraseLine)) << shown;
  line.erase();
  EXPECT_EQ(terminal.shown(), shown);
}

}  // namespace
}  // namespace workbench::app
