// How fast tables whose columns have types are read, in cases per second; always two of them at once, on a thread each.
//
//   HandOut/KIND   DuckDB hands out the vectors of all columns, which nobody looks at
//   Read/KIND      one pass over the cases of both, which are open
//
//     parquet      Parquet files, as DuckDB writes them
//     duckdb       tables of a DuckDB database
//
// Of 200,000 cases: 9 variables and a numeric ID, a third of them strings.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "bench/cases_read.h"
#include "bench/generator/dataset_pair.h"
#include "workbench/data/data_file.h"
#include "workbench/data/files/duckdb_query.h"

namespace {

using namespace workbench::data;

constexpr std::int64_t rows = 200'000;

void run(const std::string& sql) {
  if (const auto ran = rowsWritten(sql); !ran) throw std::runtime_error(ran.problem().text());
}

// A folder of tables that goes with the program.
class Tables {
 public:
  Tables() {
    std::string name = (std::filesystem::temp_directory_path() / "stored_bench_XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("No folder can be made for the tables.");
    folder_ = name;
    bench::Plan plan;
    plan.rows = rows;
    plan.folder = folder_;
    bench::writeDatasetPair(plan);
    run(fmt::format("ATTACH '{}' AS made", path("tables.duckdb")));
    for (const char* const side : {"a", "b"}) {
      const std::string csv = path(fmt::format("{}.csv", side));
      run(fmt::format("COPY (FROM read_csv('{}')) TO '{}.parquet'", csv, path(side)));
      run(fmt::format("CREATE TABLE made.{} AS FROM read_csv('{}')", side, csv));
    }
    run("DETACH made");
  }
  Tables(const Tables&) = delete;
  Tables& operator=(const Tables&) = delete;
  ~Tables() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  // The table of that side as our program knows it.
  std::string reference(const std::string& kind, const std::string& side) const {
    return kind == "parquet" ? path(side + ".parquet") : path("tables.duckdb") + "#" + side;
  }
  std::string path(const std::string& name) const { return (folder_ / name).string(); }

 private:
  std::filesystem::path folder_;
};

const Tables& tables() {
  static const Tables made;
  return made;
}

constexpr std::array<const char*, 2> sides{"a", "b"};

// Does it for both sides, each on a thread; gives how many cases that were.
template <class Work>
std::int64_t both(Work work) {
  std::int64_t ofOther = 0;
  std::thread other([&] { ofOther = work(sides[1]); });
  const std::int64_t ofOne = work(sides[0]);
  other.join();
  return ofOne + ofOther;
}

void check(std::int64_t cases) {
  if (cases != 2 * rows) throw std::runtime_error("Not all cases were read.");
}

void HandOut(benchmark::State& state, const char* kind) {
  const bool isDatabase = std::string_view(kind) == "duckdb";
  if (isDatabase) run(fmt::format("ATTACH '{}' AS handed (READ_ONLY)", tables().path("tables.duckdb")));
  for (auto iteration : state) {
    check(both([&](const char* side) {
      const auto query = DuckDbQuery::start(isDatabase ? fmt::format("FROM handed.{}", side)
                                                       : fmt::format("FROM '{}.parquet'", tables().path(side)));
      if (!query) throw std::runtime_error(query.problem().text());
      std::int64_t cases = 0;
      const auto read =
          (*query)->eachChunk([&](const DuckDbQuery& chunk) { cases += static_cast<std::int64_t>(chunk.rows()); });
      if (!read) throw std::runtime_error(read.problem().text());
      return cases;
    }));
  }
  if (isDatabase) run("DETACH handed");
  state.SetItemsProcessed(state.iterations() * 2 * rows);
}

void Read(benchmark::State& state, const char* kind) {
  std::array<std::shared_ptr<const DataFile>, 2> files;
  for (std::size_t side = 0; side < files.size(); ++side) {
    auto file = openDataFile(tables().reference(kind, sides[side]), {"", tables().reference(kind, sides[1 - side])});
    if (!file) throw std::runtime_error(file.problem().text());
    files[side] = *file;
  }
  for (auto iteration : state) {
    check(both([&](const char* side) { return bench::casesRead(*files[side == sides[0] ? 0 : 1]); }));
  }
  state.SetItemsProcessed(state.iterations() * 2 * rows);
}

#define STORED_BENCHMARK(what)                                                               \
  BENCHMARK_CAPTURE(what, parquet, "parquet")->UseRealTime()->Unit(benchmark::kMillisecond); \
  BENCHMARK_CAPTURE(what, duckdb, "duckdb")->UseRealTime()->Unit(benchmark::kMillisecond)

STORED_BENCHMARK(HandOut);
STORED_BENCHMARK(Read);

}  // namespace
