// What the walk allocates: nothing per case, so that its time goes into the comparison alone.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "tests/engine/engine_run.h"

namespace {
std::atomic<long> allocations = 0;

void* counted(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}
}  // namespace

void* operator new(std::size_t size) { return counted(size); }
void* operator new[](std::size_t size) { return counted(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace workbench::tests {
namespace {

// Cases of a number and of a text that is too long to lie within a std::string; every third one differs.
DatasetBuilder cases(int number, bool changed) {
  std::vector<double> ids;
  std::vector<std::string> texts;
  for (int id = 0; id < number; ++id) {
    ids.push_back(id);
    texts.emplace_back(changed && id % 3 == 0 ? 40 : 39, 'x');
  }
  return dataset().numeric("id", ids).text("t", 40, texts);
}

long allocatedBy(int number) {
  EngineRun run(cases(number, false), cases(number, true));
  run.compare({"t"}).pairBy({"id", "t"}).options.setTableLimit(1);
  run.comparer();
  const long before = allocations;
  EXPECT_TRUE(run.walk());
  EXPECT_GT(run.comparer().casesCompared, static_cast<std::uint64_t>(number) / 2);
  return allocations - before;
}

TEST(WalkMemory, IsNotAllocatedCaseByCase) {
  allocatedBy(10);  // what is made once in a process
  const long few = allocatedBy(100);
  const long many = allocatedBy(10000);
  EXPECT_GT(few, 0);
  EXPECT_LT(many, few + 100);  // a block of cases now and then
}

}  // namespace
}  // namespace workbench::tests
