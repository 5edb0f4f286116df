#include "tests/postgres/postgres_server.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

#include "workbench/data/databases/postgres_connection.h"

namespace workbench::tests {

namespace {

namespace fs = std::filesystem;
using data::PostgresConnection;

// Where the server's programs lie: Debian keeps them in a folder of their version.
fs::path programs() {
  std::FILE* const pipe = ::popen("pg_config --bindir", "r");
  std::array<char, 512> line{};
  const bool isRead = pipe != nullptr && std::fgets(line.data(), line.size(), pipe) != nullptr;
  if (pipe != nullptr) ::pclose(pipe);
  std::string folder = isRead ? line.data() : "";
  while (folder.ends_with('\n')) folder.pop_back();
  if (fs::exists(fs::path(folder) / "initdb")) return folder;
  std::error_code ignored;
  for (const auto& version : fs::directory_iterator("/usr/lib/postgresql", ignored)) {
    if (fs::exists(version.path() / "bin/initdb")) return version.path() / "bin";
  }
  throw std::runtime_error("There is no PostgreSQL server to test with. Install the package postgresql.");
}

// The server refuses to be run by root.
const passwd* serversUser() {
  if (::geteuid() != 0) return nullptr;
  for (const char* const name : {"postgres", "nobody"}) {
    if (const passwd* const user = ::getpwnam(name)) return user;
  }
  throw std::runtime_error("There is no user but root who could run a PostgreSQL server.");
}

std::string contentOf(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

PostgresServer& PostgresServer::instance() {
  static PostgresServer server;
  return server;
}

PostgresServer::PostgresServer() {
  std::string pattern = (fs::temp_directory_path() / "postgres-test-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder for a server could be made");
  folder_ = pattern;
  for (const char* const name : {"PGHOST", "PGPORT", "PGUSER", "PGPASSWORD", "PGDATABASE", "PGOPTIONS", "PGSERVICE"}) {
    ::unsetenv(name);
  }
  initialise();
  start();
}

PostgresServer::~PostgresServer() {
  if (process_ > 0) {
    ::kill(process_, SIGQUIT);  // nothing of it is to be kept
    ::waitpid(process_, nullptr, 0);
  }
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

void PostgresServer::initialise() {
  if (const passwd* const user = serversUser()) {
    if (::chown(folder_.c_str(), user->pw_uid, user->pw_gid) != 0) throw std::runtime_error("chown");
  }
  ::chmod(folder_.c_str(), 0755);
  const pid_t initdb = startAsItsUser({programs() / "initdb", "-D", folder_ + "/data", "-U", "postgres", "-A", "trust",
                                       "-E", "UTF8", "--locale=C.UTF-8", "--no-sync", "--no-instructions"});
  int status = 0;
  ::waitpid(initdb, &status, 0);
  if (status != 0) throw std::runtime_error("initdb: " + contentOf(folder_ + "/log"));
  std::ofstream(folder_ + "/data/pg_hba.conf") << "local all anna scram-sha-256\nlocal all all trust\n";
}

void PostgresServer::start() {
  process_ = startAsItsUser({programs() / "postgres", "-D", folder_ + "/data", "-k", folder_, "-h", "", "-F", "-c",
                             "shared_buffers=16MB", "-c", "max_connections=40", "-c", "autovacuum=off", "-c",
                             "lc_messages=C"});
  for (int tries = 0; tries < 300; ++tries) {
    const auto connection = PostgresConnection::open(reference("postgres"));
    if (connection) {
      const auto made = (*connection)->run(fmt::format("CREATE ROLE anna LOGIN PASSWORD '{}'", passwordOfAnna));
      if (!made) throw std::runtime_error(made.problem().text());
      return;
    }
    if (::waitpid(process_, nullptr, WNOHANG) == process_) break;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  throw std::runtime_error("The server did not start: " + contentOf(folder_ + "/log"));
}

// It is ended when this program ends without having ended it.
pid_t PostgresServer::startAsItsUser(const std::vector<std::string>& words) const {
  const passwd* const user = serversUser();
  const std::string log = folder_ + "/log";
  std::vector<std::string> copies = words;
  std::vector<char*> pointers;
  for (std::string& word : copies) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("fork");
  if (child > 0) return child;
  if (user != nullptr && (::setgroups(0, nullptr) != 0 || ::setgid(user->pw_gid) != 0 || ::setuid(user->pw_uid) != 0)) {
    ::_exit(1);
  }
  ::prctl(PR_SET_PDEATHSIG, SIGQUIT);
  const int output = ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
  ::dup2(output, STDOUT_FILENO);
  ::dup2(output, STDERR_FILENO);
  if (::chdir("/") == 0) ::execv(pointers.front(), pointers.data());
  ::_exit(127);
}

std::string PostgresServer::reference(const std::string& database, const std::string& user) const {
  return fmt::format("postgresql://{}@/{}?host={}", user, database, folder_);
}

TestDatabase::TestDatabase(const std::string& options) {
  static int number = 0;
  name_ = fmt::format("test{}", ++number);
  const auto connection = PostgresConnection::open(PostgresServer::instance().reference("postgres"));
  const auto made = connection ? (*connection)->run(fmt::format("CREATE DATABASE {} {}", name_, options))
                               : Outcome<Done>(connection.problem());
  if (!made) throw std::runtime_error(made.problem().text());
}

void TestDatabase::run(const std::string& sql) const {
  const auto connection = PostgresConnection::open(reference());
  if (!connection) throw std::runtime_error(connection.problem().text());
  for (const std::string& statement : {std::string("SET search_path = public"), sql}) {
    const Outcome<Done> ran = (*connection)->run(statement);
    if (!ran) ADD_FAILURE() << ran.problem().text() << "\n" << statement;
  }
}

std::string TestDatabase::reference(const std::string& table) const {
  return PostgresServer::instance().reference(name_) + (table.empty() ? "" : "#" + table);
}

std::string TestDatabase::plain(std::string text) const {
  const std::string ending = fmt::format("/{}?host={}", name_, PostgresServer::instance().folder());
  for (std::size_t at = text.find(ending); at != std::string::npos; at = text.find(ending))
    text.replace(at, ending.size(), "/base");
  return text;
}

std::string TestDatabase::file(const std::string& fileName) const {
  return PostgresServer::instance().folder() + "/data/" + fileName;
}

}  // namespace workbench::tests
