#include "workbench/data/files/openpgp_library.h"

#include <cstdio>
#include <mutex>

#include "workbench/runtime/loaded_library.h"

namespace workbench::data {
namespace {

constexpr const char* libraryName = "librnp.so.0";
constexpr LibraryDescription description{"The OpenPGP library", "which opens and makes protected files",
                                         "Install librnp 0.16 (Debian's package librnp0)."};

// Null when the system has no /dev/null; then nothing is silenced.
std::FILE* nowhere() {
  static std::FILE* const file = std::fopen("/dev/null", "we");
  return file;
}

std::mutex silenceMutex;
std::FILE* standardError = nullptr;

}  // namespace

Outcome<const OpenPgpLibrary*> openPgpLibrary() {
  static const Outcome<const OpenPgpLibrary*> loaded =
      loadFunctions<OpenPgpLibrary>({libraryName}, description, [](LoadedLibrary& library, OpenPgpLibrary& functions) {
#define WORKBENCH_RNP_FIND(function) library.find(functions.function, #function);
        WORKBENCH_RNP_FUNCTIONS(WORKBENCH_RNP_FIND)
#undef WORKBENCH_RNP_FIND
      });
  return loaded;
}

// C's streams are variables in the system's own library, which lets them be set like any others.
OpenPgpSilence::OpenPgpSilence() {
  silenceMutex.lock();
  standardError = stderr;
  if (nowhere() != nullptr) stderr = nowhere();
}

OpenPgpSilence::~OpenPgpSilence() {
  stderr = standardError;
  silenceMutex.unlock();
}

}  // namespace workbench::data
