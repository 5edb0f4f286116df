// InputFile: a plain file, open for reading, and what tells it from every other file and every other state of itself.
#pragma once

#include <sys/stat.h>

#include <compare>
#include <cstdint>
#include <optional>
#include <string>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

// Two equal identities: the same file with the same content, as far as the file system tells.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  std::int64_t modified = 0;  // nanoseconds since 1970

  auto operator<=>(const FileIdentity&) const = default;
  std::string text() const;
};

FileIdentity identityOf(const struct stat& status);

// Of the file that stands there now; nothing when none does.
std::optional<FileIdentity> identityAt(const std::string& path);

class InputFile {
 public:
  // Fails when there is no such file, when it is no plain file and when it may not be read. Of a protected file its
  // plain content is opened, which fails unless the file is unlocked.
  static Outcome<InputFile> open(const std::string& path);
  // The file's own bytes, whatever its name says of them.
  static Outcome<InputFile> openAsItIs(const std::string& path);
  InputFile(InputFile&& other) noexcept;
  InputFile& operator=(InputFile&&) = delete;
  ~InputFile();

  int descriptor() const { return descriptor_; }
  // As of now.
  FileIdentity identity() const;
  // A name under which this very file can be opened once more, whatever happens to its path. Valid as long as this
  // object.
  std::string descriptorPath() const;

 private:
  explicit InputFile(int descriptor) : descriptor_(descriptor) {}
  int descriptor_;
};

}  // namespace workbench::data
