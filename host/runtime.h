// The host's runtime: what every procedure may ask of the machine it runs on.
//
// Two blocks of plain data (global state, machine constants), numbered host errors, near equality of doubles and the
// four string comparisons. Everything here may be called at any time between the start and the end of a command, on
// the thread on which the host called the procedure. Nothing here allocates memory that the caller has to free.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// Marks what the host's executable exports to the procedures that it loads.
#define HOST_API __attribute__((visibility("default")))

// The host's global state. The block belongs to the host and lives as long as the process.
struct CmnGlb {
  // Not zero while an error of the host awaits the end of the command. Cleared by the host before each command.
  std::int64_t pendingError = 0;
};
static_assert(sizeof(CmnGlb) == 8);

// The machine constants, one double per index. The block is constant and lives as long as the process.
struct CmnMch {
  static constexpr std::size_t systemMissing = 1;      // -DBL_MAX, bits 0xFFEFFFFFFFFFFFFF
  static constexpr std::size_t lowSentinel = 3;        // minus infinity: below every number that data can hold
  static constexpr std::size_t highestNumber = 7;      // DBL_MAX, what HI stands for in a range
  static constexpr std::size_t lowestValidNumber = 9;  // the next double above -DBL_MAX, what LO stands for

  double constants[16] = {};
};
static_assert(sizeof(CmnMch) == 128);

HOST_API CmnGlb* pvGetCmnGlb();
HOST_API const CmnMch* pvGetCmnMch();

// Raises the host's error of the given number at once, with its two codes, and sets the pending-error word.
// An unknown number is shown as its number.
HOST_API void BACKENDERROR(const std::int64_t& number, const std::int64_t& show, const std::int64_t& level);

// True when the two numbers differ by no more than the host's tolerance, relative to the larger of their magnitudes.
// The same value is always near itself, 0.0 and -0.0 included. The system-missing value is a number like any other
// here.
HOST_API bool QLRALMOSTEQUAL(double left, double right);

// The string comparisons. All take UTF-8 texts of known length (a NUL is a byte like any other), return a negative
// number, zero or a positive number, and give an order that is total and the same for the whole command.

// Byte by byte.
HOST_API int VRIXMBstrcmp_A(std::string_view left, std::string_view right);
// Without regard to case (Unicode simple folding).
HOST_API int VRIXMBstricmp_A(std::string_view left, std::string_view right);
// Byte by byte, trailing blanks ignored.
HOST_API int VRIXMBstrnbcmp_A(std::string_view left, std::string_view right);
// By the collation in force, trailing blanks ignored: the order of the bytes unless a locale is set.
HOST_API int VRIXMBstrcoll_A(std::string_view left, std::string_view right);
