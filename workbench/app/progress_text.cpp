#include "workbench/app/progress_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "workbench/output/text_rendering.h"

namespace workbench::app {

namespace {

// Marks a key, for the test that looks for its wording in every language.
constexpr std::string_view sentence(std::string_view key) { return key; }

constexpr double firstMoment = 0.3;  // seconds before which a speed says nothing
constexpr double longestTimeLeft = 100 * 3600.0;

// Three digits: 1.20 M, 45.6 k, 789.
std::string shortNumber(double number, const text::LocaleForms& forms) {
  struct Magnitude {
    double unit;
    const char* sign;
  };
  for (const Magnitude magnitude : {Magnitude{1e9, " G"}, Magnitude{1e6, " M"}, Magnitude{1e3, " k"}}) {
    if (number < magnitude.unit) continue;
    const double shown = number / magnitude.unit;
    const int decimals = shown < 10 ? 2 : (shown < 100 ? 1 : 0);
    return text::withDecimalMark(fmt::format("{:.{}f}{}", shown, decimals, magnitude.sign), forms);
  }
  return fmt::format("{:.0f}", number);
}

std::string speedText(const Activity::View& view, double perSecond, const text::Wording& wording) {
  if (view.unit == Activity::Unit::cases) {
    return output::shownSentence(sentence("^1 cases/s"), {shortNumber(perSecond, wording.forms())}, wording);
  }
  return output::shownSentence(sentence("^1B/s"), {shortNumber(perSecond, wording.forms())}, wording);
}

// 0:07, 12:34, 1:02:03.
std::string clockText(double seconds) {
  const auto whole = static_cast<std::int64_t>(std::ceil(seconds));
  const std::int64_t hours = whole / 3600;
  if (hours > 0) return fmt::format("{}:{:02}:{:02}", hours, whole / 60 % 60, whole % 60);
  return fmt::format("{}:{:02}", whole / 60, whole % 60);
}

}  // namespace

std::string progressText(const Activity::View& view, std::chrono::duration<double> elapsed,
                         const text::Wording& wording) {
  std::string text = view.name;
  const char* separator = ": ";
  const auto add = [&](const std::string& part) {
    text += separator + part;
    separator = ", ";
  };
  const bool isKnown = view.expected > 0 && view.done <= view.expected;
  if (isKnown) {
    const double share = static_cast<double>(view.done) / static_cast<double>(view.expected);
    const text::LocaleForms& forms = wording.forms();
    add(fmt::format("{}{:.0f}{}", forms.beforePercentage, std::floor(share * 100), forms.behindPercentage));
  }
  if (elapsed.count() < firstMoment || view.done <= 0) return text;
  const double perSecond = static_cast<double>(view.done) / elapsed.count();
  add(speedText(view, perSecond, wording));
  const double left = static_cast<double>(view.expected - view.done) / perSecond;
  if (isKnown && left > 0 && left < longestTimeLeft) {
    add(output::shownSentence(sentence("^1 left"), {clockText(left)}, wording));
  }
  return text;
}

}  // namespace workbench::app
