#include "workbench/data/working/file_in_use.h"

#include <algorithm>

namespace workbench::data {
namespace {

std::vector<const FileInUse*>& filesInUse() {
  static std::vector<const FileInUse*> all;
  return all;
}

std::vector<FilePlace>& placesReadFrom() {
  static std::vector<FilePlace> all;
  return all;
}

std::vector<FilePlace>& placesWritten() {
  static std::vector<FilePlace> all;
  return all;
}

bool isAmong(const std::vector<FilePlace>& places, const FilePlace& place) {
  return std::find(places.begin(), places.end(), place) != places.end();
}

}  // namespace

FileInUse::FileInUse(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) places_.push_back(FilePlace::of(path));
  placesReadFrom().insert(placesReadFrom().end(), places_.begin(), places_.end());
  filesInUse().push_back(this);
}

FileInUse::~FileInUse() { std::erase(filesInUse(), this); }

bool FileInUse::isAt(const FilePlace& place) const { return isAmong(places_, place); }

bool FileInUse::anyIsAt(const FilePlace& place, const FileInUse* except) {
  return std::any_of(filesInUse().begin(), filesInUse().end(),
                     [&](const FileInUse* input) { return input != except && input->isAt(place); });
}

void noteWritten(const FilePlace& place) { placesWritten().push_back(place); }

bool wasReadFrom(const FilePlace& place) { return isAmong(placesReadFrom(), place); }

bool wasWritten(const FilePlace& place) { return isAmong(placesWritten(), place); }

}  // namespace workbench::data
