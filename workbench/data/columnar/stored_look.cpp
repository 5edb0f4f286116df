#include "workbench/data/columnar/stored_look.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <memory>
#include <numeric>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "workbench/data/columnar/stored_evidence.h"
#include "workbench/data/columnar/stored_rows.h"

namespace workbench::data {
namespace {

// Adds all rows, of which the evidence is one per wanted column; gives how many there are.
Outcome<std::int64_t> gather(StoredRows& rows, StoredEvidence* evidence, std::size_t columns) {
  std::int64_t cases = 0;
  while (true) {
    const Outcome<bool> isThere = rows.next();
    if (!isThere) return isThere.problem();
    if (!*isThere) return cases;
    for (std::size_t column = 0; column < columns; ++column) evidence[column].add(rows.values(column), rows.rows());
    cases += static_cast<std::int64_t>(rows.rows());
  }
}

// Columns that are looked at one by one, by whoever takes the next one.
class ColumnsInTurn {
 public:
  ColumnsInTurn(const StoredSource& source, const std::vector<WantedColumn>& columns,
                std::vector<StoredEvidence>& evidence)
      : source_(source), columns_(columns), evidence_(evidence) {
    // What takes longest begins first, so that all threads end at much the same time: texts, as a rule.
    std::iota(turns_.begin(), turns_.end(), std::size_t{0});
    std::stable_partition(turns_.begin(), turns_.end(),
                          [&](std::size_t column) { return columns_[column].column->isText(); });
  }

  // How many cases there are; nothing when something is wrong with any column.
  std::optional<std::int64_t> lookAtAll() {
    // The columns of the table that is compared with it are looked at meanwhile: as many threads for each, so that
    // none is idle when one of the tables takes longer.
    const std::size_t threads = std::min<std::size_t>(columns_.size(), std::thread::hardware_concurrency());
    std::vector<std::future<void>> others;
    try {
      while (others.size() + 1 < threads)
        others.push_back(std::async(std::launch::async, &ColumnsInTurn::takeTurns, this));
    } catch (const std::system_error&) {
      // No further thread is to be had: those that there are take all turns.
    }
    takeTurns();
    for (std::future<void>& other : others) other.get();
    const bool isWhole = !hasFailed_ && std::all_of(cases_.begin(), cases_.end(),
                                                    [&](const std::int64_t cases) { return cases == cases_.front(); });
    return isWhole ? std::optional(cases_.front()) : std::nullopt;
  }

 private:
  void takeTurns() {
    for (std::size_t turn = next_++; turn < turns_.size() && !hasFailed_; turn = next_++) {
      const std::size_t column = turns_[turn];
      const auto rows = source_.rows({columns_.size(), {columns_[column]}, true});
      const Outcome<std::int64_t> cases = rows ? gather(**rows, &evidence_[column], 1) : rows.problem();
      if (cases) cases_[column] = *cases;
      if (!cases) hasFailed_ = true;
    }
  }

  const StoredSource& source_;
  const std::vector<WantedColumn>& columns_;
  std::vector<StoredEvidence>& evidence_;
  std::vector<std::size_t> turns_ = std::vector<std::size_t>(columns_.size());  // columns, in the order of looking
  std::vector<std::int64_t> cases_ = std::vector<std::int64_t>(columns_.size(), 0);
  std::atomic<std::size_t> next_{0};
  std::atomic<bool> hasFailed_{false};
};

StoredLook lookOf(const std::vector<StoredEvidence>& evidence, std::int64_t cases) {
  StoredLook look;
  look.evidence.reserve(evidence.size());
  for (const StoredEvidence& of : evidence) {
    look.evidence.push_back(of.evidence());
    look.rises.push_back(of.rises());
  }
  look.cases = cases;
  return look;
}

}  // namespace

Outcome<StoredLook> lookAtAllValues(const StoredSource& source, const std::vector<StoredColumn>& columns) {
  std::vector<WantedColumn> wanted;
  for (const StoredColumn& column : columns) wanted.push_back({wanted.size(), &column});
  const Outcome<std::unique_ptr<StoredRows>> rows = source.rows({wanted.size(), wanted, true});
  if (!rows) return rows.problem();
  if ((*rows)->areColumnsApart() && !wanted.empty()) {
    std::vector<StoredEvidence> evidence(columns.begin(), columns.end());
    if (const auto cases = ColumnsInTurn(source, wanted, evidence).lookAtAll()) return lookOf(evidence, *cases);
    // Something is wrong: whoever reads row by row meets it where everybody would, whichever thread is faster.
  }
  std::vector<StoredEvidence> evidence(columns.begin(), columns.end());
  const Outcome<std::int64_t> cases = gather(**rows, evidence.data(), evidence.size());
  if (!cases) return cases.problem();
  return lookOf(evidence, *cases);
}

}  // namespace workbench::data
