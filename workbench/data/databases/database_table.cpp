#include "workbench/data/databases/database_table.h"

#include <algorithm>
#include <list>
#include <mutex>
#include <numeric>
#include <utility>

namespace workbench::data {
namespace {

Outcome<Done> gather(DatabaseTable& table) {
  std::vector<std::size_t> all(table.source->columns().size());
  std::iota(all.begin(), all.end(), std::size_t{0});
  const Outcome<std::unique_ptr<RowCursor>> cursor = table.source->open(all);
  if (!cursor) return cursor.problem();
  CellBatch batch;
  table.cases = 0;
  for (;;) {
    if (const Outcome<Done> read = (*cursor)->next(batch); !read) return read.problem();
    if (batch.records() == 0) break;
    for (const std::size_t column : all) table.evidence[column].add(batch, column);
    table.cases += static_cast<std::int64_t>(batch.records());
  }
  table.warnings = (*cursor)->warnings();
  table.isLookedAt = true;
  return Done{};
}

// The tables that were looked at last: those of a comparison are opened one by one, each asking for the other's types.
class LookedAtTables {
 public:
  SharedDatabaseTable find(const std::string& identity) {
    const std::lock_guard lock(mutex_);
    const auto found = std::find_if(tables_.begin(), tables_.end(), [&](const SharedDatabaseTable& table) {
      return table->source->identity() == identity;
    });
    return found == tables_.end() ? nullptr : *found;
  }

  void remember(SharedDatabaseTable table) {
    constexpr std::size_t most = 4;
    const std::lock_guard lock(mutex_);
    tables_.push_front(std::move(table));
    if (tables_.size() > most) tables_.pop_back();
  }

 private:
  std::mutex mutex_;
  std::list<SharedDatabaseTable> tables_;
};

LookedAtTables& lookedAtTables() {
  static LookedAtTables tables;
  return tables;
}

}  // namespace

SharedDatabaseTable outlineOf(std::shared_ptr<const RowSource> source) {
  auto table = std::make_shared<DatabaseTable>();
  table->source = std::move(source);
  for (const KnownColumn& column : table->source->columns()) table->evidence.emplace_back().declare(column.kind);
  return table;
}

Outcome<SharedDatabaseTable> lookAt(const SharedDatabaseTable& outline) {
  if (outline->isLookedAt) return outline;
  if (SharedDatabaseTable known = lookedAtTables().find(outline->source->identity())) return known;
  auto table = std::make_shared<DatabaseTable>(*outline);
  if (const Outcome<Done> gathered = gather(*table); !gathered) return gathered.problem();
  lookedAtTables().remember(table);
  return SharedDatabaseTable(std::move(table));
}

}  // namespace workbench::data
