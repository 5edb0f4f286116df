#include "workbench/data/databases/sqlite_library.h"

#include "workbench/runtime/loaded_library.h"

namespace workbench::data {
namespace {

constexpr LibraryDescription sqliteDescription{"The SQLite library", "which reads and writes its databases",
                                               "Install it (on Debian: the package libsqlite3-0)."};

}  // namespace

Outcome<const SqliteLibrary*> sqliteLibrary() {
  static const Outcome<const SqliteLibrary*> loaded = loadFunctions<SqliteLibrary>(
      {"libsqlite3.so.0"}, sqliteDescription, [](LoadedLibrary& library, SqliteLibrary& functions) {
#define WORKBENCH_SQLITE_FIND(function) library.find(functions.function, #function);
        WORKBENCH_SQLITE_FUNCTIONS(WORKBENCH_SQLITE_FIND)
#undef WORKBENCH_SQLITE_FIND
      });
  return loaded;
}

}  // namespace workbench::data
