// Any Parquet file, put together of any parts, is read to its end or is a problem, and is the same each time it is
// read.
#include <fmt/format.h>

#include "fuzz/fuzzed_input.h"
#include "fuzz/scratch_folder.h"
#include "tests/data/parquet/parquet_builder.h"
#include "tests/data/parquet/parquet_fixture.h"

namespace workbench::data {
namespace {

std::string fileOf(fuzz::FuzzedInput& input) {
  BuiltColumn column{.physical = input.choice(8),
                     .length = input.choice(12),
                     .repetition = input.choice(3),
                     .converted = static_cast<std::int64_t>(input.choice(24)) - 1,
                     .scale = input.choice(6),
                     .digits = input.choice(20)};
  column.codec = input.choice(4) == 0 ? input.choice(8) : 0;
  std::vector<BuiltPage> pages(input.choice(5));
  for (BuiltPage& page : pages) {
    page.type = input.choice(4);
    page.values = input.choice(64);
    page.encoding = input.choice(10);
    page.levelBytes = input.choice(16);
    page.saysThatItIsPacked = input.choice(2) == 0;
    page.content = std::string(input.rest().substr(0, input.choice(128)));
    if (input.choice(3) == 0) page.content = withLength(page.content) + page.content;
  }
  const std::int64_t rows = input.choice(128);
  const unsigned damagedPlace = input.choice(256);
  const unsigned change = input.choice(256);
  std::string file = builtParquet(column, pages, rows);
  if (damagedPlace < file.size()) {
    char& byte = file[file.size() - 1 - damagedPlace];
    byte = static_cast<char>(byte ^ change);
  }
  return file;
}

}  // namespace
}  // namespace workbench::data

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace workbench;
  using namespace workbench::data;
  fuzz::FuzzedInput input(data, size);
  const ParquetFiles files = openedParquet({fuzz::writeScratchFile("a.parquet", fileOf(input))});
  const std::optional<StoredOutline> outline = files.front()->outline();
  if (!outline) return 0;
  const std::vector<StoredColumn> columns = columnsOf(*outline);
  const std::optional<ReadValues> first = decodedValues(files, allOf(columns, true));
  if (first != decodedValues(files, allOf(columns))) fuzz::fail("it is another file when it is read again");
  if (first && first->back().empty() && static_cast<std::int64_t>(first->front().size()) != outline->cases)
    fuzz::fail("it has other rows than it says");
  return 0;
}
