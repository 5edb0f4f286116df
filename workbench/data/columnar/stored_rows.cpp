#include "workbench/data/columnar/stored_rows.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <string>
#include <utility>

#include "workbench/data/files/duckdb_query.h"

namespace workbench::data {
namespace {

class QueriedRows final : public StoredRows {
 public:
  explicit QueriedRows(std::unique_ptr<DuckDbQuery> query) : query_(std::move(query)) {}

  Outcome<bool> next() override { return query_->nextChunk(); }
  std::size_t rows() const override { return query_->rows(); }
  VectorCells values(std::size_t wanted) const override {
    const auto [values, present] = query_->values(wanted);
    return {values, {present}};
  }

 private:
  std::unique_ptr<DuckDbQuery> query_;
};

}  // namespace

Outcome<std::unique_ptr<StoredRows>> queriedRows(const std::string& relation, const std::vector<WantedColumn>& wanted) {
  std::vector<std::string> fetched;
  for (const WantedColumn& of : wanted)
    fetched.push_back(of.asText ? fetchedText(*of.column) : fetchedColumn(*of.column));
  if (fetched.empty()) fetched.emplace_back("TRUE");
  Outcome<std::unique_ptr<DuckDbQuery>> query =
      DuckDbQuery::start(fmt::format("SELECT {} FROM {}", fmt::join(fetched, ", "), relation));
  if (!query) return query.problem();
  return std::unique_ptr<StoredRows>(std::make_unique<QueriedRows>(std::move(*query)));
}

}  // namespace workbench::data
