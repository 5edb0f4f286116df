#include "workbench/data/databases/sqlite_connection.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "workbench/data/files/input_file.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr int millisecondsToWait = 2000;

// Looked at without opening it: to close a file takes the locks away that SQLite holds on it in this process.
Outcome<Done> checkFile(const std::string& file, const std::string& shown) {
  struct stat status{};
  if (::stat(file.c_str(), &status) != 0) {
    return Problem{text::sentence("There is no such file."), shown, text::sentence("Check the name and the folder.")};
  }
  if (!S_ISREG(status.st_mode))
    return Problem{text::sentence("This is no plain file."), shown, text::sentence("Name a database file.")};
  if (::access(file.c_str(), R_OK) != 0) {
    return Problem{text::sentence("The file may not be read."), shown,
                   text::sentence("Ask its owner for the permission to read it.")};
  }
  return Done{};
}

// The same file as a URI, to be read as it lies there, without locks and without looking for files beside it.
std::string immutableUri(const std::string& file) {
  std::string uri = "file:";
  for (const char character : file) {
    const bool isPlain = std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '/';
    uri += isPlain ? std::string(1, character) : fmt::format("%{:02X}", static_cast<unsigned char>(character));
  }
  return uri + "?immutable=1";
}

}  // namespace

Outcome<std::shared_ptr<const SqliteConnection>> SqliteConnection::openForReading(const std::string& file,
                                                                                  const std::string& shown) {
  if (const Outcome<Done> checked = checkFile(file, shown); !checked) return checked.problem();
  constexpr int flags = SQLITE_OPEN_READONLY | SQLITE_OPEN_FULLMUTEX;
  Outcome<std::shared_ptr<const SqliteConnection>> opened = open(file, shown, flags);
  if (!opened) return opened;
  // A schema from anywhere must not make functions run that do more than reckon.
  for (const char* const setting : {"PRAGMA trusted_schema = OFF", "PRAGMA query_only = ON"}) {
    if (const Outcome<Done> set = (*opened)->run(setting); !set) return set.problem();
  }
  if ((*opened)->run("SELECT 1 FROM sqlite_schema")) return opened;
  const int failure = (*opened)->library_.sqlite3_errcode((*opened)->handle_);
  const bool canMakeNoLog = failure == SQLITE_CANTOPEN || failure == SQLITE_READONLY;
  const std::optional<FileIdentity> log = identityAt(file + "-wal");
  if (!canMakeNoLog || (log && log->size != 0) || identityAt(file + "-shm")) return (*opened)->problem();
  // A database that keeps a log, in a folder where none can be made. Nobody writes to it then.
  Outcome<std::shared_ptr<const SqliteConnection>> asItLies = open(immutableUri(file), shown, flags | SQLITE_OPEN_URI);
  if (!asItLies) return asItLies;
  if (const Outcome<Done> read = (*asItLies)->run("SELECT 1 FROM sqlite_schema"); !read) return read.problem();
  return asItLies;
}

Outcome<std::shared_ptr<const SqliteConnection>> SqliteConnection::openForWriting(const std::string& file,
                                                                                  const std::string& shown) {
  return open(file, shown, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX);
}

Outcome<std::shared_ptr<const SqliteConnection>> SqliteConnection::open(const std::string& file,
                                                                        const std::string& shown, int flags) {
  const Outcome<const SqliteLibrary*> library = sqliteLibrary();
  if (!library) return library.problem();
  std::shared_ptr<SqliteConnection> connection(new SqliteConnection(**library, shown));
  // A name that begins like this is none of the special ones.
  const bool isPlain = file.starts_with('/') || (flags & SQLITE_OPEN_URI) != 0;
  const std::string name = isPlain ? file : "./" + file;
  if ((*library)->sqlite3_open_v2(name.c_str(), &connection->handle_, flags, nullptr) != SQLITE_OK) {
    return connection->problem();
  }
  (*library)->sqlite3_busy_timeout(connection->handle_, millisecondsToWait);
  return std::shared_ptr<const SqliteConnection>(std::move(connection));
}

SqliteConnection::~SqliteConnection() { library_.sqlite3_close_v2(handle_); }

Outcome<Done> SqliteConnection::run(std::string_view sql) const {
  sqlite3_stmt* statement = nullptr;
  int state = library_.sqlite3_prepare_v3(handle_, sql.data(), static_cast<int>(sql.size()), 0, &statement, nullptr);
  while (state == SQLITE_OK || state == SQLITE_ROW) state = library_.sqlite3_step(statement);
  if (state == SQLITE_DONE) {
    library_.sqlite3_finalize(statement);
    return Done{};
  }
  Problem problem = this->problem();
  library_.sqlite3_finalize(statement);
  return problem;
}

Problem SqliteConnection::problem() const {
  const std::string message =
      handle_ != nullptr ? library_.sqlite3_errmsg(handle_) : text::sentence("there is not enough memory");
  return {text::sentence("SQLite reports: ^1.", {message}), shown_, ""};
}

Outcome<std::unique_ptr<SqliteStatement>> SqliteStatement::prepare(std::shared_ptr<const SqliteConnection> connection,
                                                                   std::string_view sql) {
  sqlite3_stmt* statement = nullptr;
  const SqliteLibrary& library = connection->library();
  if (library.sqlite3_prepare_v3(connection->handle(), sql.data(), static_cast<int>(sql.size()),
                                 SQLITE_PREPARE_PERSISTENT, &statement, nullptr) != SQLITE_OK) {
    return connection->problem();
  }
  return std::unique_ptr<SqliteStatement>(new SqliteStatement(std::move(connection), statement));
}

SqliteStatement::~SqliteStatement() { library_.sqlite3_finalize(statement_); }

void SqliteStatement::bind(int parameter, std::string_view text) {
  library_.sqlite3_bind_text64(statement_, parameter, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}
void SqliteStatement::bind(int parameter, double number) {
  library_.sqlite3_bind_double(statement_, parameter, number);
}
void SqliteStatement::bindNull(int parameter) { library_.sqlite3_bind_null(statement_, parameter); }

Outcome<bool> SqliteStatement::next() {
  const int state = library_.sqlite3_step(statement_);
  if (state == SQLITE_ROW) return true;
  if (state == SQLITE_DONE) return false;
  return connection_->problem();
}

void SqliteStatement::reset() { library_.sqlite3_reset(statement_); }

int SqliteStatement::columns() const { return library_.sqlite3_column_count(statement_); }

std::string SqliteStatement::name(int column) const { return library_.sqlite3_column_name(statement_, column); }

std::string SqliteStatement::declaredType(int column) const {
  const char* const type = library_.sqlite3_column_decltype(statement_, column);
  return type != nullptr ? type : "";
}

int SqliteStatement::type(int column) const { return library_.sqlite3_column_type(statement_, column); }
std::int64_t SqliteStatement::integer(int column) const { return library_.sqlite3_column_int64(statement_, column); }
double SqliteStatement::real(int column) const { return library_.sqlite3_column_double(statement_, column); }

std::string_view SqliteStatement::text(int column) {
  const auto* const text = reinterpret_cast<const char*>(library_.sqlite3_column_text(statement_, column));
  if (text == nullptr) return "";
  return {text, static_cast<std::size_t>(library_.sqlite3_column_bytes(statement_, column))};
}

std::string_view SqliteStatement::blob(int column) {
  const auto* const bytes = static_cast<const char*>(library_.sqlite3_column_blob(statement_, column));
  if (bytes == nullptr) return "";
  return {bytes, static_cast<std::size_t>(library_.sqlite3_column_bytes(statement_, column))};
}

std::string sqliteName(std::string_view name) {
  std::string quoted = "\"";
  for (const char character : name) quoted += character == '"' ? "\"\"" : std::string(1, character);
  return quoted + '"';
}

}  // namespace workbench::data
