#include "workbench/data/columnar/stored_table.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <list>
#include <mutex>
#include <utility>

#include "workbench/data/columnar/stored_look.h"
#include "workbench/data/columnar/vector_cells.h"
#include "workbench/data/files/duckdb_query.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// The tables that were looked at last; least recently used ones go first.
class StoredTableMemory {
 public:
  std::shared_ptr<const StoredTable> find(const std::string& identity) {
    const std::lock_guard lock(mutex_);
    for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
      if ((*entry)->identity != identity) continue;
      entries_.splice(entries_.begin(), entries_, entry);
      return entries_.front();
    }
    return nullptr;
  }

  void remember(std::shared_ptr<const StoredTable> table) {
    constexpr std::size_t most = 8;
    const std::lock_guard lock(mutex_);
    entries_.push_front(std::move(table));
    if (entries_.size() > most) entries_.pop_back();
  }

 private:
  std::mutex mutex_;
  std::list<std::shared_ptr<const StoredTable>> entries_;
};

StoredTableMemory& memory() {
  static StoredTableMemory tables;
  return tables;
}

}  // namespace

Outcome<std::shared_ptr<const StoredTable>> outlineOf(std::shared_ptr<const StoredSource> source) {
  auto table = std::make_shared<StoredTable>();
  table->identity = source->identity();
  table->source = std::move(source);
  Outcome<StoredOutline> outline = table->source->outline();
  if (!outline) return storedProblem(outline.problem(), *table->source);
  for (auto& [name, type] : outline->columns) {
    StoredColumn& column = table->columns.emplace_back(storedColumn(std::move(name), std::move(type)));
    if (column.isText() && table->source->isTextOfAnyKind(column.name)) column.carrier = Carrier::cellText;
  }
  table->cases = outline->cases;
  for (const StoredColumn& column : table->columns) {
    table->evidence.emplace_back().declare(kindOf(column));
    table->rises.push_back(false);
  }
  return std::shared_ptr<const StoredTable>(std::move(table));
}

Outcome<std::shared_ptr<const StoredTable>> lookAt(const StoredTable& outline) {
  if (auto known = memory().find(outline.identity)) return known;
  auto table = std::make_shared<StoredTable>();
  table->source = outline.source;
  table->identity = outline.identity;
  table->columns = outline.columns;
  Outcome<StoredLook> look = lookAtAllValues(*table->source, table->columns);
  if (!look) return storedProblem(look.problem(), *table->source);
  table->evidence = std::move(look->evidence);
  table->rises = std::move(look->rises);
  table->cases = look->cases;
  if (table->source->identity() != table->identity) {
    return Problem{text::sentence("The data changed while they were read."), table->source->path(),
                   text::sentence("Try again when they are complete.")};
  }
  memory().remember(table);
  return std::shared_ptr<const StoredTable>(std::move(table));
}

Outcome<std::vector<std::size_t>> longestTexts(const StoredTable& table, const std::vector<std::size_t>& columns) {
  std::vector<std::string> lengths;
  for (const std::size_t column : columns) {
    lengths.push_back(fmt::format("max(strlen({}))", fetchedText(table.columns[column])));
  }
  Outcome<std::unique_ptr<DuckDbQuery>> query =
      DuckDbQuery::start(fmt::format("SELECT {} FROM {}", fmt::join(lengths, ", "), table.source->relation()));
  if (!query) return storedProblem(query.problem(), *table.source);
  const Outcome<bool> isThere = (*query)->nextChunk();
  if (!isThere) return storedProblem(isThere.problem(), *table.source);
  std::vector<std::size_t> longest(columns.size());
  for (std::size_t index = 0; *isThere && index < longest.size(); ++index) {
    const auto [values, present] = (*query)->values(index);
    const VectorCells cells{values, {present}};
    if (cells.has(0)) longest[index] = static_cast<std::size_t>(*cells.as<std::int64_t>());
  }
  return longest;
}

Problem storedProblem(Problem problem, const StoredSource& source) {
  problem.where = source.path();
  return problem;
}

}  // namespace workbench::data
