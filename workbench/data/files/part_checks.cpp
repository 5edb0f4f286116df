#include "workbench/data/files/part_checks.h"

#include <fmt/format.h>

#include <utility>

#include "host/messages.h"

namespace workbench::data {

InputFile openPartFile(const CsvPart& part) {
  Outcome<InputFile> file = InputFile::open(part.path);
  if (!file) throw ErrorText(file.problem().text());
  return std::move(*file);
}

void checkPartUnchanged(const CsvPart& part, const InputFile& file) {
  if (file.identity() == part.evidence->identity) return;
  throw ErrorText(fmt::format("{}: The file has changed since it was opened; open it again.", part.path));
}

void checkWhole(const CsvPart& part, std::uint64_t casesRead, std::uint64_t bytesRead) {
  const FileEvidence& evidence = *part.evidence;
  if (casesRead == evidence.cases && bytesRead == evidence.textBytes) return;
  throw ErrorText(
      fmt::format("{}: {} cases of {} bytes were read, and {} cases of {} bytes stand in the file; please "
                  "report this as a fault of this program.",
                  part.path, casesRead, bytesRead, evidence.cases, evidence.textBytes));
}

}  // namespace workbench::data
