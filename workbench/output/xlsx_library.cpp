#include "workbench/output/xlsx_library.h"

#include "workbench/runtime/loaded_library.h"

namespace workbench::output {
namespace {

constexpr const char* libraryName = "libxlsxwriter.so.4";
constexpr LibraryDescription description{"The library libxlsxwriter", "which writes workbooks",
                                         "Install libxlsxwriter 1.1 (Debian's package libxlsxwriter4)."};

}  // namespace

Outcome<const XlsxLibrary*> xlsxLibrary() {
  static const Outcome<const XlsxLibrary*> loaded =
      loadFunctions<XlsxLibrary>({libraryName}, description, [](LoadedLibrary& library, XlsxLibrary& functions) {
#define WORKBENCH_XLSX_FIND(function) library.find(functions.function, #function);
        WORKBENCH_XLSX_FUNCTIONS(WORKBENCH_XLSX_FIND)
#undef WORKBENCH_XLSX_FIND
      });
  return loaded;
}

const XlsxLibrary& xlsx() {
  static const XlsxLibrary& library = **xlsxLibrary();
  return library;
}

}  // namespace workbench::output
