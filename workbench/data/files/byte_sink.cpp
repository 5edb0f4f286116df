#include "workbench/data/files/byte_sink.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>
#include <zstd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <new>
#include <random>
#include <utility>
#include <vector>

#include "host/messages.h"

namespace workbench::data {

// Turns bytes into packed bytes. The view is valid until the next call; an empty one says that there is no more.
class Packer {
 public:
  virtual ~Packer() = default;
  virtual void take(std::string_view bytes, bool isLast) = 0;
  virtual std::string_view give() = 0;
};

namespace {

constexpr std::size_t packedBytes = std::size_t{1} << 18;

class NoPacker final : public Packer {
 public:
  void take(std::string_view bytes, bool) override { bytes_ = bytes; }
  std::string_view give() override { return std::exchange(bytes_, {}); }

 private:
  std::string_view bytes_;
};

class GzipPacker final : public Packer {
 public:
  GzipPacker() : buffer_(packedBytes) {
    constexpr int gzipFormat = 15 + 16;
    constexpr int memoryLevel = 8;
    if (::deflateInit2(&stream_, Z_DEFAULT_COMPRESSION, Z_DEFLATED, gzipFormat, memoryLevel, Z_DEFAULT_STRATEGY) !=
        Z_OK) {
      throw std::bad_alloc();
    }
  }
  ~GzipPacker() override { ::deflateEnd(&stream_); }

  // Requires: fewer than 4 GiB at once, which our blocks of text are.
  void take(std::string_view bytes, bool isLast) override {
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream_.avail_in = static_cast<uInt>(bytes.size());
    flush_ = isLast ? Z_FINISH : Z_NO_FLUSH;
  }
  std::string_view give() override {
    stream_.next_out = reinterpret_cast<Bytef*>(buffer_.data());
    stream_.avail_out = static_cast<uInt>(buffer_.size());
    ::deflate(&stream_, flush_);
    return {buffer_.data(), buffer_.size() - stream_.avail_out};
  }

 private:
  std::vector<char> buffer_;
  z_stream stream_{};
  int flush_ = Z_NO_FLUSH;
};

class ZstdPacker final : public Packer {
 public:
  ZstdPacker() : buffer_(packedBytes), stream_(::ZSTD_createCCtx()) {
    if (stream_ == nullptr) throw std::bad_alloc();
    ::ZSTD_CCtx_setParameter(stream_, ZSTD_c_checksumFlag, 1);
  }
  ~ZstdPacker() override { ::ZSTD_freeCCtx(stream_); }

  void take(std::string_view bytes, bool isLast) override {
    input_ = {bytes.data(), bytes.size(), 0};
    mode_ = isLast ? ZSTD_e_end : ZSTD_e_continue;
    more_ = true;
  }
  std::string_view give() override {
    ZSTD_outBuffer output{buffer_.data(), buffer_.size(), 0};
    while (more_ && output.pos == 0) {
      const std::size_t state = ::ZSTD_compressStream2(stream_, &output, &input_, mode_);
      if (::ZSTD_isError(state) != 0) throw ErrorText(fmt::format("Packing fails ({}).", ::ZSTD_getErrorName(state)));
      more_ = mode_ == ZSTD_e_end ? state != 0 : input_.pos != input_.size;
    }
    return {buffer_.data(), output.pos};
  }

 private:
  std::vector<char> buffer_;
  ZSTD_CCtx* stream_;
  ZSTD_inBuffer input_{};
  ZSTD_EndDirective mode_ = ZSTD_e_continue;
  bool more_ = false;
};

std::unique_ptr<Packer> makePacker(Packing packing) {
  switch (packing) {
    case Packing::gzip:
      return std::make_unique<GzipPacker>();
    case Packing::zstd:
      return std::make_unique<ZstdPacker>();
    case Packing::none:
      break;
  }
  return std::make_unique<NoPacker>();
}

Problem creationProblem(int error, const std::string& path) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return {"The folder of the file does not exist.", path, "Make the folder, or name another one."};
    case EACCES:
    case EPERM:
    case EROFS:
      return {"The folder of the file cannot be written to.", path, "Name a folder in which you may write."};
    default:
      return {fmt::format("The file cannot be written ({}).", std::strerror(error)), path, ""};
  }
}

// The permissions of the file that is to be replaced; without one those that a new file gets.
mode_t modeOf(const std::string& path) {
  struct stat status{};
  constexpr mode_t permissionBits = 0777;
  constexpr mode_t everyoneReadsAndWrites = 0666;
  return ::stat(path.c_str(), &status) == 0 ? status.st_mode & permissionBits : everyoneReadsAndWrites;
}

// Makes a file beside the target under a name that nobody has; -1 and errno when that fails.
int makePrivateFile(const std::string& target, std::string& privatePath) {
  const std::filesystem::path name = target;
  std::random_device random;
  for (;;) {
    privatePath = (name.parent_path() / fmt::format(".{}.{:08x}", name.filename().string(), random())).string();
    const int descriptor = ::open(privatePath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, modeOf(target));
    if (descriptor >= 0 || errno != EEXIST) return descriptor;
  }
}

}  // namespace

Outcome<std::unique_ptr<ByteSink>> ByteSink::create(const std::string& path, Packing packing) {
  std::error_code failure;
  if (std::filesystem::is_directory(path, failure)) return Problem{"This is a folder.", path, "Name a file in it."};
  // A symbolic link stays one: what it points to is replaced.
  std::string target = path;
  if (std::filesystem::is_symlink(path, failure)) target = std::filesystem::weakly_canonical(path, failure).string();
  std::string privatePath;
  const int descriptor = makePrivateFile(target, privatePath);
  if (descriptor < 0) return creationProblem(errno, path);
  return std::unique_ptr<ByteSink>(new ByteSink(target, privatePath, descriptor, packing));
}

ByteSink::ByteSink(std::string path, std::string privatePath, int descriptor, Packing packing)
    : path_(std::move(path)),
      privatePath_(std::move(privatePath)),
      descriptor_(descriptor),
      packer_(makePacker(packing)) {}

ByteSink::~ByteSink() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (!privatePath_.empty()) ::unlink(privatePath_.c_str());
}

void ByteSink::write(std::string_view bytes) {
  packer_->take(bytes, false);
  for (std::string_view packed = packer_->give(); !packed.empty(); packed = packer_->give()) writeToFile(packed);
}

void ByteSink::complete() {
  packer_->take({}, true);
  for (std::string_view packed = packer_->give(); !packed.empty(); packed = packer_->give()) writeToFile(packed);
  struct stat replaced{};
  if (::stat(path_.c_str(), &replaced) == 0 && ::fchmod(descriptor_, modeOf(path_)) != 0) fail(errno);
  if (::fsync(descriptor_) != 0) fail(errno);
  if (::close(std::exchange(descriptor_, -1)) != 0) fail(errno);
}

void ByteSink::commit() {
  if (::rename(privatePath_.c_str(), path_.c_str()) != 0) fail(errno);
  privatePath_.clear();
  const std::filesystem::path folder = std::filesystem::path(path_).parent_path();
  const int descriptor = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;  // the file is in place; only its being there after a power cut is not sure
  ::fsync(descriptor);
  ::close(descriptor);
}

void ByteSink::writeToFile(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) fail(errno);
    if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void ByteSink::fail(int error) const {
  const char* remedy = error == ENOSPC || error == EDQUOT ? " Make room on the disk, or name another folder." : "";
  throw ErrorText(fmt::format("{}: The file cannot be written ({}).{}", path_, std::strerror(error), remedy));
}

}  // namespace workbench::data
