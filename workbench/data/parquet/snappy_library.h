// Snappy, in which most Parquet files are packed. It is loaded when the first such file is met.
#pragma once

#include <snappy-c.h>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct SnappyLibrary {
  decltype(&::snappy_uncompress) uncompress = nullptr;
};

// Fails where the system has none: then such files are left to DuckDB, which brings one of its own.
const Outcome<const SnappyLibrary*>& snappyLibrary();

}  // namespace workbench::data
