#include "workbench/data/files/output_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <random>
#include <utility>

#include "host/messages.h"
#include "workbench/data/files/openpgp_message.h"
#include "workbench/data/files/path_target.h"
#include "workbench/runtime/protected_data.h"
#include "workbench/runtime/temporary_files.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

Problem creationProblem(int error, const std::string& path) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return {text::sentence("The folder of the file does not exist."), path,
              text::sentence("Make the folder, or name another one.")};
    case EACCES:
    case EPERM:
    case EROFS:
      return {text::sentence("The folder of the file cannot be written to."), path,
              text::sentence("Name a folder in which you may write.")};
    default:
      return {text::sentence("The file cannot be written (^1).", {std::strerror(error)}), path, ""};
  }
}

// The permissions of the file that is to be replaced; without one those that a new file gets.
mode_t modeOf(const std::string& path) {
  struct stat status{};
  constexpr mode_t permissionBits = 0777;
  constexpr mode_t everyoneReadsAndWrites = 0666;
  return ::stat(path.c_str(), &status) == 0 ? status.st_mode & permissionBits : everyoneReadsAndWrites;
}

// Makes a file beside the target under a name that nobody has; -1 and errno when that fails. Its owner may write to it
// whatever the target's permissions, for it is opened once more by descriptorPath().
int makePrivateFile(const std::string& target, std::string& privatePath) {
  const std::filesystem::path name = target;
  std::random_device random;
  for (;;) {
    privatePath = (name.parent_path() / fmt::format(".{}.{:08x}", name.filename().string(), random())).string();
    const int descriptor =
        ::open(privatePath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, modeOf(target) | S_IWUSR);
    if (descriptor >= 0 || errno != EEXIST) return descriptor;
  }
}

}  // namespace

Outcome<std::unique_ptr<OutputFile>> OutputFile::create(const std::string& path, const Secret& password) {
  std::error_code failure;
  if (std::filesystem::is_directory(path, failure)) {
    return Problem{text::sentence("This is a folder."), path, text::sentence("Name a file in it.")};
  }
  Outcome<std::unique_ptr<OutputFile>> file = data::isStream(path) ? openStream(path) : createFile(path);
  if (!file || password.empty()) return file;
  noteProtectedData();
  Outcome<MemoryFile> plain = MemoryFile::create();
  if (!plain) return Problem{plain.problem().what, path, plain.problem().remedy};
  (*file)->plain_.emplace(std::move(*plain));
  (*file)->password_ = password;
  return file;
}

Outcome<std::unique_ptr<OutputFile>> OutputFile::createFile(const std::string& path) {
  const std::string target = linkTarget(path).string();
  std::error_code failure;
  if (std::filesystem::exists(target, failure) && !std::filesystem::is_regular_file(target, failure)) {
    return Problem{text::sentence("This is neither a file nor a stream."), path, text::sentence("Name a file.")};
  }
  std::string privatePath;
  const auto hold = temporaryFiles().hold();
  const int descriptor = makePrivateFile(target, privatePath);
  if (descriptor < 0) return creationProblem(errno, path);
  temporaryFiles().add(privatePath);
  return std::unique_ptr<OutputFile>(new OutputFile(path, target, privatePath, descriptor));
}

Outcome<std::unique_ptr<OutputFile>> OutputFile::openStream(const std::string& path) {
  const std::optional<int> named = descriptorNamed(path);
  const int descriptor = named ? ::fcntl(*named, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)
                               : ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
  if (descriptor < 0) return creationProblem(errno, path);
  if ((::fcntl(descriptor, F_GETFL) & O_ACCMODE) == O_RDONLY) {
    ::close(descriptor);
    return Problem{text::sentence("This stream cannot be written to."), path, ""};
  }
  // Whoever stops reading fails the command, which then leaves nothing of its other outputs behind.
  ::signal(SIGPIPE, SIG_IGN);
  return std::unique_ptr<OutputFile>(new OutputFile(path, {}, {}, descriptor));
}

OutputFile::OutputFile(std::string path, std::string target, std::string privatePath, int descriptor)
    : path_(std::move(path)),
      target_(std::move(target)),
      privatePath_(std::move(privatePath)),
      descriptor_(descriptor) {}

OutputFile::~OutputFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
  for (const std::string& path : beside_) {
    ::unlink(path.c_str());
    temporaryFiles().forget(path);
  }
  if (privatePath_.empty()) return;
  ::unlink(privatePath_.c_str());
  temporaryFiles().forget(privatePath_);
}

std::string OutputFile::descriptorPath() const {
  return plain_ ? plain_->descriptorPath() : fmt::format("/proc/self/fd/{}", descriptor_);
}

const std::string& OutputFile::handOver(std::span<const std::string_view> endingsBeside) {
  ::close(std::exchange(descriptor_, -1));
  ::unlink(privatePath_.c_str());
  for (const std::string_view ending : endingsBeside) {
    beside_.push_back(privatePath_ + std::string(ending));
    temporaryFiles().add(beside_.back());
  }
  return privatePath_;
}

void OutputFile::write(std::string_view bytes) { writeTo(plain_ ? plain_->descriptor() : descriptor_, bytes); }

void OutputFile::writeTo(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) fail(errno);
    if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void OutputFile::checkRoom() {
  if (isStream()) return;  // what is abandoned there cannot be taken back
  constexpr std::array<char, std::size_t{1} << 16> bytes{};
  ::lseek(plain_ ? plain_->descriptor() : descriptor_, 0, SEEK_END);
  write({bytes.data(), bytes.size()});
}

void OutputFile::complete() {
  if (plain_) encrypt();
  if (descriptor_ < 0) takeBack();
  struct stat replaced{};
  if (!isStream() && ::stat(target_.c_str(), &replaced) == 0 && ::fchmod(descriptor_, modeOf(target_)) != 0)
    fail(errno);
  if (!isStream() && ::fsync(descriptor_) != 0) fail(errno);
  if (::close(std::exchange(descriptor_, -1)) != 0) fail(errno);
}

void OutputFile::takeBack() {
  descriptor_ = ::open(privatePath_.c_str(), O_RDWR | O_CLOEXEC);
  if (descriptor_ < 0) fail(errno);
}

void OutputFile::encrypt() {
  const Outcome<Done> encrypted =
      encryptMessage(*plain_, password_, [this](std::string_view bytes) { writeTo(descriptor_, bytes); });
  if (!encrypted) throw ErrorText(Problem{encrypted.problem().what, path_, encrypted.problem().remedy}.text());
  plain_.reset();
  password_ = {};
}

void OutputFile::commit() {
  if (isStream()) return;
  if (::rename(privatePath_.c_str(), target_.c_str()) != 0) fail(errno);
  temporaryFiles().forget(std::exchange(privatePath_, {}));
  const std::filesystem::path folder = std::filesystem::path(target_).parent_path();
  const int descriptor = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;  // the file is in place; only its being there after a power cut is not sure
  ::fsync(descriptor);
  ::close(descriptor);
}

void OutputFile::fail(int error) const {
  Problem problem{text::sentence("The file cannot be written (^1).", {std::strerror(error)}), path_, ""};
  const bool isFull = error == ENOSPC || error == EDQUOT;
  if (isFull) problem.remedy = text::sentence("Make room on the disk, or name another folder.");
  throw ErrorText(problem.text());
}

}  // namespace workbench::data
