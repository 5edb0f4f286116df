// Files that have no name, so that nobody else can open them and nothing of them stays behind.
#pragma once

#include <string>

namespace workbench::data {

// Makes a file in that folder, for reading and writing. The descriptor, or -1 and errno.
int openNamelessFile(const std::string& folder);

// The same where the file system knows of no such files: a file that loses its name at once, made in a folder of its
// own that lets nobody else in meanwhile.
int openFileThatLosesItsName(const std::string& folder);

}  // namespace workbench::data
