// A PostgreSQL server of a test program's own: in a folder that goes away, reached by a socket in it and by nothing
// else. It is started when the first test needs it and ends with the program, however that ends.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace workbench::tests {

class PostgresServer {
 public:
  // The one of this program. Throws when it cannot be started.
  static PostgresServer& instance();
  ~PostgresServer();
  PostgresServer(const PostgresServer&) = delete;
  PostgresServer& operator=(const PostgresServer&) = delete;

  const std::string& folder() const { return folder_; }
  // The reference to a database. Everybody is let in without a password but the user "anna", whose one is below.
  std::string reference(const std::string& database, const std::string& user = "postgres") const;

 private:
  PostgresServer();
  void initialise();
  void start();
  pid_t startAsItsUser(const std::vector<std::string>& words) const;

  std::string folder_;
  pid_t process_ = -1;
};

// As it is, and as a URI has it.
inline constexpr const char* passwordOfAnna = "geheim@7/x";
inline constexpr const char* passwordOfAnnaInUri = "geheim%407%2Fx";

// A database of a test's own.
class TestDatabase {
 public:
  explicit TestDatabase(const std::string& options = "");

  // Runs statements as the server's owner, in the schema public; the test fails when they do.
  void run(const std::string& sql) const;
  // "postgresql://postgres@/test7?host=...", with "#table" where one is named.
  std::string reference(const std::string& table = "") const;
  // Without the folder's and the database's names.
  std::string plain(std::string text) const;
  const std::string& name() const { return name_; }
  // A file of that name into which the server can write, and others can read.
  std::string file(const std::string& fileName) const;

 private:
  std::string name_;
};

}  // namespace workbench::tests
