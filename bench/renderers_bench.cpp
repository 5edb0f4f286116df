// How fast the document of a run is filled and drawn, in cases per second of a case table: each case has its ID, two
// row numbers and VARIABLES columns, of which two thirds hold a pair of values.
//
//   Fill/CASES/VARIABLES       the calls of a procedure that make such a table
//   FORMAT/CASES/VARIABLES     writing it out, for every format that the workbench knows
#include <benchmark/benchmark.h>

#include <memory>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>

#include "tests/output/samples.h"
#include "workbench/output/formats.h"
#include "workbench/runtime/current_run.h"

namespace {

using workbench::output::Command;
using workbench::output::Document;
using workbench::output::OutputFormat;
using workbench::output::TextOptions;

Document caseTable(benchmark::State& state) {
  auto command = std::make_unique<Command>();
  workbench::currentRun().command = command.get();
  {
    BpProcedure procedure("Benchmark", 1);
    workbench::output::openCaseTable(procedure, static_cast<int>(state.range(1)), static_cast<int>(state.range(0)));
  }
  workbench::currentRun().command = nullptr;
  Document document;
  document.commands.push_back(std::move(command));
  return document;
}

void countCases(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * state.range(0)); }

void Fill(benchmark::State& state) {
  for (auto iteration : state) benchmark::DoNotOptimize(caseTable(state));
  countCases(state);
}

// Takes what is written and keeps its number of bytes.
class Counter : public std::streambuf {
 public:
  std::int64_t bytes() const { return bytes_; }

 private:
  int_type overflow(int_type character) override {
    ++bytes_;
    return traits_type::not_eof(character);
  }
  std::streamsize xsputn(const char*, std::streamsize count) override {
    bytes_ += count;
    return count;
  }
  std::int64_t bytes_ = 0;
};

void Write(benchmark::State& state, const OutputFormat* format) {
  const Document document = caseTable(state);
  Counter counter;
  for (auto iteration : state) {
    std::ostream out(&counter);
    const auto written =
        format->write(out, document, TextOptions{.wording = workbench::output::english(), .width = 120});
    if (!written) state.SkipWithError(written.problem().text().c_str());
  }
  if (counter.bytes() < state.iterations() * state.range(0)) state.SkipWithError("Not all cases were written.");
  state.SetBytesProcessed(counter.bytes());
  countCases(state);
}

void addSizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Args({3'000, 10})->Args({500, 100})->Unit(benchmark::kMillisecond);
}
BENCHMARK(Fill)->Apply(addSizes);

// The formats are a table of the workbench.
[[maybe_unused]] const bool writersAreKnown = [] {
  for (const OutputFormat& format : workbench::output::outputFormats()) {
    addSizes(benchmark::RegisterBenchmark(std::string(format.name).c_str(), &Write, &format));
  }
  return true;
}();

}  // namespace
