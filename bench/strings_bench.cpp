// How fast texts are compared, in comparisons per second.
//
//   Comparison/PAIR/COLLATION   the host's four comparisons: strcmp, stricmp, strnbcmp, strcoll; the last by bytes and
//   by
//                               a locale
//   CollationKey, FoldedName    what ordering by a locale and the matching of names make of a text
//
//     equal       twice the same text of 20 bytes
//     padded      the same text, once with the blanks of a width of 64 bytes
//     late        texts of 20 bytes that differ in the last one
//     umlauts     the same text with characters beyond ASCII
#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <string_view>

#include "host/runtime.h"
#include "workbench/runtime/current_run.h"
#include "workbench/text/folding.h"
#include "workbench/text/string_comparison.h"

namespace {

struct Pair {
  std::string left;
  std::string right;
};

const std::string town = "Sint-Lievens-Houtem.";

const Pair equal = {town, town};
const Pair padded = {town, town + std::string(64 - town.size(), ' ')};
const Pair late = {town, "Sint-Lievens-Houtem!"};
const Pair umlauts = {"Übersee-Größenzüge", "Übersee-Größenzüge"};

using Comparison = int (*)(std::string_view, std::string_view);

void Compare(benchmark::State& state, Comparison compare, const Pair& pair, const char* collation) {
  workbench::currentRun().settings.collation = collation;
  std::string_view left = pair.left, right = pair.right;
  for (auto iteration : state) {
    benchmark::DoNotOptimize(left);
    benchmark::DoNotOptimize(right);
    benchmark::DoNotOptimize(compare(left, right));
  }
  workbench::currentRun().settings.collation.clear();
  state.SetItemsProcessed(state.iterations());
}

#define COMPARISON_BENCHMARK(name, function, collation)                    \
  BENCHMARK_CAPTURE(Compare, name##_equal, &function, equal, collation);   \
  BENCHMARK_CAPTURE(Compare, name##_padded, &function, padded, collation); \
  BENCHMARK_CAPTURE(Compare, name##_late, &function, late, collation);     \
  BENCHMARK_CAPTURE(Compare, name##_umlauts, &function, umlauts, collation)

COMPARISON_BENCHMARK(strcmp, VRIXMBstrcmp_A, "");
COMPARISON_BENCHMARK(stricmp, VRIXMBstricmp_A, "");
COMPARISON_BENCHMARK(strnbcmp, VRIXMBstrnbcmp_A, "");
COMPARISON_BENCHMARK(strcoll, VRIXMBstrcoll_A, "");
COMPARISON_BENCHMARK(strcoll_de, VRIXMBstrcoll_A, "de");

void CollationKey(benchmark::State& state, const char* collation) {
  workbench::currentRun().settings.collation = collation;
  for (auto iteration : state) benchmark::DoNotOptimize(workbench::text::collationKey(umlauts.left));
  workbench::currentRun().settings.collation.clear();
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(CollationKey, bytes, "");
BENCHMARK_CAPTURE(CollationKey, de, "de");

void FoldedName(benchmark::State& state, const Pair& pair) {
  for (auto iteration : state) benchmark::DoNotOptimize(workbench::text::foldedName(pair.left));
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(FoldedName, ascii, equal);
BENCHMARK_CAPTURE(FoldedName, umlauts, umlauts);

}  // namespace
