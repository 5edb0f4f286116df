// Of any bytes the same is unpacked as by Snappy's own library, or nothing by either.
#include "workbench/data/parquet/snappy.h"

#include <snappy-c.h>

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "fuzz/fuzzed_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace workbench;
  const auto* const bytes = reinterpret_cast<const char*>(data);
  std::vector<char> packed(bytes, bytes + size);
  packed.resize(size + data::snappySlack);
  std::size_t length = 0;
  constexpr std::size_t longest = std::size_t{1} << 20;
  if (::snappy_uncompressed_length(bytes, size, &length) != SNAPPY_OK || length > longest) return 0;
  std::vector<char> expected(length + 1);
  std::vector<char> unpacked(length + data::snappySlack);
  const bool isPacked = ::snappy_uncompress(bytes, size, expected.data(), &length) == SNAPPY_OK;
  const bool isUnpacked = data::unpackSnappy({packed.data(), size}, unpacked.data(), length);
  // The library takes a length of two to the power of 32 for none.
  const bool mayOverflow = std::string_view(bytes, size).find("\xff\xff\xff\xff") != std::string_view::npos;
  if (isUnpacked != isPacked && !(isPacked && mayOverflow))
    fuzz::fail("one of them takes it for packed, and the other does not");
  if (isUnpacked && std::memcmp(unpacked.data(), expected.data(), length) != 0) fuzz::fail("other bytes come of it");
  return 0;
}
