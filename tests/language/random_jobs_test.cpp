// Whatever stands in a job: it is read to its end, every command is accepted or has exactly one error, and no password
// is shown.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/language/sample_grammar.h"
#include "workbench/language/job.h"

namespace workbench::language {
namespace {

rc::Gen<std::string> pieces(std::vector<std::string> choices) {
  return rc::gen::map(rc::gen::container<std::vector<std::string>>(rc::gen::elementOf(std::move(choices))),
                      [](const std::vector<std::string>& all) {
                        std::string text;
                        for (const std::string& one : all) text += one;
                        return text;
                      });
}

rc::Gen<std::string> nearlyAJob() {
  return pieces({"COMPARE DATASETS",
                 "DRAW",
                 "OPEN DATA",
                 "SET OPTIONS",
                 " ",
                 " ",
                 "\n",
                 ".\n",
                 ".",
                 "/",
                 "=",
                 ",",
                 "*",
                 "/*",
                 "*/",
                 "'",
                 "\"",
                 "(",
                 "a",
                 "TO",
                 "ALL",
                 "1",
                 "-",
                 "1.5",
                 "1e5",
                 "/COMPDATASET=",
                 "/VARIABLES=",
                 "/SAVE",
                 "/OUTPUT",
                 " VARPROPERTIES=",
                 " TABLELIMIT=",
                 " PASSWORD=",
                 "/SHAPE=",
                 " SIZE=",
                 " FILE=",
                 "QUIET",
                 "é",
                 "\xFF",
                 std::string(1, '\0'),
                 "\r",
                 "\xE2\x80",
                 "'x'",
                 "YES",
                 "NONE",
                 " FILLED"});
}

RC_GTEST_PROP(RandomJob, OfAnyBytesIsReadToItsEnd, (const std::string& bytes)) {
  std::size_t shown = 0;
  for (const JobCommand& command : readJob(bytes, {"A", "B C"})) shown += command.syntax.size();
  RC_ASSERT(shown <= bytes.size());
}

RC_GTEST_PROP(RandomJob, OfNearlyRightCommandsGetsAnAnswerPerCommand, ()) {
  const std::string job = *nearlyAJob();
  const std::size_t commands = readJob(job, {"COMPARE DATASETS", "DRAW", "OPEN DATA", "SET OPTIONS"}).size();
  const std::string answer = answerTo(job);
  RC_ASSERT(static_cast<std::size_t>(std::count(answer.begin(), answer.end(), '\n')) >= commands);
}

RC_GTEST_PROP(RandomJob, NeverShowsAPasswordWhateverFollowsIt, ()) {
  const std::string job = "OPEN DATA FILE='a' PASSWORD='geheim'" + *nearlyAJob();
  for (const JobCommand& command : readJob(job, {"OPEN DATA"})) {
    RC_ASSERT(command.syntax.find("geheim") == std::string::npos);
  }
  RC_ASSERT(errorOf(job).find("geheim") == std::string::npos);
}

}  // namespace
}  // namespace workbench::language
