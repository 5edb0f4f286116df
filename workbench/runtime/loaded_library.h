// Libraries that are loaded when they are first needed, so that runs without them start without them. They stay loaded.
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
  // As loadFunctions() says.
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

// The functions that are called of a library, in a table that stays where it is. `findAll` gets the library and the
// table, and points each member at its function by find(). The library is taken from the first of these places that has
// it: paths, or names for the system to find. The description's texts outlive it. Fails when there is none, or one
// without some of the functions. A callable of another type gets a table of its own.
template <class Functions, class FindAll>
Outcome<const Functions*> loadFunctions(const std::vector<std::string>& places, const LibraryDescription& description,
                                        FindAll findAll) {
  Outcome<LoadedLibrary> library = LoadedLibrary::load(places, description);
  if (!library) return library.problem();
  static Functions functions;
  findAll(*library, functions);
  if (const Outcome<Done> complete = library->complete(); !complete) return complete.problem();
  return &functions;
}

}  // namespace workbench
