#include "workbench/data/columnar/parquet_object.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "workbench/data/columnar/parquet_footer.h"
#include "workbench/data/descriptors/find_description.h"
#include "workbench/data/files/duckdb_query.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

struct Store {
  std::string_view beginning;
  bool takesPatterns;  // in the names of its objects: one such name may be that of many
};

constexpr auto stores = std::to_array<Store>({
    {"s3://", true},
    {"gs://", true},
    {"gcs://", true},
    {"r2://", true},
    {"http://", false},
    {"https://", false},
});

const Store* storeOf(std::string_view path) {
  const auto found =
      std::find_if(stores.begin(), stores.end(), [&](const Store& store) { return path.starts_with(store.beginning); });
  return found == stores.end() ? nullptr : &*found;
}

class ParquetObject final : public StoredSource {
 public:
  explicit ParquetObject(std::string path) : path_(std::move(path)) {}

  const std::string& path() const override { return path_; }
  std::string relation() const override {
    return fmt::format("read_parquet({}, hive_partitioning = false)", sqlText(path_));
  }
  // Looked up at every call: the object is not held open, and may be replaced between two passes.
  std::string identity() const override {
    const Outcome<std::string> state = stateInFooter(path_);
    return path_ + '|' + (state ? *state : "-");
  }
  std::vector<std::string> files() const override { return {path_}; }
  Outcome<std::optional<DescribedTable>> description() const override {
    return describedByStored(resourceInFooter(path_), path_);
  }

 private:
  std::string path_;
};

}  // namespace

bool isInObjectStore(std::string_view path) { return storeOf(path) != nullptr; }

Outcome<std::shared_ptr<const StoredSource>> openParquetObject(const std::string& path) {
  const std::size_t sign = storeOf(path)->takesPatterns ? path.find_first_of("*?[") : std::string::npos;
  if (sign != std::string::npos) {
    return Problem{text::sentence("The name has \"^1\" in it, and would stand for all objects whose names are like it.",
                                  {path.substr(sign, 1)}),
                   path, text::sentence("Name one object, or copy the files into a folder on this machine.")};
  }
  if (const Outcome<std::uint64_t> loaded = rowsWritten("LOAD httpfs"); !loaded) {
    return Problem{text::sentence("Objects in a store are read by DuckDB's extension httpfs, which cannot be loaded."),
                   path,
                   text::sentence("Install the extension with DuckDB's own program (INSTALL httpfs), or copy the file "
                                  "to this machine.")};
  }
  return parquetByName(path);
}

Outcome<std::shared_ptr<const StoredSource>> parquetByName(const std::string& path) {
  if (const Outcome<std::string> state = stateInFooter(path); !state) {
    Problem problem = state.problem();
    problem.where = path;
    return problem;
  }
  return std::shared_ptr<const StoredSource>(std::make_shared<ParquetObject>(path));
}

}  // namespace workbench::data
