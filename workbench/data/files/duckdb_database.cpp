#include "workbench/data/files/duckdb_database.h"

#include <array>
#include <utility>

#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr auto databaseSettings = std::to_array<std::pair<const char*, const char*>>({
    {"threads", "1"},        // a statement runs on its caller's thread; another one made both wait for each other
    {"temp_directory", ""},  // what is read may come from a protected file
    {"enable_external_file_cache", "false"},  // it would recognise a file by its path, and ours are descriptors
    {"autoinstall_known_extensions", "false"},
    {"autoload_known_extensions", "false"},
});

Outcome<duckdb_database> openDatabase() {
  const Outcome<const DuckDbLibrary*> loaded = duckDbLibrary();
  if (!loaded) return loaded.problem();
  const DuckDbLibrary& library = **loaded;
  duckdb_config settings = nullptr;
  if (library.duckdb_create_config(&settings) != DuckDBSuccess)
    return duckDbProblem(text::sentence("no configuration can be made"));
  for (const auto& [name, value] : databaseSettings) {
    if (library.duckdb_set_config(settings, name, value) != DuckDBSuccess) {
      library.duckdb_destroy_config(&settings);
      return duckDbProblem(text::sentence("the setting ^1 is not known", {name}));
    }
  }
  duckdb_database database = nullptr;
  char* error = nullptr;
  const duckdb_state state = library.duckdb_open_ext(nullptr, &database, settings, &error);
  library.duckdb_destroy_config(&settings);
  if (state == DuckDBSuccess) return database;
  Problem problem =
      duckDbProblem(error != nullptr ? std::string(error) : text::sentence("the database cannot be opened"));
  library.duckdb_free(error);
  return problem;
}

}  // namespace

// Open until the process ends: a thread of ours may still read from it while static objects are destroyed.
Outcome<duckdb_database> duckDbDatabase() {
  static const Outcome<duckdb_database> database = openDatabase();
  return database;
}

Problem duckDbProblem(std::string_view what) {
  return Problem{text::sentence("DuckDB reports: ^1", {what.substr(0, what.find('\n'))}), "", ""};
}

}  // namespace workbench::data
