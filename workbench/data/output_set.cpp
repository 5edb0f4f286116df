#include "workbench/data/output_set.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <utility>

#include "workbench/data/data_file.h"
#include "workbench/data/working/refusal.h"
#include "workbench/runtime/temporary_files.h"
#include "workbench/text/folding.h"

namespace workbench::data {

void OutputSet::Output::complete(std::unique_ptr<CaseWriter> writer, std::function<void()> afterCommit) {
  if (isAbandoned_) return;  // with its set, whatever its writer does afterwards
  writer_ = std::move(writer);
  afterCommit_ = std::move(afterCommit);
}

void OutputSet::Output::complete(std::shared_ptr<Dataset> dataset) {
  if (!isAbandoned_) dataset_ = std::move(dataset);
}

void OutputSet::Output::abandon() noexcept {
  isAbandoned_ = true;
  writer_.reset();
  dataset_.reset();
}

Outcome<std::shared_ptr<OutputSet::Output>> OutputSet::addFile(std::string_view path, const FileInUse* mayReplace) {
  const FilePlace place = FilePlace::of(path);
  const std::string shown = cleanedPath(path);
  if (FileInUse::anyIsAt(place, mayReplace)) {
    return problem("The data file ^1 cannot be written because data that are open come from it; choose another name.",
                   {shown});
  }
  const bool isTaken = std::any_of(outputs_.begin(), outputs_.end(), [&](const auto& other) {
    return !other->isAbandoned_ && other->place_ && *other->place_ == place;
  });
  if (isTaken) return problem("The data file ^1 is written twice by one command; choose another name.", {shown});
  auto output = std::make_shared<Output>();
  output->name_ = path;
  output->place_ = place;
  if (const auto claimed = claimDictionary(*output, mayReplace); !claimed) return claimed.problem();
  outputs_.push_back(output);
  return output;
}

// Two data files can be so alike in their names that one file would have to hold the dictionaries of both.
Outcome<Done> OutputSet::claimDictionary(Output& output, const FileInUse* mayReplace) const {
  const auto path = fileWrittenBeside(output.name_);
  if (!path) return path.problem();
  if (!*path) return Done{};
  const FilePlace place = FilePlace::of(**path);
  if (FileInUse::anyIsAt(place, mayReplace)) {
    return problem("The dictionary of ^1 would replace ^2, and data that are open come from it; choose another name.",
                   {cleanedPath(output.name_), cleanedPath(**path)});
  }
  for (const auto& other : outputs_) {
    if (other->isAbandoned_ || !other->dictionaryPlace_ || *other->dictionaryPlace_ != place) continue;
    return problem("The dictionaries of ^1 and ^2 would both be written to ^3; choose another name.",
                   {cleanedPath(other->name_), cleanedPath(output.name_), cleanedPath(**path)});
  }
  output.dictionaryPlace_ = place;
  return Done{};
}

Outcome<std::shared_ptr<OutputSet::Output>> OutputSet::addDataset(std::string_view handle) {
  if (datasets_ == nullptr) {
    return problem("No dataset ^1 can be opened here; name a data file.", {handle});
  }
  const bool isTaken = std::any_of(outputs_.begin(), outputs_.end(), [&](const auto& other) {
    return !other->isAbandoned_ && !other->place_ && text::sameName(other->name_, handle);
  });
  if (isTaken) return problem("The dataset ^1 is written twice by one command; choose another name.", {handle});
  auto output = std::make_shared<Output>();
  output->name_ = handle;
  outputs_.push_back(output);
  return output;
}

Outcome<Done> OutputSet::commit() {
  // Whoever ends the run from outside waits until all of them are in place.
  const auto hold = temporaryFiles().hold();
  auto outputs = std::exchange(outputs_, {});
  Outcome<Done> committed = commitFiles(outputs);
  for (const auto& output : outputs) {
    if (committed && output->dataset_) datasets_->openOutput(output->name_, output->dataset_);
    output->abandon();  // whoever still writes it writes to nothing
  }
  return committed;
}

Outcome<Done> OutputSet::commitFiles(std::vector<std::shared_ptr<Output>>& outputs) {
  std::vector<std::string> inPlace;
  for (const auto& output : outputs) {
    if (!output->writer_) continue;
    try {
      output->writer_->commit();
    } catch (const ErrorText& error) {
      if (inPlace.empty()) return Problem{error.GetText(), "", ""};
      return Problem{error.GetText(), "",
                     text::sentence("These files had been put into place before: ^1.",
                                    {fmt::format("{}", fmt::join(inPlace, ", "))})};
    }
    if (output->place_) noteWritten(*output->place_);
    if (output->dictionaryPlace_) noteWritten(*output->dictionaryPlace_);
    inPlace.push_back(cleanedPath(output->name_));
    if (output->afterCommit_) output->afterCommit_();
  }
  return Done{};
}

void OutputSet::abandon() noexcept {
  for (const auto& output : outputs_) output->abandon();
  outputs_.clear();
}

}  // namespace workbench::data
