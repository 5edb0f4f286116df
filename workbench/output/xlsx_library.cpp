#include "workbench/output/xlsx_library.h"

#include "workbench/runtime/loaded_library.h"

namespace workbench::output {
namespace {

constexpr const char* libraryName = "libxlsxwriter.so.4";
constexpr LibraryDescription description{"The library libxlsxwriter", "which writes workbooks",
                                         "Install libxlsxwriter 1.1 (Debian's package libxlsxwriter4)."};

Outcome<const XlsxLibrary*> load() {
  Outcome<LoadedLibrary> loaded = LoadedLibrary::load({libraryName}, description);
  if (!loaded) return loaded.problem();
  static XlsxLibrary library;
#define WORKBENCH_XLSX_FIND(function) loaded->find(library.function, #function);
  WORKBENCH_XLSX_FUNCTIONS(WORKBENCH_XLSX_FIND)
#undef WORKBENCH_XLSX_FIND
  if (const Outcome<Done> complete = loaded->complete(); !complete) return complete.problem();
  return &library;
}

}  // namespace

Outcome<const XlsxLibrary*> xlsxLibrary() {
  static const Outcome<const XlsxLibrary*> loaded = load();
  return loaded;
}

const XlsxLibrary& xlsx() {
  static const XlsxLibrary& library = **xlsxLibrary();
  return library;
}

}  // namespace workbench::output
