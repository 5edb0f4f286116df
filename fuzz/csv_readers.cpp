// Any text that is opened as a CSV file is the same cases by our reader and by DuckDB's, with the types that are
// inferred.
#include "fuzz/fuzzed_input.h"
#include "fuzz/scratch_folder.h"
#include "tests/data/files/table_fixture.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace workbench;
  using namespace workbench::data;
  const std::string path = fuzz::writeScratchFile("a.csv", {reinterpret_cast<const char*>(data), size});
  const auto file = openDataFile(path, {});
  if (!file) return 0;
  const FileKind kind = *fileKind(path);
  const auto evidence = evidenceOf(path, kind);
  if (!evidence) fuzz::fail("opened, and then refused");
  const auto table = std::make_shared<const CsvTable>(path, kind, *evidence, (*file)->dictionary());
  if (casesOfDuckDb(table) != casesOfScanner(table)) fuzz::fail("the readers differ");
  return 0;
}
