#include "workbench/data/working/save.h"

#include <optional>
#include <utility>

#include "host/messages.h"
#include "workbench/data/data_file.h"
#include "workbench/data/working/file_place.h"
#include "workbench/data/working/host_note.h"

namespace workbench::data {
namespace {

bool readsFrom(const Dataset& dataset, const std::string& path) {
  return !dataset.isKept() && dataset.fileInUse() != nullptr && dataset.fileInUse()->isAt(FilePlace::of(path));
}

// Appends all cases to the writer, and to the keeper where there is one.
std::int64_t writeCases(const Dataset& dataset, CaseWriter& writer, std::optional<CaseKeeper>& keeper) {
  std::int64_t cases = 0;
  DatasetPass pass(dataset, CaseUse::onlyRead);
  while (const CaseSpan span = pass.next()) {
    writer.append(span.cases, span.count, span.caseSlots);
    if (keeper) keeper->add(span.cases, span.count, span.caseSlots);
    cases += static_cast<std::int64_t>(span.count);
  }
  return cases;
}

}  // namespace

Outcome<std::int64_t> saveDataset(const std::shared_ptr<Dataset>& dataset, const std::string& path,
                                  const Secret& password, OutputSet& outputs) {
  const auto canBeWritten = checkOutputFile(path);
  if (!canBeWritten) return canBeWritten.problem();
  const auto output = outputs.addFile(path, dataset->fileInUse());
  if (!output) return output.problem();
  try {
    auto writer = createDataFile(path, dataset->dictionary(), password);
    if (!writer) {
      (*output)->abandon();
      return writer.problem();
    }
    for (const std::string& warning : (*writer)->warnings()) {
      addHostNote(BpErrorLevel::warning, cleanedPath(path) + ": " + warning);
    }
    std::optional<CaseKeeper> keeper;
    if (readsFrom(*dataset, path)) keeper.emplace(dataset->layout().caseSlots);
    const std::int64_t cases = writeCases(*dataset, **writer, keeper);
    (*writer)->complete();
    std::shared_ptr<const KeptCases> kept = keeper ? keeper->finish() : nullptr;
    (*output)->complete(std::move(*writer), [dataset, kept] {
      if (kept) dataset->replaceCases(kept);
      dataset->markSaved();
    });
    return cases;
  } catch (const ErrorText& error) {
    (*output)->abandon();
    return Problem{error.GetText(), "", ""};
  }
}

}  // namespace workbench::data
