#include "workbench/data/files/byte_source.h"

#include <unistd.h>
#include <zlib.h>
#include <zstd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <string_view>
#include <vector>

#include "workbench/runtime/activity.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr std::size_t packedBytes = std::size_t{1} << 18;

Problem unpackingProblem(std::string_view kind, std::string_view reason) {
  return {text::sentence("The file is no sound ^1 file (^2).", {kind, reason}), "",
          text::sentence("Pack it anew, or give it the name of what it is.")};
}

class PlainSource final : public ByteSource {
 public:
  explicit PlainSource(const InputFile& file) : file_(file) {}

  Outcome<std::size_t> read(char* into, std::size_t room) override {
    for (;;) {
      const ssize_t bytes = ::pread(file_.descriptor(), into, room, position_);
      if (bytes >= 0) {
        position_ += bytes;
        activity().add(Activity::Unit::bytes, bytes);
        return static_cast<std::size_t>(bytes);
      }
      if (errno == EINTR) continue;
      return Problem{text::sentence("The file cannot be read (^1).", {std::strerror(errno)}), "",
                     text::sentence("Check the disk that it is on, or copy it to another place.")};
    }
  }

 private:
  const InputFile& file_;
  off_t position_ = 0;
};

class GzipSource final : public ByteSource {
 public:
  explicit GzipSource(const InputFile& file) : packed_(file), buffer_(packedBytes) {
    constexpr int gzipOnly = 15 + 16;
    ::inflateInit2(&stream_, gzipOnly);
  }
  ~GzipSource() override { ::inflateEnd(&stream_); }

  Outcome<std::size_t> read(char* into, std::size_t room) override {
    stream_.next_out = reinterpret_cast<Bytef*>(into);
    stream_.avail_out = static_cast<uInt>(std::min<std::size_t>(room, std::numeric_limits<uInt>::max()));
    const uInt wanted = stream_.avail_out;
    while (stream_.avail_out == wanted) {
      if (stream_.avail_in == 0) {
        const Outcome<std::size_t> bytes = packed_.read(buffer_.data(), buffer_.size());
        if (!bytes) return bytes.problem();
        if (*bytes == 0) {
          if (insideMember_ || !anyMember_) return unpackingProblem("gzip", text::sentence("it ends too early"));
          return std::size_t{0};
        }
        stream_.next_in = reinterpret_cast<Bytef*>(buffer_.data());
        stream_.avail_in = static_cast<uInt>(*bytes);
      }
      insideMember_ = anyMember_ = true;
      const int state = ::inflate(&stream_, Z_NO_FLUSH);
      if (state == Z_STREAM_END) {  // another member may follow
        insideMember_ = false;
        ::inflateReset(&stream_);
      } else if (state != Z_OK) {
        return unpackingProblem(
            "gzip", stream_.msg != nullptr ? std::string(stream_.msg) : text::sentence("its content is damaged"));
      }
    }
    return static_cast<std::size_t>(wanted - stream_.avail_out);
  }

 private:
  PlainSource packed_;
  std::vector<char> buffer_;
  z_stream stream_{};
  bool insideMember_ = false;
  bool anyMember_ = false;
};

class ZstdSource final : public ByteSource {
 public:
  explicit ZstdSource(const InputFile& file) : packed_(file), buffer_(packedBytes), stream_(::ZSTD_createDCtx()) {}
  ~ZstdSource() override { ::ZSTD_freeDCtx(stream_); }

  Outcome<std::size_t> read(char* into, std::size_t room) override {
    ZSTD_outBuffer output{into, room, 0};
    while (output.pos == 0) {
      // What the last call left inside the decoder comes first; only then may more be needed.
      if (input_.pos == input_.size && !mayHoldMore_) {
        const Outcome<std::size_t> bytes = packed_.read(buffer_.data(), buffer_.size());
        if (!bytes) return bytes.problem();
        if (*bytes == 0) {
          if (insideFrame_ || !anyFrame_) return unpackingProblem("zstd", text::sentence("it ends too early"));
          return std::size_t{0};
        }
        input_ = {buffer_.data(), *bytes, 0};
        anyFrame_ = true;
      }
      const std::size_t state = ::ZSTD_decompressStream(stream_, &output, &input_);
      if (::ZSTD_isError(state) != 0) return unpackingProblem("zstd", ::ZSTD_getErrorName(state));
      insideFrame_ = state != 0;
      mayHoldMore_ = insideFrame_ && output.pos == output.size;
    }
    return output.pos;
  }

 private:
  PlainSource packed_;
  std::vector<char> buffer_;
  ZSTD_DCtx* stream_;
  ZSTD_inBuffer input_{};
  bool mayHoldMore_ = false;
  bool insideFrame_ = false;
  bool anyFrame_ = false;
};

}  // namespace

std::unique_ptr<ByteSource> openByteSource(const InputFile& file, Packing packing) {
  switch (packing) {
    case Packing::gzip:
      return std::make_unique<GzipSource>(file);
    case Packing::zstd:
      return std::make_unique<ZstdSource>(file);
    case Packing::none:
      break;
  }
  return std::make_unique<PlainSource>(file);
}

}  // namespace workbench::data
