// What a path leads to: through symbolic links, and to streams of this process.
#pragma once

#include <filesystem>
#include <optional>

namespace workbench::data {

// What a symbolic link points to in the end, whether something stands there or not; any other path itself.
std::filesystem::path linkTarget(const std::filesystem::path& path);

// The descriptor of this process that the path stands for: /dev/stdout, /dev/fd/3, or a link to one of them.
std::optional<int> descriptorNamed(const std::filesystem::path& path);

// Whether what stands there takes bytes one after the other and keeps none: a pipe, a terminal, /dev/null, or a
// descriptor of this process.
bool isStream(const std::filesystem::path& path);

}  // namespace workbench::data
