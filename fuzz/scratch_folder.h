// A folder of the fuzzing process for the files that a target writes; each run writes them anew.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "fuzz/fuzzed_input.h"

namespace workbench::fuzz {

inline std::string writeScratchFile(const std::string& name, std::string_view bytes) {
  static const std::filesystem::path folder = [] {
    std::string path = (std::filesystem::temp_directory_path() / "fuzz-XXXXXX").string();
    if (::mkdtemp(path.data()) == nullptr) fail("no folder can be made");
    return path;
  }();
  const std::string path = folder / name;
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return path;
}

}  // namespace workbench::fuzz
