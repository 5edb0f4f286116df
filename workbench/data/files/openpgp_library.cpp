#include "workbench/data/files/openpgp_library.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <cstdio>
#include <mutex>

namespace workbench::data {
namespace {

constexpr const char* libraryName = "librnp.so.0";
constexpr const char* installRemedy = "Install librnp 0.16 (Debian's package librnp0).";

Outcome<const OpenPgpLibrary*> load() {
  void* const handle = ::dlopen(libraryName, RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    return Problem{
        fmt::format("The OpenPGP library, which opens and makes protected files, cannot be loaded ({}).", ::dlerror()),
        "", installRemedy};
  }
  static OpenPgpLibrary library;
#define WORKBENCH_RNP_LOAD(function)                                                                        \
  library.function = reinterpret_cast<decltype(library.function)>(::dlsym(handle, #function));              \
  if (library.function == nullptr) {                                                                        \
    return Problem{fmt::format("The OpenPGP library that was found lacks the function {}.", #function), "", \
                   installRemedy};                                                                          \
  }
  WORKBENCH_RNP_FUNCTIONS(WORKBENCH_RNP_LOAD)
#undef WORKBENCH_RNP_LOAD
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
