#include "workbench/data/files/openpgp_framing.h"

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace workbench::data {
namespace {

constexpr std::string_view armorBegin = "-----BEGIN PGP MESSAGE-----";
constexpr std::string_view armorEnd = "-----END PGP MESSAGE-----";
constexpr std::uint8_t isPacket = 0x80;
constexpr std::uint8_t isNewFormat = 0x40;

// Walks over the packets of a message without looking into them.
class PacketWalk {
 public:
  PacketWalk(int descriptor, std::uint64_t size) : descriptor_(descriptor), size_(size) {}

  bool endsTooEarly() {
    while (place_ < size_) {
      const std::optional<std::uint64_t> tag = number(1);
      if (!tag || (*tag & isPacket) == 0) return false;  // no packet: damaged, or no message at all
      const bool isWhole = (*tag & isNewFormat) != 0 ? stepOverNew() : stepOverOld(*tag);
      if (!isWhole) return true;
    }
    return false;
  }

 private:
  // False when the file ends inside the packet.
  bool stepOverNew() {
    constexpr std::uint64_t twoBytesFrom = 192;
    constexpr std::uint64_t partFrom = 224;
    constexpr std::uint64_t fourBytes = 255;
    for (;;) {
      const std::optional<std::uint64_t> first = number(1);
      if (!first) return false;
      if (*first < twoBytesFrom) return skip(*first);
      if (*first == fourBytes) return skip(number(4));
      if (*first < partFrom) {
        const std::optional<std::uint64_t> second = number(1);
        return second && skip(((*first - twoBytesFrom) << 8) + *second + twoBytesFrom);
      }
      // A part, whose length is a power of two; the length of another one follows.
      if (!skip(std::uint64_t{1} << (*first & 0x1fU))) return false;
    }
  }

  bool stepOverOld(std::uint64_t tag) {
    constexpr std::uint64_t withoutLength = 3;
    const std::uint64_t kind = tag & 3U;
    if (kind == withoutLength) return skip(size_ - place_);  // it goes on to the file's end
    return skip(number(std::size_t{1} << kind));
  }

  // The next bytes as one number; nothing when they are not there.
  std::optional<std::uint64_t> number(std::size_t bytes) {
    std::uint8_t read[4] = {};
    if (::pread(descriptor_, read, bytes, static_cast<off_t>(place_)) != static_cast<ssize_t>(bytes)) {
      return std::nullopt;
    }
    place_ += bytes;
    std::uint64_t value = 0;
    for (std::size_t index = 0; index < bytes; ++index) value = (value << 8) + read[index];
    return value;
  }

  bool skip(std::optional<std::uint64_t> bytes) {
    if (!bytes || *bytes > size_ - place_) return false;
    place_ += *bytes;
    return true;
  }

  int descriptor_;
  std::uint64_t size_;
  std::uint64_t place_ = 0;
};

std::string textAt(int descriptor, std::uint64_t place, std::size_t bytes) {
  std::string text(bytes, '\0');
  const ssize_t read = ::pread(descriptor, text.data(), bytes, static_cast<off_t>(place));
  text.resize(read < 0 ? 0 : static_cast<std::size_t>(read));
  return text;
}

}  // namespace

bool isCutOff(const InputFile& message) {
  const std::uint64_t size = static_cast<std::uint64_t>(std::max<std::int64_t>(message.identity().size, 0));
  constexpr std::size_t looked = 512;  // what other programs put before a message or behind it is short
  if (textAt(message.descriptor(), 0, looked).find(armorBegin) != std::string::npos) {
    const std::uint64_t last = size < looked ? 0 : size - looked;
    return textAt(message.descriptor(), last, looked).find(armorEnd) == std::string::npos;
  }
  return PacketWalk(message.descriptor(), size).endsTooEarly();
}

}  // namespace workbench::data
