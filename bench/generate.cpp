// Writes two CSV files of the same cases with known differences, and the truth about them:
//
//   a.csv, b.csv   one line per case in the order of the IDs; a third of the variables beside the ID are strings
//   truth.json     pairs, differing pairs, cases in one file only, and how many pairs differ in each variable
//
// 1 % of each file's cases have no partner, 5 % of the pairs differ in one or two variables, and 1 % of all cells are
// empty (on both sides). The numbers are exact, so every answer to "what differs" can be held against the truth.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Plan {
  std::int64_t rows = 1'000'000;
  int variables = 10;  // the ID is one of them
  std::uint64_t seed = 1;
  std::filesystem::path folder = ".";

  int strings() const { return (variables - 1) / 3; }
  int numbers() const { return variables - 1 - strings(); }
  std::int64_t unpaired() const { return rows / 100; }  // in each file
  std::int64_t pairs() const { return rows - unpaired(); }
  std::int64_t differing() const { return pairs() / 20; }
};

// Random numbers that are the same on every machine: the engine is, the standard distributions are not.
class Chance {
 public:
  explicit Chance(std::uint64_t seed) : engine_(seed) {}
  std::int64_t below(std::int64_t bound) {
    return static_cast<std::int64_t>(engine_() % static_cast<std::uint64_t>(bound));
  }
  bool percent(int of100) { return below(100) < of100; }

 private:
  std::mt19937_64 engine_;
};

// Takes exactly `wanted` of `total` things that come by one after the other, each with the same chance.
class Selection {
 public:
  Selection(std::int64_t wanted, std::int64_t total) : wanted_(wanted), total_(total) {}
  bool takes(Chance& chance) {
    const bool taken = chance.below(total_) < wanted_;
    --total_;
    wanted_ -= taken ? 1 : 0;
    return taken;
  }

 private:
  std::int64_t wanted_;
  std::int64_t total_;
};

// A file that is written in large pieces.
class Output {
 public:
  explicit Output(const std::filesystem::path& path) : path_(path), file_(path, std::ios::binary) {
    buffer_.reserve(pieceSize + 4096);
  }
  void line(std::int64_t id, const std::vector<std::string>& cells) {
    std::array<char, 24> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), id).ptr;
    buffer_.append(digits.data(), end);
    for (const std::string& cell : cells) {
      buffer_ += ',';
      buffer_ += cell;
    }
    buffer_ += '\n';
    if (buffer_.size() > pieceSize) write();
  }
  void text(std::string_view what) { buffer_ += what; }
  void close() {
    write();
    file_.close();
    if (!file_) throw std::runtime_error(fmt::format("{} cannot be written.", path_.string()));
  }

 private:
  static constexpr std::size_t pieceSize = 1U << 20U;
  void write() {
    file_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    buffer_.clear();
  }
  std::filesystem::path path_;
  std::ofstream file_;
  std::string buffer_;
};

// A value of a variable. Numbers are small whole ones, whole ones and ones with two decimals in turn; strings are words
// of 4 to 19 letters.
std::string randomValue(const Plan& plan, int variable, Chance& chance) {
  if (variable >= plan.numbers()) {
    std::string word(static_cast<std::size_t>(4 + chance.below(16)), ' ');
    for (char& letter : word) letter = static_cast<char>('a' + chance.below(26));
    return word;
  }
  switch (variable % 3) {
    case 0:
      return std::to_string(chance.below(7) + 1);
    case 1:
      return std::to_string(chance.below(2'000'000) - 1'000'000);
    default:
      return fmt::format("{}.{:02}", chance.below(100'000), chance.below(99) + 1);
  }
}

std::string otherValue(const Plan& plan, int variable, const std::string& value, Chance& chance) {
  std::string other = value;
  while (other == value) other = randomValue(plan, variable, chance);
  return other;
}

std::vector<std::string> variableNames(const Plan& plan) {
  std::vector<std::string> names;
  for (int number = 1; number <= plan.numbers(); ++number) names.push_back(fmt::format("n{}", number));
  for (int number = 1; number <= plan.strings(); ++number) names.push_back(fmt::format("s{}", number));
  return names;
}

// Changes one or two variables of a case and counts them.
void changeCase(const Plan& plan, std::vector<std::string>& cells, std::vector<std::int64_t>& mismatches,
                Chance& chance) {
  const int others = plan.variables - 1;
  const auto first = static_cast<int>(chance.below(others));
  const auto second = static_cast<int>(chance.below(others));
  for (const int variable : {first, second}) {
    const auto at = static_cast<std::size_t>(variable);
    cells[at] = otherValue(plan, variable, cells[at], chance);
    ++mismatches[at];
    if (first == second || chance.percent(50)) break;
  }
}

nlohmann::ordered_json generate(const Plan& plan) {
  const std::vector<std::string> names = variableNames(plan);
  Chance chance(plan.seed);
  Output first(plan.folder / "a.csv");
  Output second(plan.folder / "b.csv");
  for (Output* output : {&first, &second}) output->text(fmt::format("id,{}\n", fmt::join(names, ",")));

  const std::int64_t identities = plan.pairs() + 2 * plan.unpaired();
  Selection unpaired(2 * plan.unpaired(), identities);
  Selection onlyInFirst(plan.unpaired(), 2 * plan.unpaired());
  Selection differing(plan.differing(), plan.pairs());
  std::vector<std::int64_t> mismatches(names.size());
  std::vector<std::string> cells(names.size());
  for (std::int64_t id = 1; id <= identities; ++id) {
    for (int variable = 0; variable < plan.variables - 1; ++variable) {
      std::string& cell = cells[static_cast<std::size_t>(variable)];
      cell = chance.percent(1) ? std::string() : randomValue(plan, variable, chance);
    }
    if (unpaired.takes(chance)) {
      (onlyInFirst.takes(chance) ? first : second).line(id, cells);
      continue;
    }
    first.line(id, cells);
    if (differing.takes(chance)) changeCase(plan, cells, mismatches, chance);
    second.line(id, cells);
  }
  first.close();
  second.close();

  nlohmann::ordered_json truth = {{"rows", plan.rows},
                                  {"variables", plan.variables},
                                  {"seed", plan.seed},
                                  {"pairs", plan.pairs()},
                                  {"differingPairs", plan.differing()},
                                  {"onlyInFirst", plan.unpaired()},
                                  {"onlyInSecond", plan.unpaired()}};
  for (std::size_t at = 0; at < names.size(); ++at) truth["mismatches"][names[at]] = mismatches[at];
  return truth;
}

}  // namespace

int main(int count, char** arguments) {
  Plan plan;
  CLI::App program("Writes a.csv, b.csv and truth.json: two files of the same cases with known differences.");
  program.add_option("--rows", plan.rows, "cases in each file")->check(CLI::Range(100, 1'000'000'000));
  program.add_option("--variables", plan.variables, "variables, the ID among them")->check(CLI::Range(2, 30'000));
  program.add_option("--seed", plan.seed, "what the random numbers begin with");
  program.add_option("--folder", plan.folder, "where the files go")->check(CLI::ExistingDirectory);
  CLI11_PARSE(program, count, arguments);
  try {
    const nlohmann::ordered_json truth = generate(plan);
    Output file(plan.folder / "truth.json");
    file.text(truth.dump(2) + "\n");
    file.close();
    return 0;
  } catch (const std::exception& trouble) {
    fmt::print(stderr, "bench_generate: {}\n", trouble.what());
    return 2;
  }
}
