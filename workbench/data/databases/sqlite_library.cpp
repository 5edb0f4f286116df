#include "workbench/data/databases/sqlite_library.h"

#include "workbench/runtime/loaded_library.h"

namespace workbench::data {
namespace {

constexpr LibraryDescription sqliteDescription{"The SQLite library", "which reads and writes its databases",
                                               "Install it (on Debian: the package libsqlite3-0)."};

Outcome<const SqliteLibrary*> loadSqlite() {
  Outcome<LoadedLibrary> loaded = LoadedLibrary::load({"libsqlite3.so.0"}, sqliteDescription);
  if (!loaded) return loaded.problem();
  static SqliteLibrary library;
#define WORKBENCH_SQLITE_FIND(function) loaded->find(library.function, #function);
  WORKBENCH_SQLITE_FUNCTIONS(WORKBENCH_SQLITE_FIND)
#undef WORKBENCH_SQLITE_FIND
  if (const Outcome<Done> complete = loaded->complete(); !complete) return complete.problem();
  return &library;
}

}  // namespace

Outcome<const SqliteLibrary*> sqliteLibrary() {
  static const Outcome<const SqliteLibrary*> loaded = loadSqlite();
  return loaded;
}

}  // namespace workbench::data
