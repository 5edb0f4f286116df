// How fast data files are read, in cases per second; always two files of one shape, which are opened with each other's
// types as a comparison does.
//
//   Examine/SHAPE   opening both: their texts are proved sound and their types are inferred
//   Read/SHAPE      one pass over the cases of both, which are open
//   Whole/SHAPE     one after the other, from two paths to the last cases
//
//     mixed        9 variables and a numeric ID, a third of them strings
//     strings      9 strings and a numeric ID
//     notations    mixed, its numbers written in many ways
//     wide         200 variables
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include "bench/cases_read.h"
#include "bench/generator/dataset_pair.h"
#include "workbench/data/data_file.h"

namespace {

using workbench::data::DataFile;

// A folder of generated files that goes with the program.
class Files {
 public:
  Files() {
    std::string name = (std::filesystem::temp_directory_path() / "readers_bench_XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("No folder can be made for the files.");
    folder_ = name;
    bench::Plan mixed;
    mixed.rows = 50'000;
    bench::Plan strings = mixed;
    strings.strings = 9;
    bench::Plan notations = mixed;
    notations.variedNotation = true;
    bench::Plan wide;
    wide.rows = 5'000;
    wide.variables = 200;
    plans_ = {{"mixed", mixed}, {"strings", strings}, {"notations", notations}, {"wide", wide}};
    for (auto& [shape, plan] : plans_) {
      plan.folder = folder_ / shape;
      std::filesystem::create_directory(plan.folder);
      bench::writeDatasetPair(plan);
    }
  }
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;
  ~Files() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  const bench::Plan& plan(const std::string& shape) const { return plans_.at(shape); }

 private:
  std::filesystem::path folder_;
  std::map<std::string, bench::Plan> plans_;
};

const bench::Plan& planOf(const std::string& shape) {
  static const Files files;
  return files.plan(shape);
}

struct OpenFiles {
  std::shared_ptr<const DataFile> first;
  std::shared_ptr<const DataFile> second;
};

std::shared_ptr<const DataFile> opened(const std::string& path, const std::string& counterpart) {
  auto file = workbench::data::openDataFile(path, {"", counterpart});
  if (!file) throw std::runtime_error(file.problem().text());
  return *file;
}

OpenFiles opened(const bench::Plan& plan) {
  const std::string first = (plan.folder / "a.csv").string(), second = (plan.folder / "b.csv").string();
  return {opened(first, second), opened(second, first)};
}

// What was found out about a file is remembered as long as it is the same.
void makeAsGoodAsNew(const bench::Plan& plan) {
  for (const char* name : {"a.csv", "b.csv"}) {
    std::filesystem::last_write_time(plan.folder / name, std::filesystem::file_time_type::clock::now());
  }
}

void read(const OpenFiles& files, const bench::Plan& plan) {
  if (bench::casesRead(*files.first) + bench::casesRead(*files.second) != 2 * plan.rows) {
    throw std::runtime_error("Not all cases were read.");
  }
}

void countCases(benchmark::State& state, const bench::Plan& plan) {
  state.SetItemsProcessed(state.iterations() * 2 * plan.rows);
}

void Examine(benchmark::State& state, const char* shape) {
  const bench::Plan& plan = planOf(shape);
  for (auto iteration : state) {
    state.PauseTiming();
    makeAsGoodAsNew(plan);
    state.ResumeTiming();
    benchmark::DoNotOptimize(opened(plan));
  }
  countCases(state, plan);
}

void Read(benchmark::State& state, const char* shape) {
  const bench::Plan& plan = planOf(shape);
  const OpenFiles files = opened(plan);
  for (auto iteration : state) read(files, plan);
  countCases(state, plan);
}

void Whole(benchmark::State& state, const char* shape) {
  const bench::Plan& plan = planOf(shape);
  for (auto iteration : state) {
    state.PauseTiming();
    makeAsGoodAsNew(plan);
    state.ResumeTiming();
    read(opened(plan), plan);
  }
  countCases(state, plan);
}

// Readers may use threads of their own: what counts is the time that passes.
#define READERS_BENCHMARK(what)                                                                  \
  BENCHMARK_CAPTURE(what, mixed, "mixed")->UseRealTime()->Unit(benchmark::kMillisecond);         \
  BENCHMARK_CAPTURE(what, strings, "strings")->UseRealTime()->Unit(benchmark::kMillisecond);     \
  BENCHMARK_CAPTURE(what, notations, "notations")->UseRealTime()->Unit(benchmark::kMillisecond); \
  BENCHMARK_CAPTURE(what, wide, "wide")->UseRealTime()->Unit(benchmark::kMillisecond)

READERS_BENCHMARK(Examine);
READERS_BENCHMARK(Read);
READERS_BENCHMARK(Whole);

}  // namespace
