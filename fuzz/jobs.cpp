// Any text as a job: it is read to its end, every command of it is accepted or has an error, and no more is shown of it
// than was written.
#include "fuzz/fuzzed_input.h"
#include "tests/language/sample_grammar.h"
#include "workbench/language/job.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace workbench;
  const std::string job(reinterpret_cast<const char*>(data), size);
  std::size_t shown = 0;
  const auto commands = language::readJob(job, {"COMPARE DATASETS", "DRAW", "OPEN DATA", "SORT CASES", "SET OPTIONS"});
  for (const language::JobCommand& command : commands) shown += command.syntax.size();
  // A password takes at most five characters when it is hidden.
  if (shown > size * 5) fuzz::fail("more is shown than was written");
  (void)language::answerTo(job);
  return 0;
}
