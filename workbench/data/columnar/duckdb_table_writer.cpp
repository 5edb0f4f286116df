#include "workbench/data/columnar/duckdb_table_writer.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <atomic>
#include <filesystem>
#include <system_error>
#include <utility>

#include "host/messages.h"
#include "workbench/data/columnar/attached_database.h"
#include "workbench/data/columnar/duckdb_tables.h"
#include "workbench/data/columnar/stored_case_writer.h"
#include "workbench/data/descriptors/dictionary_check.h"
#include "workbench/data/descriptors/schema_writer.h"
#include "workbench/data/files/database_output.h"
#include "workbench/data/files/duckdb_feed.h"
#include "workbench/data/files/duckdb_query.h"
#include "workbench/data/files/table_reference.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr auto endingsBeside = std::to_array<std::string_view>({".wal"});

Problem inFile(Problem problem, const std::string& file) {
  problem.where = file;
  return problem;
}

// DuckDB holds the file open as long as this is there.
class OpenedForWriting {
 public:
  static Outcome<std::unique_ptr<OpenedForWriting>> open(const std::string& file) {
    static std::atomic<std::uint64_t> made = 0;
    std::unique_ptr<OpenedForWriting> opened(new OpenedForWriting(fmt::format("written_{}", ++made)));
    const auto attached = rowsWritten(fmt::format("ATTACH {} AS {}", sqlText(file), sqlName(opened->name_)));
    if (!attached) return attached.problem();
    opened->isOpen_ = true;
    return opened;
  }
  // A failure here has been one before: what was written is abandoned.
  ~OpenedForWriting() { static_cast<void>(close()); }

  const std::string& name() const { return name_; }  // of the database in SQL
  // All that was written lies in the file.
  Outcome<Done> close() {
    if (!std::exchange(isOpen_, false)) return Done{};
    const Outcome<std::uint64_t> merged = rowsWritten(fmt::format("CHECKPOINT {}", sqlName(name_)));
    const Outcome<std::uint64_t> detached = rowsWritten(fmt::format("DETACH {}", sqlName(name_)));
    if (!merged) return merged.problem();
    if (!detached) return detached.problem();
    return Done{};
  }

 private:
  explicit OpenedForWriting(std::string name) : name_(std::move(name)) {}
  std::string name_;
  bool isOpen_ = false;
};

std::string_view sqlType(duckdb_type type) {
  switch (type) {
    case DUCKDB_TYPE_VARCHAR:
      return "VARCHAR";
    case DUCKDB_TYPE_DATE:
      return "DATE";
    case DUCKDB_TYPE_TIME:
      return "TIME";
    case DUCKDB_TYPE_TIMESTAMP:
      return "TIMESTAMP";
    default:
      return "DOUBLE";
  }
}

// The table in a database of that name in SQL.
std::string tableIn(const std::string& database, const DuckDbTableName& table) {
  return fmt::format("{}.{}.{}", sqlName(database), sqlName(table.schema), sqlName(table.name));
}

class DuckDbTableOutput final : public StoredOutput {
 public:
  DuckDbTableOutput(std::unique_ptr<DatabaseOutput> file, std::unique_ptr<OpenedForWriting> database,
                    std::vector<DuckDbColumn> columns)
      : file_(std::move(file)),
        database_(std::move(database)),
        feed_(std::move(columns), {.endedEarly = [this] { finishStatement(); }}) {}

  Outcome<Done> start(const std::string& table) {
    return feed_.start(fmt::format("INSERT INTO {} FROM {}", table, feed_.table()));
  }

  DuckDbFeed& rows() override { return feed_; }
  void complete() override {
    feed_.end();
    finishStatement();
    if (const Outcome<Done> closed = database_->close(); !closed) {
      throw ErrorText(inFile(closed.problem(), file_->file()).text());
    }
    file_->complete();
  }
  void commit() override { file_->commit(); }

 private:
  void finishStatement() {
    const Outcome<std::uint64_t>& written = feed_.written();
    if (!written) throw ErrorText(inFile(written.problem(), file_->file()).text());
    if (*written != feed_.rowsMade()) {
      throw ErrorText(
          text::sentence("^1: ^2 rows were to be written, and ^3 were; please report this as a fault of this program.",
                         {file_->file(), fmt::to_string(feed_.rowsMade()), fmt::to_string(*written)}));
    }
  }

  std::unique_ptr<DatabaseOutput> file_;
  std::unique_ptr<OpenedForWriting> database_;  // closed before the file goes
  DuckDbFeed feed_;                             // its statement ends before the database is closed
};

// DuckDB reads the original meanwhile: it refuses one that another program writes to.
Outcome<Done> copyDatabase(const DatabaseOutput& output) {
  const Outcome<std::shared_ptr<const AttachedDatabase>> original = AttachedDatabase::open(output.file());
  if (!original) return original.problem();
  std::error_code failure;
  std::filesystem::copy_file(output.file(), output.privatePath(), failure);
  if (!failure) {
    std::filesystem::permissions(output.privatePath(), std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::add, failure);
  }
  if (failure)
    return Problem{text::sentence("The database cannot be copied (^1).", {failure.message()}), output.file(), ""};
  return Done{};
}

}  // namespace

Outcome<std::unique_ptr<CaseWriter>> createDuckDbTable(const std::string& path, const Dictionary& dictionary,
                                                       const Secret& password) {
  const auto [file, wanted] = tableReference(path);
  if (!password.empty()) {
    return Problem{text::sentence("A database is not written as a protected file."), path,
                   text::sentence("Name a text file or a Parquet file.")};
  }
  if (const Outcome<Done> enabled = DuckDbRowQueue::enable(); !enabled) return enabled.problem();
  const std::string fileName = std::filesystem::path(file).stem().string();
  WritableDictionary written = writablePartOf(dictionary);
  const Outcome<std::string> resource = resourceText(wanted.empty() ? fileName : wanted, written.dictionary);
  if (!resource) return inFile(resource.problem(), path);

  // 1. A private file: a copy of the database, or a new one.
  Outcome<std::unique_ptr<DatabaseOutput>> output = DatabaseOutput::create(file, endingsBeside);
  if (!output) return output.problem();
  if ((*output)->isAdditional()) {
    if (const Outcome<Done> copied = copyDatabase(**output); !copied) return copied.problem();
  }
  Outcome<std::unique_ptr<OpenedForWriting>> database = OpenedForWriting::open((*output)->privatePath());
  if (!database) return inFile(database.problem(), file);

  // 2. An empty table, with its dictionary.
  const Outcome<DuckDbTableName> name = tableToWrite((*database)->name(), wanted.empty() ? fileName : wanted);
  if (!name) return inFile(name.problem(), file);
  const std::string table = tableIn((*database)->name(), *name);
  const std::vector<DuckDbColumn> columns = storedColumnsOf(dictionary);
  std::vector<std::string> typed;
  for (const DuckDbColumn& column : columns) {
    typed.push_back(fmt::format("{} {}", sqlName(column.name), sqlType(column.type)));
  }
  for (const std::string& statement : {fmt::format("CREATE OR REPLACE TABLE {} ({})", table, fmt::join(typed, ", ")),
                                       fmt::format("COMMENT ON TABLE {} IS {}", table, sqlText(*resource))}) {
    if (const Outcome<std::uint64_t> done = rowsWritten(statement); !done) return inFile(done.problem(), file);
  }

  // 3. The cases as they come.
  auto rows = std::make_unique<DuckDbTableOutput>(std::move(*output), std::move(*database), columns);
  if (const Outcome<Done> started = rows->start(table); !started) return inFile(started.problem(), file);
  return storedCaseWriter(std::move(rows), path, dictionary, std::move(written.losses));
}

}  // namespace workbench::data
