// LoadedLibrary: a library that is loaded when it is first needed, so that runs without it start without it. It stays
// loaded.
#pragma once

#include <string>
#include <vector>

#include "workbench/runtime/outcome.h"

namespace workbench {

// How problems tell of it.
struct LibraryDescription {
  const char* name;     // "The DuckDB library"
  const char* purpose;  // "which reads and writes data files"
  const char* remedy;   // "Install it."
};

class LoadedLibrary {
 public:
  // From the first of these places that has it: paths, or names for the system to find. The description's texts outlive
  // the library.
  static Outcome<LoadedLibrary> load(const std::vector<std::string>& places, const LibraryDescription& description);

  // Points at the function of that name. When the library has none, complete() tells it.
  template <class Function>
  void find(Function*& function, const char* name) {
    function = reinterpret_cast<Function*>(address(name));
  }
  // Fails when a function was looked for that the library lacks.
  Outcome<Done> complete() const;

 private:
  LoadedLibrary(void* handle, const LibraryDescription& description) : handle_(handle), description_(description) {}
  void* address(const char* name);

  void* handle_;
  LibraryDescription description_;
  std::string lacking_;
};

}  // namespace workbench
