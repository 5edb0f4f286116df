#include "workbench/app/password_key.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sodium.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "workbench/text/wording.h"

namespace workbench::app {

namespace {

namespace fs = std::filesystem;
using text::sentence;

constexpr std::size_t keyBytes = 32;

std::string valueOf(const char* variable) {
  const char* const value = std::getenv(variable);
  return value == nullptr ? "" : value;
}

// Empty when the user has no such folder. One that is named without its whole path does not count.
fs::path configurationFolder() {
  const fs::path named = valueOf("XDG_CONFIG_HOME");
  if (named.is_absolute()) return named / "compare-datasets";
  const fs::path home = valueOf("HOME");
  return home.empty() ? fs::path() : home / ".config" / "compare-datasets";
}

Problem keyProblem(const fs::path& path, int error) {
  return {sentence("The key of encoded passwords cannot be read or made (^1).", {std::strerror(error)}), path.string(),
          sentence("Check the folder's rights.")};
}

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  int value() const { return descriptor_; }

 private:
  int descriptor_;
};

// Nothing when there is no such file.
std::optional<Outcome<Secret>> readKey(const fs::path& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
  if (file.value() < 0 && errno == ENOENT) return std::nullopt;
  struct stat status{};
  if (file.value() < 0 || ::fstat(file.value(), &status) != 0) return keyProblem(path, errno);
  if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0 || status.st_uid != ::geteuid()) {
    return Problem{sentence("Others can read the key of encoded passwords, so they can decode them."), path.string(),
                   sentence("Take the right from them (chmod 600), or remove the file and encode the passwords anew.")};
  }
  SecretBuffer key(keyBytes + 1);
  const ssize_t bytes = ::read(file.value(), key.room(keyBytes + 1), keyBytes + 1);
  if (bytes < 0) return keyProblem(path, errno);
  key.taken(static_cast<std::size_t>(bytes));
  if (key.view().size() != keyBytes) {
    return Problem{sentence("The key of encoded passwords is damaged."), path.string(),
                   sentence("Remove the file and encode the passwords anew.")};
  }
  return key.secret();
}

// Makes it whole under another name first: who reads the key meanwhile finds all of it or nothing, and of two who make
// one at the same time the first one's stays.
Outcome<Done> makeKey(const fs::path& path) {
  std::error_code failure;
  fs::create_directories(path.parent_path().parent_path(), failure);
  if (::mkdir(path.parent_path().c_str(), S_IRWXU) != 0 && errno != EEXIST) return keyProblem(path, errno);
  const std::string part = fmt::format("{}.{}", path.string(), ::getpid());
  ::unlink(part.c_str());
  const Descriptor file(::open(part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (file.value() < 0) return keyProblem(path, errno);
  SecretBuffer key(keyBytes);
  ::randombytes_buf(key.room(keyBytes), keyBytes);
  key.taken(keyBytes);
  const bool isWritten = ::write(file.value(), key.view().data(), keyBytes) == static_cast<ssize_t>(keyBytes) &&
                         ::fsync(file.value()) == 0;
  const bool isInPlace = isWritten && (::link(part.c_str(), path.c_str()) == 0 || errno == EEXIST);
  const int error = errno;
  ::unlink(part.c_str());
  return isInPlace ? Outcome<Done>(Done{}) : Outcome<Done>(keyProblem(path, error));
}

}  // namespace

Outcome<Secret> passwordKey(MissingKey missing) {
  if (::sodium_init() < 0) return Problem{sentence("The system gives no random numbers."), "", ""};
  const fs::path folder = configurationFolder();
  if (folder.empty()) {
    return Problem{sentence("There is no folder for the key of encoded passwords."), "",
                   sentence("Name one by the environment variable XDG_CONFIG_HOME.")};
  }
  const fs::path path = folder / "password-key";
  if (auto key = readKey(path)) return *key;
  if (missing == MissingKey::leave) return Secret();
  if (const Outcome<Done> made = makeKey(path); !made) return made.problem();
  if (auto key = readKey(path)) return *key;
  return keyProblem(path, ENOENT);
}

}  // namespace workbench::app
