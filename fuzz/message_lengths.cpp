// Any bytes as an encrypted message: what its lengths say of its end is found out, or that they say nothing.
#include "fuzz/fuzzed_input.h"
#include "fuzz/scratch_folder.h"
#include "workbench/data/files/input_file.h"
#include "workbench/data/files/openpgp_framing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace workbench;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto message = data::InputFile::openAsItIs(fuzz::writeScratchFile("message.pgp", bytes));
  if (!message) fuzz::fail(message.problem().text());
  (void)data::isCutOff(*message);
  return 0;
}
