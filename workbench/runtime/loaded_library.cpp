#include "workbench/runtime/loaded_library.h"

#include <dlfcn.h>

#include <filesystem>
#include <system_error>

#include "workbench/text/wording.h"

namespace workbench {

Outcome<LoadedLibrary> LoadedLibrary::load(const std::vector<std::string>& places,
                                           const LibraryDescription& description) {
  std::string reason;
  for (const std::string& place : places) {
    if (void* const handle = ::dlopen(place.c_str(), RTLD_NOW | RTLD_LOCAL)) return LoadedLibrary(handle, description);
    std::error_code failure;
    // A file that is there and cannot be loaded tells more than the last place that has none.
    if (reason.empty() || std::filesystem::exists(place, failure)) reason = ::dlerror();
  }
  return Problem{text::sentence("^1, ^2, cannot be loaded (^3).",
                                {text::sentence(description.name), text::sentence(description.purpose), reason}),
                 "", text::sentence(description.remedy)};
}

void* LoadedLibrary::address(const char* name) {
  void* const found = ::dlsym(handle_, name);
  if (found == nullptr && lacking_.empty()) lacking_ = name;
  return found;
}

Outcome<Done> LoadedLibrary::complete() const {
  if (lacking_.empty()) return Done{};
  return Problem{
      text::sentence("^1 that was found lacks the function ^2.", {text::sentence(description_.name), lacking_}), "",
      text::sentence(description_.remedy)};
}

}  // namespace workbench
