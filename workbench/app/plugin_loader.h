// Plug-ins: which commands they bring, and how they are loaded and called.
//
// A plug-in is a shared library with one entry point, and beside it a manifest, NAME.plugin.json, that says which
// command it is behind:
//
//   { "command": "COUNT MISSING", "library": "missing_counts.so", "entryPoint": "MISSCOUNT" }
//
// It is loaded when its command is first run, and stays loaded.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "workbench/runtime/outcome.h"

namespace workbench::app {

using EntryPoint = void (*)();

class Plugins {
 public:
  // Reads every manifest of a folder, in the order of their names. A command that is known already keeps its plug-in.
  Outcome<Done> addFolder(const std::filesystem::path& folder);

  // Upper-case names of all commands.
  std::vector<std::string> commands() const;
  bool has(const std::string& command) const { return plugins_.find(command) != plugins_.end(); }

  // Requires: has(command).
  Outcome<EntryPoint> entryPoint(const std::string& command);

 private:
  struct Plugin {
    std::filesystem::path library;
    std::string entryPoint;
    EntryPoint loaded = nullptr;
  };
  Outcome<Done> addManifest(const std::filesystem::path& manifest);

  std::map<std::string, Plugin> plugins_;
};

}  // namespace workbench::app
