// How fast the case walk is, beside memcmp over the same cases. Each walk reads two datasets that are kept in memory,
// from the first case to the last.
//
//   Walk/WHAT/PAIRING/FLAG
//     WHAT      numbersN: N numeric variables; texts: 10 numeric ones among strings; 20th: 10 numeric ones, and in
//               every 20th case a value differs; each: 200 numeric ones, of which one differs in every case
//     PAIRING   position, number (one numeric case ID), text (one string case ID)
//     FLAG      flag: the flag variable is written, for which the host copies every block of the active dataset
//   StringOrder, StringEquality   the host's comparison of two texts, by how they differ
//
// Shown for a walk: cases and bytes per second (of one side), and `of_memcmp`: its speed as a part of memcmp's over the
// same blocks (where values differ, over the active blocks and equal ones, since memcmp ends at a difference). Both are
// timed in turn within each iteration, by the time that the thread had the processor, and the fastest pass of each
// counts, so that what else the machine does leaves the relation alone.
//
//   walk_bench --benchmark_filter=Walk/numbers
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "engine/case_id.h"
#include "engine/case_walk.h"
#include "engine/variable_matching.h"
#include "host/runtime.h"
#include "tests/engine/engine_run.h"
#include "workbench/data/working/memory_limit.h"

namespace {

using workbench::data::CaseSpan;
using workbench::data::CaseUse;
using workbench::data::Dataset;
using workbench::data::DatasetPass;
using workbench::data::setMemoryLimit;
using workbench::tests::DatasetBuilder;
using workbench::tests::EngineRun;

constexpr std::size_t bytesPerSide = std::size_t{64} << 20;

// --- The datasets -----------------------------------------------------------------------------------------------

struct Sample {
  DatasetBuilder active;
  DatasetBuilder compared;
};

std::size_t casesOf(std::size_t slots) { return bytesPerSide / (slots * sizeof(OBS)); }

std::string digits(std::size_t number, std::size_t width) {
  std::string text = std::to_string(number);
  return std::string(width - text.size(), '0') + text;
}

// The case IDs "id" (ascending numbers), or "name" (ascending texts), and further numbers.
DatasetBuilder numbers(std::size_t variables, std::size_t cases, const std::function<bool(std::size_t)>& isChanged) {
  DatasetBuilder builder;
  std::vector<double> values(cases);
  for (std::size_t variable = 0; variable < variables; ++variable) {
    for (std::size_t index = 0; index < cases; ++index) {
      values[index] = static_cast<double>(index) + static_cast<double>(variable) / 256;
      if (variable == variables / 2 && isChanged(index)) values[index] += 0.5;
    }
    builder.numeric(variable == 0 ? "id" : "x" + std::to_string(variable), values);
  }
  return builder;
}

Sample numbersThatDiffer(std::size_t variables, const std::function<bool(std::size_t)>& isChanged) {
  const std::size_t cases = casesOf(variables);
  return {numbers(variables, cases, [](std::size_t) { return false; }), numbers(variables, cases, isChanged)};
}

Sample equalNumbers(std::size_t variables) {
  return numbersThatDiffer(variables, [](std::size_t) { return false; });
}

Sample numbersAndTexts() {
  const std::size_t cases = casesOf(10 + 2 + 3 + 1 + 5);
  DatasetBuilder builder = numbers(10, cases, [](std::size_t) { return false; });
  std::vector<std::string> names;
  for (std::size_t index = 0; index < cases; ++index) names.push_back("name" + digits(index, 8));
  builder.text("name", 12, names);
  builder.text("town", 20, std::vector<std::string>(cases, "Wuustwezel"));
  builder.text("code", 5, std::vector<std::string>(cases, "B2990"));
  builder.text("note", 40, std::vector<std::string>(cases));
  return {builder, builder};
}

// --- One walk -------------------------------------------------------------------------------------------------------

double secondsOfThread() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double secondsOf(const std::function<void()>& action) {
  const double started = secondsOfThread();
  action();
  return secondsOfThread() - started;
}

enum class Flag { none, written };

void walk(EngineRun& run, Flag flag, std::size_t cases) {
  const UserCaseFileSpec noOutput;
  compdatas::DatasetComparer comparer(run.options, run.procedure(), run.activeSource(), &run.compareSource(),
                                      flag == Flag::written ? "flag" : "", noOutput, noOutput);
  if (!compdatas::validateCaseIds(comparer)) throw std::runtime_error("the case IDs are none");
  compdatas::matchVariables(comparer);
  BpPivotTable table = run.procedure().PivotTable(BpString("Cases", true), BpString("Cases", true), true);
  if (!compdatas::walkCases(comparer, table) || comparer.casesCompared != cases) {
    throw std::runtime_error("the walk did not pair all cases");
  }
}

// Cases that are kept are given as they lie in memory.
bool sameBytes(const Dataset& left, const Dataset& right) {
  bool same = true;
  DatasetPass pass(left, CaseUse::onlyRead);
  DatasetPass other(right, CaseUse::onlyRead);
  while (const CaseSpan span = pass.next()) {
    const std::size_t bytes = span.count * span.caseSlots * sizeof(OBS);
    same &= std::memcmp(span.cases, other.next().cases, bytes) == 0;
  }
  return same;
}

void walkBesideMemcmp(benchmark::State& state, const Sample& sample, const std::string& caseId, Flag flag) {
  EngineRun run(sample.active, sample.compared);
  std::vector<std::string> names;
  for (std::int32_t index = 0; index < run.activeSource().GetNVars(); ++index) {
    names.push_back(run.activeSource().GetVariable(index).GetName());
  }
  run.compare(names);
  if (!caseId.empty()) run.pairBy({caseId});
  run.options.setTableLimit(1);
  // Without the flag variable: what memcmp is given.
  const auto active = sample.active.build();
  const auto same = sample.active.build();
  if (flag == Flag::written) {
    run.activeSource().SetMaxObsAdded(1);
    run.activeSource().MakeVariable(0, nullptr).SetName("flag");
  }

  const auto cases = static_cast<std::size_t>(*active->caseCount());
  double walked = 1e9;
  double compare = 1e9;
  for (auto _ : state) {
    const double seconds = secondsOf([&] { walk(run, flag, cases); });
    state.SetIterationTime(seconds);
    walked = std::min(walked, seconds);
    compare = std::min(compare, secondsOf([&] { benchmark::DoNotOptimize(sameBytes(*active, *same)); }));
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(cases) * state.iterations());
  const std::size_t bytes = cases * active->layout().caseSlots * sizeof(OBS);
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
  state.counters["of_memcmp"] = compare / walked;
  state.counters["ns_per_case"] = 1e9 * walked / static_cast<double>(cases);
}

void addWalks() {
  struct Kind {
    const char* name;
    std::function<Sample()> make;
    bool hasTexts;
  };
  const std::vector<Kind> kinds = {
      {"numbers10", [] { return equalNumbers(10); }, false},
      {"numbers200", [] { return equalNumbers(200); }, false},
      {"numbers2000", [] { return equalNumbers(2000); }, false},
      {"texts", numbersAndTexts, true},
      {"20th", [] { return numbersThatDiffer(10, [](std::size_t index) { return index % 20 == 0; }); }, false},
      {"each", [] { return numbersThatDiffer(200, [](std::size_t) { return true; }); }, false},
  };
  for (const Kind& kind : kinds) {
    for (const auto& [pairing, caseId] : {std::pair{"position", ""}, std::pair{"number", "id"}, {"text", "name"}}) {
      if (std::string(caseId) == "name" && !kind.hasTexts) continue;
      for (const Flag flag : {Flag::none, Flag::written}) {
        const std::string name =
            std::string("Walk/") + kind.name + '/' + pairing + (flag == Flag::written ? "/flag" : "");
        benchmark::RegisterBenchmark(name.c_str(), [=, make = kind.make, id = std::string(caseId)](auto& state) {
          walkBesideMemcmp(state, make(), id, flag);
        })->UseManualTime();
      }
    }
  }
}

// --- Texts ----------------------------------------------------------------------------------------------------------

using Comparison = int (*)(std::string_view, std::string_view);

void compareTexts(benchmark::State& state, Comparison compared, const std::string& left, const std::string& right) {
  for (auto _ : state) {
    std::string_view first = left;
    std::string_view second = right;
    benchmark::DoNotOptimize(first);
    benchmark::DoNotOptimize(second);
    benchmark::DoNotOptimize(compared(first, second));
  }
}

void addTexts() {
  const std::vector<std::pair<std::string, Comparison>> comparisons = {{"StringOrder", VRIXMBstrcoll_A},
                                                                       {"StringEquality", VRIXMBstrnbcmp_A}};
  for (const auto& [name, compared] : comparisons) {
    for (const std::size_t width : {std::size_t{8}, std::size_t{20}, std::size_t{200}}) {
      const std::string text = std::string(width, 'x');
      const std::string blank = std::string(width / 2, 'x') + std::string(width - width / 2, ' ');
      const auto add = [&, compare = compared](const char* how, const std::string& left, const std::string& right) {
        benchmark::RegisterBenchmark((name + '/' + how + '/' + std::to_string(width)).c_str(),
                                     [=](auto& state) { compareTexts(state, compare, left, right); });
      };
      add("same", text, text);
      add("sameHalfBlank", blank, blank);
      add("blankAgainstCut", blank, blank.substr(0, width / 2));
      add("lastByte", text, text.substr(0, width - 1) + 'y');
    }
  }
}

}  // namespace

int main(int count, char** arguments) {
  setMemoryLimit(8 * bytesPerSide);  // nothing is to be spilled
  addWalks();
  addTexts();
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
