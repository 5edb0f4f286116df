#include "workbench/data/databases/sqlite_table_writer.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <optional>
#include <utility>

#include "host/messages.h"
#include "workbench/data/cells/calendar_text.h"
#include "workbench/data/cells/system_missing.h"
#include "workbench/data/databases/sqlite_connection.h"
#include "workbench/data/databases/sqlite_source.h"
#include "workbench/data/descriptors/dictionary_check.h"
#include "workbench/data/descriptors/schema_writer.h"
#include "workbench/data/files/database_output.h"
#include "workbench/data/files/refused_value.h"
#include "workbench/data/files/table_reference.h"
#include "workbench/text/string_comparison.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

using SharedConnection = std::shared_ptr<const SqliteConnection>;

// Those that may hold changes.
constexpr auto filesBeside = std::to_array<std::string_view>({"-journal", "-wal"});

std::string_view declaredType(const Variable& variable) {
  if (!variable.isNumeric()) return "TEXT";
  switch (variable.format.type) {
    case FormatType::date:
      return "DATE";
    case FormatType::time:
      return "TIME";
    case FormatType::dateTime:
      return "DATETIME";
    default:
      return "REAL";
  }
}

class SqliteCaseWriter final : public CaseWriter {
 public:
  SqliteCaseWriter(std::unique_ptr<DatabaseOutput> output, SharedConnection connection,
                   std::unique_ptr<SqliteStatement> insertion, std::string path, const Dictionary& dictionary,
                   std::vector<std::string> losses)
      : output_(std::move(output)),
        connection_(std::move(connection)),
        insertion_(std::move(insertion)),
        path_(std::move(path)),
        dictionary_(dictionary),
        layout_(dictionary_),
        losses_(std::move(losses)) {}

  std::vector<std::string> warnings() const override { return losses_; }
  void append(const OBS* cases, std::size_t count, std::size_t caseSlots) override {
    for (std::size_t index = 0; index < count; ++index, cases += caseSlots) writeCase(cases);
  }
  void complete() override {
    insertion_.reset();
    const Outcome<Done> written = connection_->run("COMMIT");
    if (!written) throw ErrorText(written.problem().text());
    connection_.reset();
    output_->complete();
  }
  void commit() override { output_->commit(); }

 private:
  void writeCase(const OBS* values) {
    for (std::int32_t index = 0; index < dictionary_.size(); ++index) {
      bind(index, values + layout_.slotOfVariable[static_cast<std::size_t>(index)]);
    }
    const Outcome<bool> inserted = insertion_->next();
    if (!inserted) throw ErrorText(inserted.problem().text());
    insertion_->reset();
    ++casesWritten_;
  }

  void bind(std::int32_t index, const OBS* value) {
    const Variable& variable = dictionary_.at(index);
    const int parameter = index + 1;
    if (!variable.isNumeric()) {
      const std::string_view text =
          text::withoutTrailingBlanks({value->text, static_cast<std::size_t>(variable.width)});
      if (const char* const why = problemOfText(text)) refuse(variable, why);
      if (text.empty()) {
        insertion_->bindNull(parameter);
      } else {
        insertion_->bind(parameter, text);
      }
    } else if (value->number == systemMissing) {
      insertion_->bindNull(parameter);
    } else {
      bindNumber(variable, parameter, value->number);
    }
  }

  void bindNumber(const Variable& variable, int parameter, double number) {
    if (!std::isfinite(number)) refuse(variable, noFiniteNumber);
    std::optional<std::string> text;
    const char* why = nullptr;
    switch (variable.format.type) {
      case FormatType::date:
        text = dateText(number);
        why =
            "In case ^1 the value of \"^2\" is ^3, which is no day of the calendar, so it cannot be written; correct "
            "the "
            "value.";
        break;
      case FormatType::time:
        text = timeText(number);
        why =
            "In case ^1 the value of \"^2\" is ^3, which is no time of a day, so it cannot be written; correct the "
            "value.";
        break;
      case FormatType::dateTime:
        text = dateTimeText(number);
        why =
            "In case ^1 the value of \"^2\" is ^3, which is no date with a time, so it cannot be written; correct the "
            "value.";
        break;
      default:
        insertion_->bind(parameter, number);
        return;
    }
    if (!text) refuse(variable, why, fmt::to_string(number));
    insertion_->bind(parameter, *text);
  }

  [[noreturn]] void refuse(const Variable& variable, std::string_view why, std::string_view value = {}) const {
    refuseValue(path_, casesWritten_ + 1, variable, why, value);
  }

  std::unique_ptr<DatabaseOutput> output_;
  SharedConnection connection_;  // closed before the output goes
  std::unique_ptr<SqliteStatement> insertion_;
  std::string path_;
  Dictionary dictionary_;
  CaseLayout layout_;
  std::vector<std::string> losses_;
  std::uint64_t casesWritten_ = 0;
};

// All of it, as one reader sees it.
Outcome<Done> copyDatabase(const DatabaseOutput& output, const SqliteConnection& copy) {
  const Outcome<SharedConnection> original = SqliteConnection::openForReading(output.file(), output.file());
  if (!original) return original.problem();
  const SqliteLibrary& library = copy.library();
  sqlite3_backup* const backup = library.sqlite3_backup_init(copy.handle(), "main", (*original)->handle(), "main");
  if (backup == nullptr) return copy.problem();
  library.sqlite3_backup_step(backup, -1);
  if (const int state = library.sqlite3_backup_finish(backup); state != SQLITE_OK) {
    return Problem{text::sentence("The database cannot be copied (^1).", {library.sqlite3_errstr(state)}),
                   output.file(), ""};
  }
  return Done{};
}

// An empty table of that name in the place of another one, and its dictionary in the place of that one's.
Outcome<Done> makeTable(const SharedConnection& connection, const std::string& table, const Dictionary& dictionary,
                        const std::string& resource) {
  std::vector<std::string> columns;
  for (const Variable& variable : dictionary.variables()) {
    columns.push_back(fmt::format("{} {}", sqliteName(variable.name), declaredType(variable)));
  }
  const std::string resources = sqliteName(sqliteResourceTable);
  for (const std::string& sql :
       {fmt::format("DROP TABLE IF EXISTS {}", sqliteName(table)),
        fmt::format("CREATE TABLE {} ({})", sqliteName(table), fmt::join(columns, ", ")),
        fmt::format("CREATE TABLE IF NOT EXISTS {} (name TEXT PRIMARY KEY COLLATE NOCASE, resource TEXT NOT NULL)",
                    resources)}) {
    if (const Outcome<Done> made = connection->run(sql); !made) return made;
  }
  const Outcome<std::unique_ptr<SqliteStatement>> kept = SqliteStatement::prepare(
      connection, fmt::format("INSERT OR REPLACE INTO {} (name, resource) VALUES (?1, ?2)", resources));
  if (!kept) return kept.problem();
  (*kept)->bind(1, std::string_view(table));
  (*kept)->bind(2, std::string_view(resource));
  const Outcome<bool> written = (*kept)->next();
  return written ? Outcome<Done>(Done{}) : written.problem();
}

}  // namespace

Outcome<std::unique_ptr<CaseWriter>> createSqliteTable(const std::string& path, const Dictionary& dictionary,
                                                       const Secret& password) {
  const auto [file, wanted] = tableReference(path);
  if (!password.empty()) {
    return Problem{text::sentence("A database is not written as a protected file."), path,
                   text::sentence("Name a text file or a Parquet file.")};
  }
  const std::string table = wanted.empty() ? std::filesystem::path(file).stem().string() : wanted;
  if (table == sqliteResourceTable) {
    return Problem{text::sentence("The dictionaries of the tables are kept under this name."), path,
                   text::sentence("Name another table.")};
  }
  WritableDictionary written = writablePartOf(dictionary);
  const Outcome<std::string> resource = resourceText(table, written.dictionary);
  if (!resource) return Problem{resource.problem().what, path, resource.problem().remedy};

  // 1. A private file: a copy of the database, or a new one.
  Outcome<std::unique_ptr<DatabaseOutput>> output = DatabaseOutput::create(file, filesBeside);
  if (!output) return output.problem();
  Outcome<SharedConnection> connection = SqliteConnection::openForWriting((*output)->privatePath(), file);
  if (!connection) return connection.problem();
  if ((*output)->isAdditional()) {
    if (const Outcome<Done> copied = copyDatabase(**output, **connection); !copied) return copied.problem();
  }
  // Whatever befalls the private file, nobody needs it then.
  for (const char* const setting : {"PRAGMA journal_mode = OFF", "PRAGMA synchronous = OFF", "BEGIN"}) {
    if (const Outcome<Done> set = (*connection)->run(setting); !set) return set.problem();
  }

  // 2. An empty table, with its dictionary.
  if (const Outcome<Done> made = makeTable(*connection, table, dictionary, *resource); !made) return made.problem();

  // 3. The cases as they come.
  std::vector<std::string> parameters;
  for (std::int32_t index = 0; index < dictionary.size(); ++index) parameters.push_back(fmt::format("?{}", index + 1));
  Outcome<std::unique_ptr<SqliteStatement>> insertion = SqliteStatement::prepare(
      *connection, fmt::format("INSERT INTO {} VALUES ({})", sqliteName(table), fmt::join(parameters, ", ")));
  if (!insertion) return insertion.problem();
  return std::unique_ptr<CaseWriter>(std::make_unique<SqliteCaseWriter>(
      std::move(*output), std::move(*connection), std::move(*insertion), path, dictionary, std::move(written.losses)));
}

}  // namespace workbench::data
