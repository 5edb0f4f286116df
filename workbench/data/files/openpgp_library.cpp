#include "workbench/data/files/openpgp_library.h"

#include <cstdio>
#include <mutex>

#include "workbench/runtime/loaded_library.h"

namespace workbench::data {
namespace {

constexpr const char* libraryName = "librnp.so.0";
constexpr LibraryDescription description{"The OpenPGP library", "which opens and makes protected files",
                                         "Install librnp 0.16 (Debian's package librnp0)."};

Outcome<const OpenPgpLibrary*> load() {
  Outcome<LoadedLibrary> loaded = LoadedLibrary::load({libraryName}, description);
  if (!loaded) return loaded.problem();
  static OpenPgpLibrary library;
#define WORKBENCH_RNP_FIND(function) loaded->find(library.function, #function);
  WORKBENCH_RNP_FUNCTIONS(WORKBENCH_RNP_FIND)
#undef WORKBENCH_RNP_FIND
  if (const Outcome<Done> complete = loaded->complete(); !complete) return complete.problem();
  return &library;
}

// Null when the system has no /dev/null; then nothing is silenced.
std::FILE* nowhere() {
  static std::FILE* const file = std::fopen("/dev/null", "we");
  return file;
}

std::mutex silenceMutex;
std::FILE* standardError = nullptr;

}  // namespace

Outcome<const OpenPgpLibrary*> openPgpLibrary() {
  static const Outcome<const OpenPgpLibrary*> loaded = load();
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
