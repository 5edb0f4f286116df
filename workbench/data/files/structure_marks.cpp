#include "workbench/data/files/structure_marks.h"

#include <algorithm>
#include <bit>

#ifdef __x86_64__
#include <immintrin.h>
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

// So much is marked at a time, and at most so many positions are written for it: in fours, so that the loop's length is
// mostly the same, of which some then mean nothing.
constexpr std::size_t stretchSteps = 16;
constexpr std::size_t stretchBytes = stretchSteps * step;
constexpr std::size_t atOnce = 4;
constexpr std::size_t stretchPositions = stretchBytes + atOnce;

struct StretchMarks {
  std::size_t count = 0;
  bool isAscii = true;
};

[[gnu::always_inline]] inline StretchMarks writeOut(const MarkBits* stepBits, std::size_t from, std::size_t upTo,
                                                    std::uint32_t* positions) {
  StretchMarks marks;
  std::uint64_t nonAscii = 0;
  for (std::size_t at = from; at < upTo; at += step) {
    MarkBits bits = *stepBits++;
    if (upTo - at < step) {
      const std::uint64_t inside = (std::uint64_t{1} << (upTo - at)) - 1;
      bits = {bits.marked & inside, bits.nonAscii & inside};
    }
    nonAscii |= bits.nonAscii;
    std::uint32_t* const next = positions + marks.count;
    const auto found = static_cast<std::size_t>(std::popcount(bits.marked));
    for (std::size_t written = 0; written < found; written += atOnce) {
      for (std::size_t one = 0; one < atOnce; ++one) {
        const auto place = static_cast<std::uint32_t>(std::countr_zero(bits.marked));
        next[written + one] = static_cast<std::uint32_t>(at) + place;
        bits.marked &= bits.marked - 1;
      }
    }
    marks.count += found;
  }
  marks.isAscii = nonAscii == 0;
  return marks;
}

StretchMarks markPlainly(StructureBytes bytes, const char* text, std::size_t from, std::size_t upTo,
                         std::uint32_t* positions) {
  MarkBits bits[stretchSteps];
  for (std::size_t at = from; at < upTo; ++at) {
    const std::size_t place = at - from;
    const char byte = text[at];
    const bool isMarked =
        byte == bytes.delimiter || byte == '\n' || byte == '\r' || byte == bytes.quote || byte == '\0';
    const bool isNonAscii = (static_cast<unsigned char>(byte) & 0x80U) != 0;
    bits[place / step].marked |= std::uint64_t{isMarked} << (place % step);
    bits[place / step].nonAscii |= std::uint64_t{isNonAscii} << (place % step);
  }
  return writeOut(bits, from, upTo, positions);
}

#ifdef __x86_64__
[[gnu::target("avx2,bmi,popcnt")]] StretchMarks markWithAvx2(StructureBytes bytes, const char* text, std::size_t from,
                                                             std::size_t upTo, std::uint32_t* positions) {
  const __m256i delimiter = _mm256_set1_epi8(bytes.delimiter);
  const __m256i quote = _mm256_set1_epi8(bytes.quote);
  const __m256i lineFeed = _mm256_set1_epi8('\n');
  const __m256i carriageReturn = _mm256_set1_epi8('\r');
  MarkBits bits[stretchSteps];
  MarkBits* stepBits = bits;
  for (std::size_t stepFrom = from; stepFrom < upTo; stepFrom += step, ++stepBits) {
    for (std::size_t at = 0; at < step; at += sizeof(__m256i)) {
      const __m256i part = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + stepFrom + at));
      const __m256i parting = _mm256_or_si256(_mm256_cmpeq_epi8(part, delimiter), _mm256_cmpeq_epi8(part, lineFeed));
      const __m256i others = _mm256_or_si256(_mm256_cmpeq_epi8(part, quote), _mm256_cmpeq_epi8(part, carriageReturn));
      const __m256i nul = _mm256_cmpeq_epi8(part, _mm256_setzero_si256());
      const __m256i marked = _mm256_or_si256(_mm256_or_si256(parting, others), nul);
      stepBits->marked |= std::uint64_t{static_cast<std::uint32_t>(_mm256_movemask_epi8(marked))} << at;
      stepBits->nonAscii |= std::uint64_t{static_cast<std::uint32_t>(_mm256_movemask_epi8(part))} << at;
    }
  }
  return writeOut(bits, from, upTo, positions);
}
#endif

using MarkStretch = decltype(&markPlainly);

// The fastest way that this machine knows.
MarkStretch fastest() {
#ifdef __x86_64__
  if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("popcnt")) {
    return markWithAvx2;
  }
#endif
  return markPlainly;
}

}  // namespace

template <class Mark>
void StructureMarks::findBy(Mark mark, const char* text, std::size_t size, StructureBytes bytes) {
  count_ = 0;
  asciiUpTo_ = size;
  for (std::size_t from = 0; from < size; from += stretchBytes) {
    if (count_ + stretchPositions > positions_.size()) positions_.resize(positions_.size() * 2 + stretchPositions);
    const std::size_t upTo = std::min(from + stretchBytes, size);
    const StretchMarks marks = mark(bytes, text, from, upTo, positions_.data() + count_);
    count_ += marks.count;
    if (!marks.isAscii) asciiUpTo_ = std::min(asciiUpTo_, from);
  }
}

void StructureMarks::find(const char* text, std::size_t size, StructureBytes bytes) {
  static const MarkStretch mark = fastest();
  findBy(mark, text, size, bytes);
}

void StructureMarks::findPlainly(const char* text, std::size_t size, StructureBytes bytes) {
  findBy(markPlainly, text, size, bytes);
}

}  // namespace workbench::data
