#include "workbench/data/files/packer.h"

#include <zlib.h>
#include <zstd.h>

#include <cstddef>
#include <new>
#include <utility>
#include <vector>

#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr std::size_t packedBytes = std::size_t{1} << 18;

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

  void take(std::string_view text, TextPart part) override {
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream_.avail_in = static_cast<uInt>(text.size());
    flush_ = part == TextPart::last ? Z_FINISH : Z_NO_FLUSH;
  }
  Outcome<std::string_view> next() override {
    stream_.next_out = reinterpret_cast<Bytef*>(buffer_.data());
    stream_.avail_out = static_cast<uInt>(buffer_.size());
    ::deflate(&stream_, flush_);  // cannot fail: its memory was there from the start
    return std::string_view(buffer_.data(), buffer_.size() - stream_.avail_out);
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
    ::ZSTD_CCtx_setParameter(stream_, ZSTD_c_compressionLevel, ZSTD_CLEVEL_DEFAULT);
    ::ZSTD_CCtx_setParameter(stream_, ZSTD_c_checksumFlag, 1);
  }
  ~ZstdPacker() override { ::ZSTD_freeCCtx(stream_); }
  ZstdPacker(const ZstdPacker&) = delete;
  ZstdPacker& operator=(const ZstdPacker&) = delete;

  void take(std::string_view text, TextPart part) override {
    input_ = {text.data(), text.size(), 0};
    mode_ = part == TextPart::last ? ZSTD_e_end : ZSTD_e_continue;
    isUsedUp_ = false;
  }
  Outcome<std::string_view> next() override {
    ZSTD_outBuffer output{buffer_.data(), buffer_.size(), 0};
    while (!isUsedUp_ && output.pos == 0) {
      const std::size_t state = ::ZSTD_compressStream2(stream_, &output, &input_, mode_);
      if (::ZSTD_isError(state) != 0) {
        return Problem{text::sentence("The file cannot be packed (^1).", {::ZSTD_getErrorName(state)}), "", ""};
      }
      isUsedUp_ = mode_ == ZSTD_e_end ? state == 0 : input_.pos == input_.size;
    }
    return std::string_view(buffer_.data(), output.pos);
  }

 private:
  std::vector<char> buffer_;
  ZSTD_CCtx* stream_;
  ZSTD_inBuffer input_{};
  ZSTD_EndDirective mode_ = ZSTD_e_continue;
  bool isUsedUp_ = true;
};

// Leaves the text as it is.
class NoPacker final : public Packer {
 public:
  void take(std::string_view text, TextPart /*part*/) override { text_ = text; }
  Outcome<std::string_view> next() override { return std::exchange(text_, {}); }

 private:
  std::string_view text_;
};

}  // namespace

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

}  // namespace workbench::data
