#include "tests/model/report.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>

namespace workbench::tests::model {

namespace {

constexpr std::size_t linesBefore = 6;
constexpr std::size_t linesBehind = 4;

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace

std::string textOf(const Report& report) {
  std::string all = "outcome " + report.outcome + '\n';
  for (const std::string& item : report.items) all += item;
  all += "== active\n" + report.active;
  all += "== matched\n" + report.matched;
  all += "\n== mismatched\n" + report.mismatched + "\n== open " + report.openDatasets + "\n== files " + report.files;
  all += "\n== steps\n";
  for (const std::string& step : report.steps) all += step + '\n';
  return all;
}

std::string firstDifference(const std::string& foretold, const std::string& observed) {
  if (foretold == observed) return "";
  const std::vector<std::string> left = linesOf(foretold);
  const std::vector<std::string> right = linesOf(observed);
  std::size_t at = 0;
  while (at < left.size() && at < right.size() && left[at] == right[at]) ++at;
  std::string all;
  for (std::size_t line = at - std::min(at, linesBefore); line < at; ++line) all += "  " + left[line] + '\n';
  for (std::size_t line = at; line < std::min(left.size(), at + linesBehind); ++line)
    all += "foretold: " + left[line] + '\n';
  for (std::size_t line = at; line < std::min(right.size(), at + linesBehind); ++line)
    all += "observed: " + right[line] + '\n';
  return all;
}

}  // namespace workbench::tests::model
