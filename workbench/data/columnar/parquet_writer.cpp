#include "workbench/data/columnar/parquet_writer.h"

#include <fmt/format.h>

#include <filesystem>
#include <utility>

#include "workbench/data/columnar/parquet_footer.h"
#include "workbench/data/columnar/stored_case_writer.h"
#include "workbench/data/descriptors/dictionary_check.h"
#include "workbench/data/descriptors/schema_writer.h"
#include "workbench/data/files/duckdb_copy.h"
#include "workbench/data/files/duckdb_query.h"
#include "workbench/data/files/protected_name.h"

namespace workbench::data {
namespace {

class ParquetOutput final : public StoredOutput {
 public:
  explicit ParquetOutput(std::unique_ptr<DuckDbCopy> copy) : copy_(std::move(copy)) {}

  DuckDbFeed& rows() override { return copy_->rows(); }
  void complete() override { copy_->complete(); }
  void commit() override { copy_->commit(); }

 private:
  std::unique_ptr<DuckDbCopy> copy_;
};

}  // namespace

Outcome<std::unique_ptr<CaseWriter>> createParquetFile(const std::string& path, const Dictionary& dictionary,
                                                       const Secret& password) {
  WritableDictionary written = writablePartOf(dictionary);
  const Outcome<std::string> resource =
      resourceText(std::filesystem::path(plainName(path)).stem().string(), written.dictionary);
  if (!resource) {
    Problem problem = resource.problem();
    problem.where = path;
    return problem;
  }
  const std::string options =
      fmt::format("FORMAT parquet, COMPRESSION zstd, KV_METADATA {{{}: {}}}", sqlText(resourceKey), sqlText(*resource));
  Outcome<std::unique_ptr<DuckDbCopy>> copy =
      DuckDbCopy::start(path, Packing::none, storedColumnsOf(dictionary), options, password);
  if (!copy) return copy.problem();
  return storedCaseWriter(std::make_unique<ParquetOutput>(std::move(*copy)), path, dictionary,
                          std::move(written.losses));
}

}  // namespace workbench::data
