#include "workbench/app/plugin_loader.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <system_error>

namespace workbench::app {

namespace {

constexpr std::string_view manifestEnding = ".plugin.json";

std::string dynamicLinkerError() {
  const char* error = dlerror();
  return error == nullptr ? "no reason given" : error;
}

}  // namespace

Outcome<Done> Plugins::addFolder(const std::filesystem::path& folder) {
  std::error_code error;
  std::vector<std::filesystem::path> manifests;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    if (entry->path().filename().string().ends_with(manifestEnding)) manifests.push_back(entry->path());
  }
  if (error) {
    return Problem{"The folder of plug-ins cannot be read.", folder.string(), "Name a folder that holds plug-ins."};
  }
  std::sort(manifests.begin(), manifests.end());
  for (const auto& manifest : manifests) {
    if (auto added = addManifest(manifest); !added) return added;
  }
  return Done{};
}

Outcome<Done> Plugins::addManifest(const std::filesystem::path& manifest) {
  std::ifstream file(manifest);
  const auto content = nlohmann::json::parse(file, nullptr, false);
  const auto text = [&](const char* name) {
    const auto member = content.is_object() ? content.find(name) : content.end();
    return member != content.end() && member->is_string() ? member->get<std::string>() : std::string();
  };
  std::string command = text("command");
  const std::string library = text("library");
  const std::string entry = text("entryPoint");
  if (command.empty() || library.empty() || entry.empty()) {
    return Problem{"This is no manifest of a plug-in.", manifest.string(),
                   "It has to be a JSON object with the texts \"command\", \"library\" and \"entryPoint\"."};
  }
  std::transform(command.begin(), command.end(), command.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
  plugins_.try_emplace(command, Plugin{manifest.parent_path() / library, entry, nullptr});
  return Done{};
}

std::vector<std::string> Plugins::commands() const {
  std::vector<std::string> names;
  for (const auto& [name, plugin] : plugins_) names.push_back(name);
  return names;
}

Outcome<EntryPoint> Plugins::entryPoint(const std::string& command) {
  Plugin& plugin = plugins_.at(command);
  if (plugin.loaded != nullptr) return plugin.loaded;

  const std::string path = plugin.library.string();
  if (!std::filesystem::exists(plugin.library)) {
    return Problem{fmt::format("The plug-in for {} is missing.", command), path, "Install it beside its manifest."};
  }
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) {
    return Problem{fmt::format("The plug-in for {} cannot be loaded ({}).", command, dynamicLinkerError()), path,
                   "Install one that was built for this program."};
  }
  void* symbol = dlsym(library, plugin.entryPoint.c_str());
  if (symbol == nullptr) {
    dlclose(library);
    return Problem{fmt::format("The plug-in for {} lacks its entry point {}.", command, plugin.entryPoint), path,
                   "Install one whose manifest names the entry point that it exports."};
  }
  plugin.loaded = reinterpret_cast<EntryPoint>(symbol);
  return plugin.loaded;
}

}  // namespace workbench::app
