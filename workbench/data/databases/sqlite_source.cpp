#include "workbench/data/databases/sqlite_source.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "workbench/data/databases/sqlite_cells.h"
#include "workbench/data/databases/sqlite_connection.h"
#include "workbench/data/files/input_file.h"
#include "workbench/data/files/name_ending.h"
#include "workbench/data/files/protected_name.h"
#include "workbench/data/files/table_choice.h"
#include "workbench/data/files/table_reference.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

using SharedConnection = std::shared_ptr<const SqliteConnection>;

Outcome<std::vector<std::string>> textsOf(const SharedConnection& connection, std::string_view sql) {
  const Outcome<std::unique_ptr<SqliteStatement>> statement = SqliteStatement::prepare(connection, sql);
  if (!statement) return statement.problem();
  std::vector<std::string> texts;
  for (;;) {
    const Outcome<bool> isThere = (*statement)->next();
    if (!isThere) return isThere.problem();
    if (!*isThere) return texts;
    texts.emplace_back((*statement)->text(0));
  }
}

// In their order; those of SQLite's own and that of the dictionaries are left out.
Outcome<std::vector<std::string>> tablesIn(const SharedConnection& connection) {
  return textsOf(connection, fmt::format("SELECT name FROM sqlite_schema WHERE type IN ('table', 'view') AND name NOT "
                                         "LIKE 'sqlite\\_%' ESCAPE '\\' AND name <> '{}' ORDER BY name",
                                         sqliteResourceTable));
}

std::string stateOf(const std::string& file) {
  const std::optional<FileIdentity> is = identityAt(file);
  return is ? is->text() : "-";
}

// Rows come by their number; in a table that has none by the primary key; in a view in its own order.
Outcome<std::string> orderOf(const SharedConnection& connection, const std::string& table,
                             const std::vector<KnownColumn>& columns) {
  const Outcome<std::unique_ptr<SqliteStatement>> kind = SqliteStatement::prepare(
      connection, "SELECT type, wr FROM pragma_table_list WHERE schema = 'main' AND name = ?1");
  if (!kind) return kind.problem();
  (*kind)->bind(1, table);
  const Outcome<bool> isThere = (*kind)->next();
  if (!isThere) return isThere.problem();
  if (!*isThere || (*kind)->text(0) != "table") return std::string();
  if ((*kind)->integer(1) == 0) {
    for (const std::string_view name : {"rowid", "_rowid_", "oid"}) {
      const bool isColumn = std::any_of(columns.begin(), columns.end(), [&](const KnownColumn& column) {
        return column.name.size() == name.size() && hasEnding(column.name, name);
      });
      if (!isColumn) return fmt::format(" ORDER BY {}", name);
    }
    return std::string();
  }
  const Outcome<std::unique_ptr<SqliteStatement>> key =
      SqliteStatement::prepare(connection, "SELECT name FROM pragma_table_info(?1) WHERE pk > 0 ORDER BY pk");
  if (!key) return key.problem();
  (*key)->bind(1, table);
  std::vector<std::string> names;
  for (;;) {
    const Outcome<bool> hasNext = (*key)->next();
    if (!hasNext) return hasNext.problem();
    if (!*hasNext) return fmt::format(" ORDER BY {}", fmt::join(names, ", "));
    names.push_back(sqliteName((*key)->text(0)));
  }
}

Outcome<std::vector<KnownColumn>> columnsIn(const SharedConnection& connection, const std::string& table) {
  const Outcome<std::unique_ptr<SqliteStatement>> statement =
      SqliteStatement::prepare(connection, fmt::format("SELECT * FROM {} LIMIT 0", sqliteName(table)));
  if (!statement) return statement.problem();
  std::vector<KnownColumn> columns;
  for (int column = 0; column < (*statement)->columns(); ++column) {
    columns.push_back(sqliteColumn((*statement)->name(column), (*statement)->declaredType(column)));
  }
  return columns;
}

class SqliteSource final : public RowSource {
 public:
  // A transaction for reading is open from here on: whoever writes meanwhile waits, or writes into a log of his own.
  static Outcome<std::shared_ptr<const RowSource>> open(const std::string& path, const std::string& file,
                                                        const std::string& wanted) {
    Outcome<SharedConnection> connection = SqliteConnection::openForReading(file, file);
    if (!connection) return connection.problem();
    if (const Outcome<Done> begun = (*connection)->run("BEGIN"); !begun) return begun.problem();
    const Outcome<std::vector<std::string>> tables = tablesIn(*connection);
    if (!tables) return tables.problem();
    Outcome<std::string> table = chosenTable(*tables, wanted, file);
    if (!table) return table.problem();
    auto source = std::make_shared<SqliteSource>();
    source->path_ = path;
    source->file_ = file;
    source->table_ = std::move(*table);
    source->connection_ = std::move(*connection);
    if (const Outcome<Done> described = source->lookAtTable(); !described) return described.problem();
    return std::shared_ptr<const RowSource>(std::move(source));
  }

  const std::string& path() const override { return path_; }
  std::vector<std::string> files() const override { return {file_}; }
  const std::string& identity() const override { return identity_; }
  const std::vector<KnownColumn>& columns() const override { return columns_; }
  Outcome<std::optional<std::string>> resource() const override;
  Outcome<std::int64_t> countRows() const override;
  Outcome<std::unique_ptr<RowCursor>> open(const std::vector<std::size_t>& columns) const override;

  // A file in whose place another one stands, or that somebody changed without asking SQLite.
  Outcome<Done> checkUnchanged() const {
    if (keepsLog_ || stateOf(file_) == state_) return Done{};
    return Problem{text::sentence("The data have changed since they were opened; open them again."), path_, ""};
  }

 private:
  Outcome<Done> lookAtTable();

  std::string path_;
  std::string file_;
  std::string table_;
  SharedConnection connection_;
  std::string state_;      // of the file
  bool keepsLog_ = false;  // what is written to the file while it is read may be older than what is read
  std::string identity_;
  std::vector<KnownColumn> columns_;
  std::string order_;  // an ORDER BY, or nothing
};

Outcome<Done> SqliteSource::lookAtTable() {
  const Outcome<std::vector<std::string>> journal = textsOf(connection_, "PRAGMA journal_mode");
  if (!journal) return journal.problem();
  keepsLog_ = !journal->empty() && journal->front() == "wal";
  state_ = stateOf(file_);
  identity_ = fmt::format("{}|{}|{}|{}", path_, state_, stateOf(file_ + "-wal"), table_);
  Outcome<std::vector<KnownColumn>> columns = columnsIn(connection_, table_);
  if (!columns) return columns.problem();
  columns_ = std::move(*columns);
  Outcome<std::string> order = orderOf(connection_, table_, columns_);
  if (!order) return order.problem();
  order_ = std::move(*order);
  return Done{};
}

Outcome<std::optional<std::string>> SqliteSource::resource() const {
  const Outcome<std::unique_ptr<SqliteStatement>> isThere =
      SqliteStatement::prepare(connection_, "SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?1");
  if (!isThere) return isThere.problem();
  (*isThere)->bind(1, std::string_view(sqliteResourceTable));
  const Outcome<bool> hasTable = (*isThere)->next();
  if (!hasTable) return hasTable.problem();
  if (!*hasTable) return std::optional<std::string>();
  const Outcome<std::unique_ptr<SqliteStatement>> statement = SqliteStatement::prepare(
      connection_, fmt::format("SELECT resource FROM {} WHERE name = ?1", sqliteName(sqliteResourceTable)));
  if (!statement) return statement.problem();
  (*statement)->bind(1, table_);
  const Outcome<bool> hasRow = (*statement)->next();
  if (!hasRow) return hasRow.problem();
  return *hasRow ? std::optional(std::string((*statement)->text(0))) : std::nullopt;
}

Outcome<std::int64_t> SqliteSource::countRows() const {
  const Outcome<std::unique_ptr<SqliteStatement>> statement =
      SqliteStatement::prepare(connection_, fmt::format("SELECT count(*) FROM {}", sqliteName(table_)));
  if (!statement) return statement.problem();
  const Outcome<bool> isThere = (*statement)->next();
  if (!isThere) return isThere.problem();
  return (*statement)->integer(0);
}

class SqliteCursor final : public RowCursor {
 public:
  SqliteCursor(const SqliteSource& source, std::unique_ptr<SqliteStatement> statement, std::vector<KnownColumn> columns)
      : source_(source), statement_(std::move(statement)), cells_(source.path(), std::move(columns)) {}

  Outcome<Done> next(CellBatch& batch) override {
    constexpr std::size_t mostRows = 2048;
    constexpr std::size_t mostBytes = std::size_t{1} << 20;
    batch.clear();
    while (!hasEnded_ && batch.records() < mostRows && batch.ownBytes() < mostBytes) {
      const Outcome<bool> isThere = statement_->next();
      if (!isThere) return isThere.problem();
      if (!*isThere) {
        hasEnded_ = true;
        if (Outcome<Done> unchanged = source_.checkUnchanged(); !unchanged) return unchanged;
        break;
      }
      if (const Outcome<Done> added = cells_.add(*statement_, ++row_, batch); !added) return added;
      batch.endRecord();
    }
    batch.finish(cells_.columns());
    return Done{};
  }
  std::vector<std::string> warnings() const override { return cells_.warnings(); }

 private:
  const SqliteSource& source_;
  std::unique_ptr<SqliteStatement> statement_;
  SqliteCells cells_;
  std::uint64_t row_ = 0;
  bool hasEnded_ = false;
};

Outcome<std::unique_ptr<RowCursor>> SqliteSource::open(const std::vector<std::size_t>& columns) const {
  if (const Outcome<Done> unchanged = checkUnchanged(); !unchanged) return unchanged.problem();
  std::vector<std::string> names;
  std::vector<KnownColumn> chosen;
  for (const std::size_t column : columns) {
    chosen.push_back(columns_[column]);
    names.push_back(sqliteName(columns_[column].name));
  }
  Outcome<std::unique_ptr<SqliteStatement>> statement = SqliteStatement::prepare(
      connection_, fmt::format("SELECT {} FROM {}{}", fmt::join(names, ", "), sqliteName(table_), order_));
  if (!statement) return statement.problem();
  return std::unique_ptr<RowCursor>(std::make_unique<SqliteCursor>(*this, std::move(*statement), std::move(chosen)));
}

}  // namespace

Outcome<std::shared_ptr<const RowSource>> openSqliteTable(const std::string& path) {
  const auto [file, wanted] = tableReference(path);
  if (isProtectedName(file)) {
    return Problem{text::sentence("A database is not read from a protected file."), path,
                   text::sentence("Decrypt it first.")};
  }
  return SqliteSource::open(path, file, wanted);
}

}  // namespace workbench::data
