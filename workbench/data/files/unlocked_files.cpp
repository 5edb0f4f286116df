#include "workbench/data/files/unlocked_files.h"

#include <fcntl.h>
#include <sodium.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <utility>

#include "workbench/data/files/input_file.h"
#include "workbench/data/files/memory_file.h"
#include "workbench/data/files/openpgp_message.h"
#include "workbench/runtime/protected_data.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// Tells a password from another one without keeping it: a hash under a key that nobody but this process has.
class PasswordMark {
 public:
  explicit PasswordMark(const Secret& password) {
    mark_ = hashOf(password.view());
    // What was hashed last stays in registers, which the system may save anywhere, and on the stack: let it be nothing.
    hashOf(std::string(password.view().size(), '\0'));
    constexpr std::size_t moreThanTheHashTakes = 8192;
    ::sodium_stackzero(moreThanTheHashTakes);
  }
  friend bool operator==(const PasswordMark&, const PasswordMark&) = default;

 private:
  using Mark = std::array<unsigned char, crypto_generichash_BYTES>;
  using Key = std::array<unsigned char, crypto_generichash_KEYBYTES>;
  static const Key& key() {
    static const Key theKey = [] {
      Key made;
      ::randombytes_buf(made.data(), made.size());
      return made;
    }();
    return theKey;
  }
  static Mark hashOf(std::string_view text) {
    Mark mark;
    ::crypto_generichash(mark.data(), mark.size(), reinterpret_cast<const unsigned char*>(text.data()), text.size(),
                         key().data(), key().size());
    return mark;
  }

  Mark mark_{};
};

Problem inFile(Problem problem, const std::string& path) {
  problem.where = path;
  return problem;
}

}  // namespace

class UnlockedFile {
 public:
  UnlockedFile(const FileIdentity& identity, const PasswordMark& password, MemoryFile content)
      : identity_(identity), password_(password), content_(std::move(content)) {}

  bool isAt(const FileIdentity& place) const {
    return identity_.device == place.device && identity_.inode == place.inode;
  }
  const FileIdentity& identity() const { return identity_; }
  const PasswordMark& password() const { return password_; }
  const MemoryFile& content() const { return content_; }

 private:
  FileIdentity identity_;  // of the protected file
  PasswordMark password_;
  MemoryFile content_;
};

namespace {

class Registry {
 public:
  // Null when no such file is unlocked.
  std::shared_ptr<const UnlockedFile> at(const FileIdentity& identity) {
    const std::lock_guard lock(mutex_);
    for (const std::weak_ptr<const UnlockedFile>& each : files_) {
      const auto file = each.lock();
      if (file && file->isAt(identity)) return file;
    }
    return nullptr;
  }
  void add(const std::shared_ptr<const UnlockedFile>& file) {
    const std::lock_guard lock(mutex_);
    std::erase_if(files_, [&](const auto& each) { return each.expired() || each.lock()->isAt(file->identity()); });
    files_.push_back(file);
  }

 private:
  std::mutex mutex_;
  std::vector<std::weak_ptr<const UnlockedFile>> files_;
};

Registry& registry() {
  static Registry theRegistry;
  return theRegistry;
}

// The plain content has the times of the protected file: by them a scan knows whether it may be kept.
void giveTimes(const MemoryFile& content, const FileIdentity& identity) {
  constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
  timespec modified{};
  modified.tv_sec = identity.modified / nanosecondsPerSecond;
  modified.tv_nsec = identity.modified % nanosecondsPerSecond;
  const std::array<timespec, 2> times = {modified, modified};
  ::futimens(content.descriptor(), times.data());
}

}  // namespace

Outcome<std::shared_ptr<const UnlockedFile>> unlockFile(const std::string& path, const Secret& password) {
  noteProtectedData();
  if (::sodium_init() < 0) return Problem{text::sentence("The system gives no random numbers."), path, ""};
  Outcome<InputFile> message = InputFile::openAsItIs(path);
  if (!message) return message.problem();
  const FileIdentity identity = message->identity();
  const PasswordMark mark(password);
  auto known = registry().at(identity);
  if (known && known->identity() == identity && known->password() == mark) return known;

  Outcome<MemoryFile> content = MemoryFile::create();
  if (!content) return inFile(content.problem(), path);
  if (const auto done = decryptMessage(*message, password, *content); !done) return inFile(done.problem(), path);
  if (message->identity() != identity) {
    return Problem{text::sentence("The file changed while it was read."), path,
                   text::sentence("Try again when it is complete.")};
  }
  giveTimes(*content, identity);
  if (const auto sealed = content->seal(); !sealed) return inFile(sealed.problem(), path);
  auto unlocked = std::make_shared<const UnlockedFile>(identity, mark, std::move(*content));
  registry().add(unlocked);
  return unlocked;
}

Outcome<int> openPlainContent(const std::string& path, const struct stat& status) {
  const FileIdentity identity = identityOf(status);
  const auto unlocked = registry().at(identity);
  if (unlocked == nullptr) {
    return Problem{text::sentence("The file is protected by a password, and none was given for it."), path,
                   text::sentence("Give it: PASSWORD='...' in a job, a password file on the command line.")};
  }
  if (unlocked->identity() != identity) {
    return Problem{text::sentence("The file has changed since it was opened; open it again."), path, ""};
  }
  const int descriptor = ::open(unlocked->content().descriptorPath().c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) {
    return Problem{text::sentence("The file cannot be opened (^1).", {std::strerror(errno)}), path, ""};
  }
  return descriptor;
}

}  // namespace workbench::data
