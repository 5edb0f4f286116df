// Any text as a schema beside a file, or as a package: it describes the file or is refused, and what is described can
// be opened or is refused.
#include "fuzz/fuzzed_input.h"
#include "fuzz/scratch_folder.h"
#include "workbench/data/data_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace workbench;
  fuzz::FuzzedInput input(data, size);
  const bool isPackage = input.choice(2) == 1;
  const std::string file = fuzz::writeScratchFile("a.csv", "id,name,score,day\n1,Ann,1.5,2024-01-31\n2,-9,NA,\n");
  const std::string descriptor = fuzz::writeScratchFile("datapackage.json", isPackage ? input.rest() : "{}");
  fuzz::writeScratchFile("a.schema.json", isPackage ? R"({"fields":[]})" : input.rest());
  (void)data::openDataFile(file, {});
  if (isPackage) (void)data::openDataFile(descriptor, {});
  return 0;
}
