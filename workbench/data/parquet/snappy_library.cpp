#include "workbench/data/parquet/snappy_library.h"

#include "workbench/runtime/loaded_library.h"

namespace workbench::data {
namespace {

constexpr LibraryDescription description{"The Snappy library", "which unpacks Parquet files",
                                         "Install Snappy 1.1 (Debian's package libsnappy1v5)."};

}  // namespace

const Outcome<const SnappyLibrary*>& snappyLibrary() {
  static const Outcome<const SnappyLibrary*> loaded = loadFunctions<SnappyLibrary>(
      {"libsnappy.so.1"}, description, [](LoadedLibrary& library, SnappyLibrary& functions) {
        library.find(functions.uncompress, "snappy_uncompress");
      });
  return loaded;
}

}  // namespace workbench::data
