#include "workbench/data/columnar/attached_database.h"

#include <fmt/format.h>

#include <cstdint>
#include <map>
#include <mutex>
#include <utility>

#include "workbench/data/files/duckdb_query.h"
#include "workbench/data/files/input_file.h"

namespace workbench::data {
namespace {

struct OpenDatabases {
  std::mutex mutex;
  std::map<std::pair<std::uint64_t, std::uint64_t>, std::weak_ptr<const AttachedDatabase>> byFile;  // device and inode
  std::uint64_t made = 0;
};

OpenDatabases& openDatabases() {
  static OpenDatabases databases;
  return databases;
}

}  // namespace

Outcome<std::shared_ptr<const AttachedDatabase>> AttachedDatabase::open(const std::string& path) {
  const Outcome<InputFile> file = InputFile::open(path);
  if (!file) return file.problem();
  const FileIdentity identity = file->identity();
  OpenDatabases& databases = openDatabases();
  const std::lock_guard lock(databases.mutex);
  auto& entry = databases.byFile[{identity.device, identity.inode}];
  if (auto known = entry.lock()) return known;
  const std::string name = fmt::format("attached_{}", ++databases.made);
  // By its name: what was not yet brought into the file stands beside it under a name made from it.
  const Outcome<std::uint64_t> attached =
      rowsWritten(fmt::format("ATTACH {} AS {} (READ_ONLY)", sqlText(path), sqlName(name)));
  if (!attached) {
    Problem problem = attached.problem();
    problem.where = path;
    return problem;
  }
  std::shared_ptr<const AttachedDatabase> opened(new AttachedDatabase(name));
  entry = opened;
  return opened;
}

AttachedDatabase::~AttachedDatabase() {
  // A failure leaves it attached until the process ends, and read-only as it is.
  static_cast<void>(rowsWritten(fmt::format("DETACH {}", sqlName(name_))));
}

}  // namespace workbench::data
