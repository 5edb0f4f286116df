#include "workbench/data/working/file_in_use.h"

#include <algorithm>

namespace workbench::data {
namespace {

std::vector<const FileInUse*>& filesInUse() {
  static std::vector<const FileInUse*> all;
  return all;
}

}  // namespace

FileInUse::FileInUse(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) places_.push_back(FilePlace::of(path));
  filesInUse().push_back(this);
}

FileInUse::~FileInUse() { std::erase(filesInUse(), this); }

bool FileInUse::isAt(const FilePlace& place) const {
  return std::find(places_.begin(), places_.end(), place) != places_.end();
}

bool FileInUse::anyIsAt(const FilePlace& place, const FileInUse* except) {
  return std::any_of(filesInUse().begin(), filesInUse().end(),
                     [&](const FileInUse* input) { return input != except && input->isAt(place); });
}

}  // namespace workbench::data
