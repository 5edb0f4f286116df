#include "workbench/data/files/duckdb_library.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "workbench/runtime/loaded_library.h"

namespace workbench::data {
namespace {

constexpr const char* libraryName = "libduckdb.so";
constexpr LibraryDescription description{
    "The DuckDB library", "which reads and writes data files",
    "Put libduckdb.so of DuckDB 1.4 into the folder lib beside the program's own."};

// In the order in which they are tried.
std::vector<std::string> placesToLook() {
  std::vector<std::string> places;
  std::error_code failure;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failure);
  if (!failure) {
    const std::filesystem::path folder = program.parent_path();
    places.push_back((folder.parent_path() / "lib" / libraryName).string());
    places.push_back((folder / libraryName).string());
  }
  places.emplace_back(libraryName);
  return places;
}

}  // namespace

Outcome<const DuckDbLibrary*> duckDbLibrary() {
  static const Outcome<const DuckDbLibrary*> loaded =
      loadFunctions<DuckDbLibrary>(placesToLook(), description, [](LoadedLibrary& library, DuckDbLibrary& functions) {
#define WORKBENCH_DUCKDB_FIND(function) library.find(functions.function, #function);
        WORKBENCH_DUCKDB_FUNCTIONS(WORKBENCH_DUCKDB_FIND)
#undef WORKBENCH_DUCKDB_FIND
      });
  return loaded;
}

}  // namespace workbench::data
