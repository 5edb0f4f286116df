#include "workbench/data/files/structure_marks.h"

#include <algorithm>
#include <bit>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace workbench::data {
namespace {

constexpr std::size_t step = 64;
static_assert(step == readBehindMarks);

// A bit for each of 64 bytes, the lowest for the first.
struct MarkBits {
  std::uint64_t marked = 0;
  std::uint64_t nonAscii = 0;
};

struct PlainMarkBits {
  StructureBytes bytes;

  MarkBits operator()(const char* text) const {
    MarkBits bits;
    for (std::size_t at = 0; at < step; ++at) {
      const char byte = text[at];
      const bool isMarked =
          byte == bytes.delimiter || byte == '\n' || byte == '\r' || byte == bytes.quote || byte == '\0';
      bits.marked |= std::uint64_t{isMarked} << at;
      bits.nonAscii |= std::uint64_t{(static_cast<unsigned char>(byte) & 0x80U) != 0} << at;
    }
    return bits;
  }
};

#ifdef __SSE2__
struct VectorMarkBits {
  explicit VectorMarkBits(StructureBytes bytes)
      : delimiter(_mm_set1_epi8(bytes.delimiter)), quote(_mm_set1_epi8(bytes.quote)) {}

  MarkBits operator()(const char* text) const {
    const __m128i lineFeed = _mm_set1_epi8('\n');
    const __m128i carriageReturn = _mm_set1_epi8('\r');
    MarkBits bits;
    for (std::size_t at = 0; at < step; at += sizeof(__m128i)) {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + at));
      const __m128i separators = _mm_or_si128(_mm_cmpeq_epi8(bytes, delimiter), _mm_cmpeq_epi8(bytes, lineFeed));
      const __m128i others = _mm_or_si128(_mm_cmpeq_epi8(bytes, quote), _mm_cmpeq_epi8(bytes, carriageReturn));
      const __m128i isNul = _mm_cmpeq_epi8(bytes, _mm_setzero_si128());
      const int marked = _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(separators, others), isNul));
      bits.marked |= static_cast<std::uint64_t>(marked) << at;
      bits.nonAscii |= static_cast<std::uint64_t>(_mm_movemask_epi8(bytes)) << at;
    }
    return bits;
  }

  __m128i delimiter;
  __m128i quote;
};
#else
using VectorMarkBits = PlainMarkBits;
#endif

}  // namespace

template <class MarkBitsOf>
void StructureMarks::findBy(MarkBitsOf markBitsOf, const char* text, std::size_t size) {
  constexpr std::size_t atOnce = 4;
  count_ = 0;
  asciiUpTo_ = size;
  for (std::size_t at = 0; at < size; at += step) {
    MarkBits bits = markBitsOf(text + at);
    if (size - at < step) {
      const std::uint64_t inside = (std::uint64_t{1} << (size - at)) - 1;
      bits = {bits.marked & inside, bits.nonAscii & inside};
    }
    if (bits.nonAscii != 0) asciiUpTo_ = std::min(asciiUpTo_, at);
    if (count_ + step + atOnce > positions_.size()) positions_.resize(std::max(positions_.size() * 2, step * step));
    // Some more than there are is written each time, so that the loop's length is mostly the same.
    std::uint32_t* const next = positions_.data() + count_;
    const auto found = static_cast<std::size_t>(std::popcount(bits.marked));
    for (std::size_t written = 0; written < found; written += atOnce) {
      for (std::size_t one = 0; one < atOnce; ++one) {
        next[written + one] =
            static_cast<std::uint32_t>(at) + static_cast<std::uint32_t>(std::countr_zero(bits.marked));
        bits.marked &= bits.marked - 1;
      }
    }
    count_ += found;
  }
}

void StructureMarks::find(const char* text, std::size_t size, StructureBytes bytes) {
  findBy(VectorMarkBits{bytes}, text, size);
}

void StructureMarks::findPlainly(const char* text, std::size_t size, StructureBytes bytes) {
  findBy(PlainMarkBits{bytes}, text, size);
}

}  // namespace workbench::data
