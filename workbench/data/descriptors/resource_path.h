// Paths in a descriptor: where they may lead.
//
// A descriptor names files beside it or below its folder, and nothing else: it may come from anywhere, and must not
// make this program read what its author has no business with.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "workbench/data/descriptors/descriptor_value.h"

namespace workbench::data {

enum class PathKind : std::uint8_t { relative, address };

// What a "path" is by its form; a path that no descriptor may have is rejected at the value. An address (URL) is for
// its user to reject: a package may have resources elsewhere that nobody asked for.
std::optional<PathKind> pathKind(const DescriptorValue& value, const std::string& path);
void rejectAddress(const DescriptorValue& value);

// The path as it can be opened from where this program runs.
std::string besideDescriptor(const std::string& descriptorPath, const std::string& path);

// Rejects the path when symbolic links lead it out of the descriptor's folder. A file that is not there does not.
bool staysInside(const DescriptorValue& value, const std::string& path);

// The text of a property that is a relative path to a file inside the folder; anything else is rejected.
std::optional<std::string> pathInside(const DescriptorValue& value);

}  // namespace workbench::data
