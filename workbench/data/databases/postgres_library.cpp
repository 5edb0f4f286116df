#include "workbench/data/databases/postgres_library.h"

#include "workbench/runtime/loaded_library.h"

namespace workbench::data {
namespace {

constexpr LibraryDescription postgresDescription{"The PostgreSQL library", "which speaks to its servers",
                                                 "Install it (on Debian: the package libpq5)."};

}  // namespace

Outcome<const PostgresLibrary*> postgresLibrary() {
  static const Outcome<const PostgresLibrary*> loaded = loadFunctions<PostgresLibrary>(
      {"libpq.so.5"}, postgresDescription, [](LoadedLibrary& library, PostgresLibrary& functions) {
#define WORKBENCH_POSTGRES_FIND(function) library.find(functions.function, #function);
        WORKBENCH_POSTGRES_FUNCTIONS(WORKBENCH_POSTGRES_FIND)
#undef WORKBENCH_POSTGRES_FIND
      });
  return loaded;
}

}  // namespace workbench::data
