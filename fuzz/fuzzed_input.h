// FuzzedInput: a text from a fuzzer, the first bytes of which decide about other things.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace workbench::fuzz {

class FuzzedInput {
 public:
  FuzzedInput(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

  // A number below the bound, from the next byte; 0 at the end.
  unsigned choice(unsigned bound) {
    if (rest_.empty()) return 0;
    const unsigned byte = static_cast<unsigned char>(rest_.front());
    rest_.remove_prefix(1);
    return byte % bound;
  }
  std::string_view rest() const { return rest_; }

 private:
  std::string_view rest_;
};

// Ends the program, so that the fuzzer keeps the input.
[[noreturn]] inline void fail(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::abort();
}

}  // namespace workbench::fuzz
