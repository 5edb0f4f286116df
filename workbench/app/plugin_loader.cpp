#include "workbench/app/plugin_loader.h"

#include <dlfcn.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <system_error>

#include "workbench/text/wording.h"

namespace workbench::app {

namespace {

constexpr std::string_view manifestEnding = ".plugin.json";

std::string dynamicLinkerError() {
  const char* error = dlerror();
  return error == nullptr ? text::sentence("no reason given") : error;
}

}  // namespace

Outcome<Done> Plugins::addFolder(const std::filesystem::path& folder) {
  std::error_code error;
  std::vector<std::filesystem::path> manifests;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    if (entry->path().filename().string().ends_with(manifestEnding)) manifests.push_back(entry->path());
  }
  if (error) {
    return Problem{text::sentence("The folder of plug-ins cannot be read."), folder.string(),
                   text::sentence("Name a folder that holds plug-ins.")};
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
  const auto member = [&](const char* name) {
    const auto found = content.is_object() ? content.find(name) : content.end();
    return found != content.end() && found->is_string() ? found->get<std::string>() : std::string();
  };
  std::string command = member("command");
  const std::string library = member("library");
  const std::string entry = member("entryPoint");
  if (command.empty() || library.empty() || entry.empty()) {
    return Problem{
        text::sentence("This is no manifest of a plug-in."), manifest.string(),
        text::sentence("It has to be a JSON object with the texts \"command\", \"library\" and \"entryPoint\".")};
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
    return Problem{text::sentence("The plug-in for ^1 is missing.", {command}), path,
                   text::sentence("Install it beside its manifest.")};
  }
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) {
    return Problem{text::sentence("The plug-in for ^1 cannot be loaded (^2).", {command, dynamicLinkerError()}), path,
                   text::sentence("Install one that was built for this program.")};
  }
  void* symbol = dlsym(library, plugin.entryPoint.c_str());
  if (symbol == nullptr) {
    dlclose(library);
    return Problem{text::sentence("The plug-in for ^1 lacks its entry point ^2.", {command, plugin.entryPoint}), path,
                   text::sentence("Install one whose manifest names the entry point that it exports.")};
  }
  plugin.loaded = reinterpret_cast<EntryPoint>(symbol);
  return plugin.loaded;
}

}  // namespace workbench::app
