#include "workbench/data/parquet/page_reader.h"

#include <zlib.h>
#include <zstd.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "workbench/data/parquet/file_bytes.h"
#include "workbench/data/parquet/snappy.h"
#include "workbench/data/parquet/thrift_value.h"

namespace workbench::data {
namespace {

bool unpackGzip(std::string_view packed, char* to, std::size_t bytes) {
  z_stream stream{};  // its counts have 32 bits, and those of pages 31
  constexpr int gzipOrZlib = 15 + 32;
  if (inflateInit2(&stream, gzipOrZlib) != Z_OK) return false;
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));  // is not written to
  stream.avail_in = static_cast<uInt>(packed.size());
  stream.next_out = reinterpret_cast<Bytef*>(to);
  stream.avail_out = static_cast<uInt>(bytes);
  const bool isWhole = inflate(&stream, Z_FINISH) == Z_STREAM_END && stream.avail_out == 0;
  inflateEnd(&stream);
  return isWhole;
}

// False when it does not yield exactly so many bytes.
bool unpack(ParquetCodec codec, std::string_view packed, char* to, std::size_t bytes) {
  switch (codec) {
    case ParquetCodec::none:
      if (packed.size() != bytes) return false;
      std::memcpy(to, packed.data(), bytes);
      return true;
    case ParquetCodec::snappy:
      static_assert(PageBytes::readableBehind >= snappySlack);
      return unpackSnappy(packed, to, bytes);
    case ParquetCodec::gzip:
      return unpackGzip(packed, to, bytes);
    case ParquetCodec::zstd:
      return ZSTD_decompress(to, bytes, packed.data(), packed.size()) == bytes;
  }
  return false;
}

bool isAscii(std::string_view bytes) {
  std::uint64_t all = 0;
  std::size_t at = 0;
  for (; at + sizeof all <= bytes.size(); at += sizeof all) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + at, sizeof word);
    all |= word;
  }
  for (; at < bytes.size(); ++at) all |= static_cast<std::uint8_t>(bytes[at]);
  constexpr std::uint64_t highBits = 0x8080808080808080;
  return (all & highBits) == 0;
}

}  // namespace

// What stands before a page.
struct PageReader::Header {
  enum Type : std::uint8_t { values = 0, dictionary = 2, valuesOfVersion2 = 3 };
  std::int64_t type = -1;
  std::int64_t bytes = -1;   // unpacked
  std::int64_t packed = -1;  // as in the file
  std::int64_t count = -1;
  std::int64_t encoding = -1;
  std::int64_t levelEncoding = static_cast<std::int64_t>(ParquetEncoding::runs);
  std::int64_t levelBytes = 0;  // of version 2, where levels are not packed
  bool isPacked = true;

  bool isOfValues() const { return type == values || type == valuesOfVersion2; }
};

void PageReader::begin(const ColumnPart& part, bool mayBeMissing) {
  keepCurrent();
  codec_ = part.codec;
  mayBeMissing_ = mayBeMissing;
  at_ = part.begin;
  end_ = part.begin + part.bytes;
  window_ = {};
}

std::optional<Page> PageReader::next() {
  keepCurrent();
  while (left() != 0) {
    if (std::optional<Page> kept = takeKept()) return kept;
    const std::int64_t begin = position();
    const std::optional<Header> header = readHeader();
    if (!header || !ensure(static_cast<std::size_t>(header->packed))) return std::nullopt;
    std::optional<Page> page;
    const bool isWanted = header->isOfValues() || header->type == Header::dictionary;
    if (isWanted) page = unpacked(*header);
    window_.remove_prefix(static_cast<std::size_t>(header->packed));
    if (!isWanted) continue;
    if (page && isFirstLook_ && !page->isDictionary) {
      current_ = page;
      currentBegin_ = begin;
    }
    return page;
  }
  return std::nullopt;
}

std::optional<Page> PageReader::takeKept() {
  std::optional<KeptPage> kept = kept_.take(position());
  if (!kept) return std::nullopt;
  const std::int64_t passed = kept->behind - position();
  if (passed <= static_cast<std::int64_t>(window_.size())) {
    window_.remove_prefix(static_cast<std::size_t>(passed));
  } else {
    window_ = {};
    at_ = kept->behind;
  }
  content_ = std::move(kept->bytes);
  return kept->page;
}

void PageReader::keepCurrent() {
  if (!current_) return;
  kept_.keep(currentBegin_, {*current_, std::move(content_), position()});
  current_.reset();
}

// Headers say nowhere how long they are.
std::optional<PageReader::Header> PageReader::readHeader() {
  constexpr std::size_t usual = 256;
  constexpr std::size_t longest = std::size_t{16} << 20;
  for (std::size_t looked = usual; ensure(std::min(looked, left())); looked *= 8) {
    Header header;
    ThriftReader reader(window_);
    reader.eachField([&](std::int64_t id, ThriftValue& value) {
      if (id == 1) header.type = value.whole();
      if (id == 2) header.bytes = value.whole();
      if (id == 3) header.packed = value.whole();
      if (id != 5 && id != 7 && id != 8) return;
      const bool isVersion2 = id == 8;
      value.eachField([&](std::int64_t part, ThriftValue& inner) {
        if (part == 1) header.count = inner.whole();
        if (part == (isVersion2 ? 4 : 2)) header.encoding = inner.whole();
        if (part == 3 && id == 5) header.levelEncoding = inner.whole();
        if (part == 5 && isVersion2) header.levelBytes = inner.whole();
        if (part == 6 && isVersion2 && inner.whole() != 0) header.levelBytes = -1;  // a value per row needs none
        if (part == 7 && isVersion2) header.isPacked = inner.truth();
      });
    });
    if (reader.isSound()) {
      window_.remove_prefix(reader.position());
      constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
      const bool isSound = header.bytes >= 0 && header.bytes <= most && header.packed >= 0 &&
                           header.packed <= static_cast<std::int64_t>(left()) && header.levelBytes >= 0;
      return isSound ? std::optional(header) : std::nullopt;
    }
    if (looked >= left() || looked >= longest) break;
  }
  return std::nullopt;
}

std::optional<Page> PageReader::unpacked(const Header& header) {
  if (header.count < 0 || header.encoding < 0 ||
      header.encoding > static_cast<std::int64_t>(ParquetEncoding::runsOfDictionary))
    return std::nullopt;
  Page page;
  page.isDictionary = header.type == Header::dictionary;
  page.encoding = static_cast<ParquetEncoding>(header.encoding);
  page.values = static_cast<std::size_t>(header.count);
  const auto bytes = static_cast<std::size_t>(header.bytes);
  const auto packed = static_cast<std::size_t>(header.packed);
  const std::size_t asTheyAre =
      header.type == Header::valuesOfVersion2 ? static_cast<std::size_t>(header.levelBytes) : 0;
  if (asTheyAre > bytes || asTheyAre > packed) return std::nullopt;
  char* const to = content_.reserve(bytes, 0);
  std::memcpy(to, window_.data(), asTheyAre);
  const char* const from = window_.data() + asTheyAre;
  const ParquetCodec codec = header.isPacked ? codec_ : ParquetCodec::none;
  if (bytes != asTheyAre && !unpack(codec, {from, packed - asTheyAre}, to + asTheyAre, bytes - asTheyAre))
    return std::nullopt;
  std::memset(to + bytes, 0, PageBytes::readableBehind);
  if (!parted(header, {to, bytes}, page)) return std::nullopt;
  const bool mayBeTexts = holdsTexts_ && (page.isDictionary || page.encoding == ParquetEncoding::plain);
  page.isAscii = mayBeTexts && isAscii(page.content);
  return page;
}

// Which of the bytes are levels and which are values.
bool PageReader::parted(const Header& header, std::string_view bytes, Page& page) const {
  page.content = bytes;
  if (page.isDictionary) return true;
  if (header.type == Header::valuesOfVersion2) {
    page.levels = bytes.substr(0, static_cast<std::size_t>(header.levelBytes));
    page.content = bytes.substr(page.levels.size());
    return mayBeMissing_ || page.levels.empty();
  }
  if (!mayBeMissing_) return true;
  std::uint32_t length = 0;
  if (header.levelEncoding != static_cast<std::int64_t>(ParquetEncoding::runs) || bytes.size() < sizeof length)
    return false;
  std::memcpy(&length, bytes.data(), sizeof length);
  if (length > bytes.size() - sizeof length) return false;
  page.levels = bytes.substr(sizeof length, length);
  page.content = bytes.substr(sizeof length + length);
  return true;
}

// Reads until the window has so many bytes.
bool PageReader::ensure(std::size_t bytes) {
  if (window_.size() >= bytes) return true;
  constexpr std::size_t atOnce = std::size_t{256} << 10;
  const std::size_t had = window_.size();
  const auto inFile = static_cast<std::size_t>(end_ - at_);
  if (bytes - had > inFile) return false;
  const std::size_t wanted = std::min(std::max(bytes - had, atOnce), inFile);
  const std::size_t offset = had == 0 ? 0 : static_cast<std::size_t>(window_.data() - windowBytes_.data());
  char* to = windowBytes_.data();
  if (had != 0) std::memmove(to, to + offset, had);
  to = windowBytes_.reserve(had + wanted, had);
  if (!readFully(descriptor_, to + had, wanted, at_)) return false;
  at_ += static_cast<std::int64_t>(wanted);
  window_ = {to, had + wanted};
  return true;
}

}  // namespace workbench::data
