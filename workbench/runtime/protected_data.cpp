#include "workbench/runtime/protected_data.h"

#include <sys/resource.h>

#include <atomic>

namespace workbench {
namespace {

std::atomic<bool> isNoted{false};

}  // namespace

void noteProtectedData() {
  if (isNoted.exchange(true)) return;
  constexpr rlimit none{0, 0};
  ::setrlimit(RLIMIT_CORE, &none);
}

bool handlesProtectedData() { return isNoted; }

}  // namespace workbench
