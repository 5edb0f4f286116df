#include "workbench/data/databases/postgres_library.h"

#include "workbench/runtime/loaded_library.h"

namespace workbench::data {
namespace {

constexpr LibraryDescription postgresDescription{"The PostgreSQL library", "which speaks to its servers",
                                                 "Install it (on Debian: the package libpq5)."};

Outcome<const PostgresLibrary*> loadPostgres() {
  Outcome<LoadedLibrary> loaded = LoadedLibrary::load({"libpq.so.5"}, postgresDescription);
  if (!loaded) return loaded.problem();
  static PostgresLibrary library;
#define WORKBENCH_POSTGRES_FIND(function) loaded->find(library.function, #function);
  WORKBENCH_POSTGRES_FUNCTIONS(WORKBENCH_POSTGRES_FIND)
#undef WORKBENCH_POSTGRES_FIND
  if (const Outcome<Done> complete = loaded->complete(); !complete) return complete.problem();
  return &library;
}

}  // namespace

Outcome<const PostgresLibrary*> postgresLibrary() {
  static const Outcome<const PostgresLibrary*> loaded = loadPostgres();
  return loaded;
}

}  // namespace workbench::data
