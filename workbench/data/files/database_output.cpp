#include "workbench/data/files/database_output.h"

#include <utility>

#include "host/messages.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

std::optional<Problem> problemBeside(const std::string& file, std::span<const std::string_view> endingsBeside) {
  for (const std::string_view ending : endingsBeside) {
    const std::string beside = file + std::string(ending);
    const std::optional<FileIdentity> found = identityAt(beside);
    if (!found || found->size == 0) continue;
    return Problem{text::sentence("Changes that are not in the database yet lie beside it, in ^1.", {beside}), file,
                   text::sentence("Close the program that made them; if there is none, open the database with its own "
                                  "program once.")};
  }
  return std::nullopt;
}

}  // namespace

Outcome<std::unique_ptr<DatabaseOutput>> DatabaseOutput::create(const std::string& file,
                                                                std::span<const std::string_view> endingsBeside) {
  if (const std::optional<Problem> beside = problemBeside(file, endingsBeside)) return *beside;
  Outcome<std::unique_ptr<OutputFile>> output = OutputFile::create(file);
  if (!output) return output.problem();
  return std::unique_ptr<DatabaseOutput>(new DatabaseOutput(std::move(*output), endingsBeside));
}

DatabaseOutput::DatabaseOutput(std::unique_ptr<OutputFile> file, std::span<const std::string_view> endingsBeside)
    : file_(std::move(file)),
      privatePath_(&file_->handOver(endingsBeside)),
      endingsBeside_(endingsBeside),
      replaced_(identityAt(file_->path())) {}

void DatabaseOutput::commit() {
  if (const std::optional<Problem> beside = problemBeside(file(), endingsBeside_)) throw ErrorText(beside->text());
  if (identityAt(file()) != replaced_) {
    throw ErrorText(text::sentence(
        "^1: The database has changed since a table of it began to be written; nothing was put there. Try again.",
        {file()}));
  }
  file_->commit();
}

}  // namespace workbench::data
