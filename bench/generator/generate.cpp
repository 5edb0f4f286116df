// Writes a.csv and b.csv, two files of the same cases with known differences, and truth.json, the truth about them.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>

#include "bench/generator/dataset_pair.h"
#include "bench/generator/plan.h"

namespace {

void declareOptions(CLI::App& program, bench::Plan& plan) {
  static const std::map<std::string, bench::Key> keys = {
      {"number", bench::Key::number}, {"string", bench::Key::string}, {"none", bench::Key::none}};
  const CLI::Range percent(0, 100);
  program.add_option("--rows", plan.rows, "cases in each file")->check(CLI::Range(100, 1'000'000'000));
  program.add_option("--variables", plan.variables, "variables, the ID among them")->check(CLI::Range(2, 30'000));
  program.add_option("--strings", plan.strings, "strings among those beside the ID; by default a third of them");
  program
      .add_option("--key", plan.key, "the ID: number, string, or none (paired by position; the first file is longer)")
      ->transform(CLI::CheckedTransformer(keys));
  program.add_flag_callback("--shuffled", [&plan] { plan.order = bench::Order::shuffled; }, "cases in any order");
  program.add_option("--differing", plan.differingPercent, "per cent of the pairs that differ")->check(percent);
  program.add_option("--unpaired", plan.unpairedPercent, "per cent of each file's cases without a partner")
      ->check(percent);
  program.add_option("--missing", plan.missingPercent, "per cent of the cells that are empty")->check(percent);
  program.add_flag("--varied-notation", plan.variedNotation,
                   "numbers are written in many ways, on each side differently");
  program.add_option("--seed", plan.seed, "what the random numbers begin with");
  program.add_option("--folder", plan.folder, "where the files go")->check(CLI::ExistingDirectory);
}

void checkPlan(const bench::Plan& plan) {
  if (plan.strings > plan.values()) throw std::runtime_error("There are more strings than variables beside the ID.");
  if (plan.key == bench::Key::none && plan.order == bench::Order::shuffled) {
    throw std::runtime_error("Cases that are paired by position cannot be shuffled.");
  }
}

void writeText(const std::filesystem::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw std::runtime_error(fmt::format("{} cannot be written.", path.string()));
}

}  // namespace

int main(int count, char** arguments) {
  bench::Plan plan;
  CLI::App program("Writes a.csv, b.csv and truth.json: two files of the same cases with known differences.");
  declareOptions(program, plan);
  CLI11_PARSE(program, count, arguments);
  try {
    checkPlan(plan);
    writeText(plan.folder / "truth.json", bench::writeDatasetPair(plan).dump(2) + "\n");
    return 0;
  } catch (const std::exception& trouble) {
    fmt::print(stderr, "bench_generate: {}\n", trouble.what());
    return 2;
  }
}
