#include "workbench/data/databases/postgres_source.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <optional>
#include <utility>

#include "workbench/data/databases/postgres_lines.h"
#include "workbench/data/databases/postgres_tables.h"
#include "workbench/data/descriptors/find_description.h"
#include "workbench/data/files/server_reference.h"
#include "workbench/data/files/table_reference.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

class PostgresSource final : public RowSource {
 public:
  static Outcome<std::shared_ptr<const RowSource>> open(const std::string& path, const std::string& wanted) {
    auto source = std::make_shared<PostgresSource>();
    source->path_ = path;
    Outcome<std::shared_ptr<const PostgresDatabase>> database = PostgresDatabase::open(path);
    if (!database) return database.problem();
    source->database_ = std::move(*database);
    if (const Outcome<Done> found = source->lookAtTable(wanted); !found) return found.problem();
    return std::shared_ptr<const RowSource>(std::move(source));
  }

  const std::string& path() const override { return path_; }
  std::vector<std::string> files() const override { return {}; }
  const std::string& identity() const override { return identity_; }
  const std::vector<KnownColumn>& columns() const override { return known_; }
  Outcome<std::optional<std::string>> resource() const override {
    return isResource(table_.comment) ? std::optional(table_.comment) : std::nullopt;
  }
  Outcome<std::int64_t> countRows() const override {
    const Outcome<PostgresRows> rows =
        database_->rows(fmt::format("SELECT pg_catalog.count(*) FROM {}", sqlNameOf(table_)));
    if (!rows) return inTable(rows.problem());
    return std::stoll(rows->front().front());
  }
  bool bringsIntoOrder() const override { return true; }
  Outcome<std::unique_ptr<RowCursor>> open(const std::vector<std::size_t>& columns,
                                           const std::vector<std::size_t>& orderedBy) const override;

  // What went wrong with the table, not with the whole database.
  Problem inTable(Problem problem) const {
    problem.where = path_;
    return problem;
  }

 private:
  Outcome<Done> lookAtTable(const std::string& wanted) {
    Outcome<PostgresTable> table = postgresTable(*database_, wanted);
    if (!table) return table.problem();
    table_ = std::move(*table);
    Outcome<std::vector<PostgresColumn>> columns = columnsOf(*database_, table_);
    if (!columns) return inTable(columns.problem());
    columns_ = std::move(*columns);
    if (columns_.empty()) return Problem{text::sentence("The table has no columns."), path_, ""};
    Outcome<std::vector<PostgresColumn>> key = keyOf(*database_, table_);
    if (!key) return inTable(key.problem());
    key_ = std::move(*key);
    for (const PostgresColumn& column : columns_) known_.push_back(knownColumn(column));
    identity_ = fmt::format("{}|{}", database_->identity(), table_.id);
    return Done{};
  }
  // What is to stand behind ORDER BY; empty: nothing.
  std::string orderOf(const std::vector<std::size_t>& columns) const;
  std::string query(const std::vector<std::size_t>& columns, const std::string& order) const;

  std::string path_;  // with hidden passwords
  std::shared_ptr<const PostgresDatabase> database_;
  PostgresTable table_;
  std::vector<PostgresColumn> columns_;
  std::vector<PostgresColumn> key_;
  std::vector<KnownColumn> known_;
  std::string identity_;
};

class PostgresCursor final : public RowCursor {
 public:
  PostgresCursor(const PostgresSource& source, std::unique_ptr<PostgresConnection> connection,
                 std::vector<KnownColumn> columns)
      : source_(source), connection_(std::move(connection)), columns_(std::move(columns)) {}

  Outcome<Done> next(CellBatch& batch) override {
    constexpr std::size_t mostRows = 2048;
    constexpr std::size_t mostBytes = std::size_t{1} << 20;
    batch.clear();
    while (connection_ != nullptr && batch.records() < mostRows && batch.ownBytes() < mostBytes) {
      const Outcome<std::optional<std::string_view>> line = connection_->nextLine();
      if (!line) return source_.inTable(line.problem());
      if (!*line) {
        connection_.reset();
        break;
      }
      if (const Outcome<Done> added = add(**line, batch); !added) return added;
    }
    markTexts(batch);
    batch.finish(columns_.size());
    return Done{};
  }

 private:
  Outcome<Done> add(std::string_view line, CellBatch& batch) {
    const auto refusal = [&](const std::string& what) {
      return Problem{what, text::sentence("^1, row ^2", {source_.path(), fmt::to_string(row_)}), ""};
    };
    ++row_;
    if (line.size() > CellBatch::mostBytes) return refusal(text::sentence("The row is longer than is read."));
    const std::size_t cells = addCopiedLine(line, columns_.size(), row_, batch);
    if (cells != columns_.size()) return refusal(text::sentence("The server sent a row that is not whole."));
    batch.endRecord();
    return Done{};
  }

  void markTexts(CellBatch& batch) const {
    for (std::size_t column = 0; column < columns_.size(); ++column) {
      if (columns_[column].kind == CellKind::text) batch.markText(column);
    }
  }

  const PostgresSource& source_;
  std::unique_ptr<PostgresConnection> connection_;  // null: all has been read
  std::vector<KnownColumn> columns_;
  std::uint64_t row_ = 0;
};

// Rows have no order of their own on a server. Those of a table with a primary key come in its order, which is how
// cases are sorted by it; of any other one as they lie there, whatever columns are read: not by an index that holds
// these, nor by another plan of a view.
std::string PostgresSource::orderOf(const std::vector<std::size_t>& columns) const {
  if (columns.empty()) return orderedBy(key_, KeyNulls::none);
  std::vector<PostgresColumn> key;
  for (const std::size_t column : columns) key.push_back(columns_[column]);
  return orderedBy(key, KeyNulls::first);
}

std::string PostgresSource::query(const std::vector<std::size_t>& columns, const std::string& order) const {
  std::vector<std::string> expressions;
  for (const std::size_t column : columns) expressions.push_back(fetchedExpression(columns_[column]));
  const bool isPartOfView = !table_.isStored && columns.size() < columns_.size();
  if (isPartOfView) expressions.push_back(fmt::format("pg_catalog.num_nulls({}.*)", postgresRow));
  return fmt::format("COPY (SELECT {} FROM {} AS {}{}) TO STDOUT", fmt::join(expressions, ", "), sqlNameOf(table_),
                     postgresRow, order.empty() ? "" : " ORDER BY " + order);
}

Outcome<std::unique_ptr<RowCursor>> PostgresSource::open(const std::vector<std::size_t>& columns,
                                                         const std::vector<std::size_t>& orderedBy) const {
  const std::string order = orderOf(orderedBy);
  Outcome<std::unique_ptr<PostgresConnection>> connection = database_->connect();
  if (!connection) return connection.problem();
  if (table_.isStored && order.empty()) {
    const Outcome<Done> set =
        (*connection)->run("SET enable_indexscan = off; SET enable_indexonlyscan = off; SET enable_bitmapscan = off");
    if (!set) return set.problem();
  }
  if (const Outcome<Done> started = (*connection)->startCopy(query(columns, order)); !started)
    return inTable(started.problem());
  std::vector<KnownColumn> chosen;
  for (const std::size_t column : columns) chosen.push_back(known_[column]);
  return std::unique_ptr<RowCursor>(std::make_unique<PostgresCursor>(*this, std::move(*connection), std::move(chosen)));
}

}  // namespace

Outcome<std::shared_ptr<const RowSource>> openPostgresTable(const std::string& path) {
  const std::string hidden = withHiddenPasswords(path);
  return PostgresSource::open(hidden, tableReference(hidden).table);
}

}  // namespace workbench::data
