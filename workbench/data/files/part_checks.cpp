#include "workbench/data/files/part_checks.h"

#include <fmt/format.h>

#include <utility>

#include "host/messages.h"
#include "workbench/text/wording.h"

namespace workbench::data {

InputFile openPartFile(const CsvPart& part) {
  Outcome<InputFile> file = InputFile::open(part.path);
  if (!file) throw ErrorText(file.problem().text());
  return std::move(*file);
}

void checkPartUnchanged(const CsvPart& part, const InputFile& file) {
  if (file.identity() == part.evidence->identity) return;
  throw ErrorText(
      Problem{text::sentence("The file has changed since it was opened; open it again."), part.path, ""}.text());
}

void checkWhole(const CsvPart& part, std::uint64_t casesRead, std::uint64_t bytesRead) {
  const FileEvidence& evidence = *part.evidence;
  if (casesRead == evidence.cases && bytesRead == evidence.textBytes) return;
  throw ErrorText(
      text::sentence("^1: ^2 cases of ^3 bytes were read, and ^4 cases of ^5 bytes stand in the file; please report "
                     "this as a fault of this program.",
                     {part.path, fmt::to_string(casesRead), fmt::to_string(bytesRead), fmt::to_string(evidence.cases),
                      fmt::to_string(evidence.textBytes)}));
}

}  // namespace workbench::data
