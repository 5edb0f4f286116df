#include "workbench/data/files/duckdb_library.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace workbench::data {
namespace {

constexpr const char* libraryName = "libduckdb.so";
constexpr const char* installRemedy = "Put libduckdb.so of DuckDB 1.4 into the folder lib beside the program's own.";

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

Outcome<const DuckDbLibrary*> load() {
  void* handle = nullptr;
  std::string reason;
  for (const std::string& place : placesToLook()) {
    handle = ::dlopen(place.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle != nullptr) break;
    std::error_code failure;
    // A file that is there and cannot be loaded tells more than the last place that has none.
    if (reason.empty() || std::filesystem::exists(place, failure)) reason = ::dlerror();
  }
  if (handle == nullptr) {
    return Problem{fmt::format("The DuckDB library, which reads and writes data files, cannot be loaded ({}).", reason),
                   "", installRemedy};
  }
  static DuckDbLibrary library;
#define WORKBENCH_DUCKDB_LOAD(function)                                                                    \
  library.function = reinterpret_cast<decltype(library.function)>(::dlsym(handle, #function));             \
  if (library.function == nullptr) {                                                                       \
    return Problem{fmt::format("The DuckDB library that was found lacks the function {}.", #function), "", \
                   installRemedy};                                                                         \
  }
  WORKBENCH_DUCKDB_FUNCTIONS(WORKBENCH_DUCKDB_LOAD)
#undef WORKBENCH_DUCKDB_LOAD
  return &library;
}

}  // namespace

Outcome<const DuckDbLibrary*> duckDbLibrary() {
  static const Outcome<const DuckDbLibrary*> loaded = load();
  return loaded;
}

}  // namespace workbench::data
