#include "workbench/data/databases/postgres_connection.h"

#include <algorithm>
#include <array>
#include <utility>

#include "workbench/data/files/server_reference.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// As one line, without the mark at its end.
std::string oneLine(std::string_view message) {
  std::string line;
  for (const char character : message) {
    const bool isBlank = character == ' ' || character == '\n' || character == '\t' || character == '\r';
    if (!isBlank) line += character;
    if (isBlank && !line.empty() && line.back() != ' ') line += ' ';
  }
  while (!line.empty() && (line.back() == ' ' || line.back() == '.' || line.back() == '?')) line.pop_back();
  return line;
}

void ignoreNotice(void* /*nothing*/, const char* /*message*/) {}

// What a session would else take from the server, the database or the user, and what would part the order of rows that
// nobody asked for from one reading to the next. Functions and tables of others are never found by their names alone.
constexpr const char* settings =
    "SET search_path = '';"
    "SET standard_conforming_strings = on;"
    "SET datestyle = 'ISO, YMD';"
    "SET intervalstyle = 'postgres';"
    "SET timezone = 'UTC';"
    "SET bytea_output = 'hex';"
    "SET xmlbinary = 'base64';"
    "SET extra_float_digits = 3;"
    "SET lc_monetary = 'C';"
    "SET synchronize_seqscans = off;"
    "SET max_parallel_workers_per_gather = 0;"
    "SELECT pg_catalog.set_config(name, '0', false) FROM pg_catalog.pg_settings WHERE name IN ("
    "'idle_in_transaction_session_timeout', 'idle_session_timeout', 'transaction_timeout')";

}  // namespace

Outcome<std::unique_ptr<PostgresConnection>> PostgresConnection::open(const std::string& reference) {
  const Outcome<const PostgresLibrary*> library = postgresLibrary();
  if (!library) return library.problem();
  const std::string hidden = withHiddenPasswords(reference);
  std::unique_ptr<PostgresConnection> connection(
      new PostgresConnection(**library, hidden.substr(0, tableSignOf(hidden))));
  if (const Outcome<Done> connected = connection->connect(hidden); !connected) return connected.problem();
  if (const Outcome<Done> settled = connection->settle(); !settled) return settled.problem();
  return connection;
}

PostgresConnection::~PostgresConnection() {
  if (line_ != nullptr) library_.PQfreemem(line_);
  library_.PQfinish(handle_);
}

Outcome<Done> PostgresConnection::connect(const std::string& reference) {
  std::string uri(uriOf(reference).view());
  if (Outcome<Done> checked = checkReference(uri); !checked) return checked;
  // What comes later counts, whatever the URI or the environment says.
  constexpr auto names =
      std::to_array<const char*>({"dbname", "client_encoding", "fallback_application_name", nullptr});
  const std::array<const char*, names.size()> values{uri.c_str(), "UTF8", "compare-datasets", nullptr};
  constexpr int expandsDatabaseName = 1;
  handle_ = library_.PQconnectdbParams(names.data(), values.data(), expandsDatabaseName);
  wipe(uri);
  if (library_.PQstatus(handle_) != CONNECTION_OK) {
    return Problem{
        text::sentence("There is no connection to the database: ^1.", {oneLine(library_.PQerrorMessage(handle_))}),
        shown_, text::sentence("Check the server, the user and the password, for which ~/.pgpass is the place.")};
  }
  library_.PQsetNoticeProcessor(handle_, ignoreNotice, nullptr);
  return Done{};
}

// Whatever the library says of a reference that it cannot read may hold a part of a password.
Outcome<Done> PostgresConnection::checkReference(const std::string& uri) const {
  char* message = nullptr;
  PQconninfoOption* const options = library_.PQconninfoParse(uri.c_str(), &message);
  const std::string why = message != nullptr ? oneLine(message) : "";
  if (message != nullptr) library_.PQfreemem(message);
  const bool isHidden = shown_ != uri;
  if (options == nullptr && !isHidden) {
    return Problem{text::sentence("This is no reference to a database: ^1.", {why}), shown_, ""};
  }
  std::string found;
  for (const PQconninfoOption* option = options; option != nullptr && option->keyword != nullptr; ++option) {
    if (std::string_view(option->keyword) == "password" && option->val != nullptr) found = option->val;
  }
  library_.PQconninfoFree(options);
  const std::optional<std::string> password = passwordBeforeServer(uri);
  const bool isMeant = !password || *password == found || uri.find("password=") != std::string::npos;
  wipe(found);
  if (options != nullptr && isMeant) return Done{};
  return Problem{
      text::sentence("This is no reference to a database, perhaps because of how its password is written."), shown_,
      text::sentence("Write signs in it as % and two hexadecimal digits (%40 is @), or put it into ~/.pgpass.")};
}

Outcome<Done> PostgresConnection::settle() {
  if (Outcome<Done> waits = run("SET statement_timeout = 0"); !waits) return waits;
  const Outcome<PostgresRows> path =
      rows("SELECT pg_catalog.unnest(pg_catalog.current_schemas(false))::pg_catalog.text");
  if (!path) return path.problem();
  for (const std::vector<std::string>& row : *path) searchPath_.push_back(row.front());
  return run(settings);
}

bool PostgresConnection::isLost() const { return library_.PQstatus(handle_) != CONNECTION_OK; }

Outcome<Done> PostgresConnection::run(const std::string& sql) const {
  const Result result = resultOf(sql);
  const ExecStatusType status = library_.PQresultStatus(result.get());
  if (status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK) return Done{};
  return problem(result.get());
}

Outcome<PostgresRows> PostgresConnection::rows(const std::string& sql) const {
  const Result result = resultOf(sql);
  if (library_.PQresultStatus(result.get()) != PGRES_TUPLES_OK) return problem(result.get());
  PostgresRows rows;
  for (int row = 0; row < library_.PQntuples(result.get()); ++row) {
    std::vector<std::string>& cells = rows.emplace_back();
    for (int column = 0; column < library_.PQnfields(result.get()); ++column) {
      cells.emplace_back(library_.PQgetvalue(result.get(), row, column),
                         static_cast<std::size_t>(library_.PQgetlength(result.get(), row, column)));
    }
  }
  return rows;
}

Outcome<Done> PostgresConnection::startCopy(const std::string& sql) const {
  const Result result = resultOf(sql);
  if (library_.PQresultStatus(result.get()) != PGRES_COPY_OUT) return problem(result.get());
  return Done{};
}

Outcome<std::optional<std::string_view>> PostgresConnection::nextLine() {
  if (line_ != nullptr) library_.PQfreemem(std::exchange(line_, nullptr));
  constexpr int waits = 0;
  const int bytes = library_.PQgetCopyData(handle_, &line_, waits);
  if (bytes > 0) return std::optional(std::string_view(line_, static_cast<std::size_t>(bytes)));
  constexpr int hasEnded = -1;
  return bytes == hasEnded ? endOfCopy() : Outcome<std::optional<std::string_view>>(problem());
}

Outcome<std::optional<std::string_view>> PostgresConnection::endOfCopy() {
  const Result result(library_.PQgetResult(handle_), Clear{library_});
  if (library_.PQresultStatus(result.get()) != PGRES_COMMAND_OK) return problem(result.get());
  return std::optional<std::string_view>();
}

Problem PostgresConnection::problem(const PGresult* result) const {
  const char* const message = library_.PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
  if (isLost() || message == nullptr) return problem();
  const char* const code = library_.PQresultErrorField(result, PG_DIAG_SQLSTATE);
  constexpr std::string_view missingPermission = "42501";
  const bool isForbidden = code != nullptr && code == missingPermission;
  return {text::sentence("PostgreSQL reports: ^1.", {oneLine(message)}), shown_,
          isForbidden ? text::sentence("Ask its owner for the permission to read it.") : ""};
}

Problem PostgresConnection::problem() const {
  const std::string message = oneLine(library_.PQerrorMessage(handle_));
  if (!isLost()) return {text::sentence("PostgreSQL reports: ^1.", {message}), shown_, ""};
  return {text::sentence("The connection to the database was lost: ^1.", {message}), shown_,
          text::sentence("Try again when the server can be reached.")};
}

}  // namespace workbench::data
