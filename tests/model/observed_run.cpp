#include "tests/model/observed_run.h"

#include <fmt/format.h>
#include <unicode/coll.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>

#include "tests/model/host_dataset.h"
#include "tests/model/messages.h"
#include "tests/model/observed_steps.h"
#include "tests/model/observed_table.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/wording.h"

namespace workbench::tests::model {

namespace {

// Of one process, so that tests that run at once do not meet.
class ScratchFolder {
 public:
  ScratchFolder()
      : path_(std::filesystem::temp_directory_path() / fmt::format("compare-datasets-model-{}", ::getpid())) {
    std::filesystem::create_directories(path_);
  }
  ~ScratchFolder() { std::filesystem::remove_all(path_); }
  std::filesystem::path path(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

std::filesystem::path scratchPath(const std::string& name) {
  static const ScratchFolder folder;
  return folder.path(name);
}

void emptyOutputFolder() {
  std::filesystem::remove_all(scratchPath("out"));
  std::filesystem::create_directories(scratchPath("out"));
}

// In alphabetical order, with a blank before each.
std::string listed(std::vector<std::string> names) {
  std::sort(names.begin(), names.end());
  std::string all;
  for (const std::string& name : names) all += ' ' + name;
  return all;
}

std::string outputFiles() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(scratchPath("out"))) {
    names.push_back(entry.path().filename().string());
  }
  return listed(std::move(names));
}

int collate(const std::string& locale, std::string_view left, std::string_view right) {
  static std::map<std::string, std::unique_ptr<icu::Collator>> collators;
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator>& collator = collators[locale];
  if (collator == nullptr) collator.reset(icu::Collator::createInstance(icu::Locale(locale.c_str()), status));
  const auto piece = [](std::string_view text) {
    return icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size()));
  };
  const UCollationResult order = collator->compareUTF8(piece(left), piece(right), status);
  if (U_FAILURE(status)) throw std::runtime_error("two texts could not be put in order");
  return order != UCOL_EQUAL ? static_cast<int>(order) : left.compare(right);
}

std::string contentOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  std::stringstream content;
  content << stream.rdbuf();
  return content.str();
}

std::string observedMessage(const output::Message& message) {
  if (message.source == output::Message::Source::parser) return parserRefusal;
  if (message.source == output::Message::Source::host) return "";  // no part of what the procedure says
  if (message.number) return fmt::format("numbered message {} {} {}\n", *message.number, message.show, message.level);
  const std::string text = observedText(message.text);
  const bool isKnown =
      text.starts_with(uncomparedPattern) ||
      std::find(procedureSentences.begin(), procedureSentences.end(), text) != procedureSentences.end();
  return messageLine(message.show, message.level, isKnown ? text : std::string(hostsWords));
}

std::string observedNote(const output::Note& note) {
  return fmt::format("note {}: {} {} {}\n", note.group, observedText(note.texts[0]), observedText(note.texts[1]),
                     observedText(note.texts[2]));
}

std::string observedItem(const output::Item& item) {
  if (const auto* message = std::get_if<output::Message>(&item)) return observedMessage(*message);
  if (const auto* note = std::get_if<output::Note>(&item)) return observedNote(*note);
  const output::Table& table = *std::get<std::unique_ptr<output::Table>>(item);
  return table.destroyed ? "" : observedTable(table);
}

std::shared_ptr<data::Dataset> opened(const Dataset& dataset) {
  if (dataset.path.empty()) return toHost(dataset);
  std::shared_ptr<data::Dataset> fromFile = openFile(dataset.path);
  fromFile->dictionary().filter = dataset.filter ? static_cast<std::int32_t>(*dataset.filter) : -1;
  return fromFile;
}

}  // namespace

void equip(World& world) {
  static const std::unique_ptr<text::Wording> wording = std::move(*text::Wording::load("en"));
  currentRun().wording = wording.get();
  const auto fromCatalog = [](std::int64_t number) { return VrixServerErrorText("vrix.err", number).GetText(); };
  world.mismatchedLabel = fromCatalog(8020);
  world.matchedLabel = fromCatalog(8021);
  world.withoutPartnerLabel = fromCatalog(8022);
  world.flagLabel = fromCatalog(8023);
  currentRun().wording = nullptr;
  world.collate = [locale = world.collation](std::string_view left, std::string_view right) {
    return collate(locale, left, right);
  };
}

std::string scratchFile(const std::string& name) { return scratchPath(name).string(); }
std::string outputFile(const std::string& name) { return (scratchPath("out") / name).string(); }

ObservedRun::ObservedRun(const World& world, const Command& command, Journal journal)
    : isInJournal_(journal == Journal::kept) {
  emptyOutputFolder();
  if (!run_.manager().open(opened(world.compared), "b") ||
      !run_.manager().open(opened(world.active), world.activeHandle)) {
    throw std::runtime_error("the datasets of a test could not be opened");
  }
  run_.checksDocument = false;  // a law of its own does, which can show for which command
  run_.beforeCall = [&world, this] {
    currentRun().settings.tolerance = world.tolerance;
    currentRun().settings.collation = world.collation;
    if (!isInJournal_) workbench::journal().sendTo({});
  };
  run_.run(written(command));
  run_.beforeCall = {};
}

Report ObservedRun::report(const Foretold& foretold) const {
  Report report;
  report.outcome = run_.outcome();
  for (const output::Item& item : run_.command().items) report.items.push_back(observedItem(item));
  std::erase(report.items, "");
  report.active = describe(fromHost(*run_.active()));
  report.matched = savedText(foretold.matched);
  report.mismatched = savedText(foretold.mismatched);
  std::vector<std::string> handles = run_.manager().handles();
  std::transform(handles.begin(), handles.end(), handles.begin(), [](const std::string& name) { return folded(name); });
  report.openDatasets = listed(handles);
  report.files = outputFiles();
  if (isInJournal_) report.steps = observedSteps(run_.journal());
  return report;
}

std::optional<Dataset> ObservedRun::saved(const std::string& handle) {
  const std::shared_ptr<data::Dataset> found = run_.manager().find(handle);
  if (found == nullptr) return std::nullopt;
  return fromHost(*found);
}

std::string ObservedRun::savedText(const std::optional<ForetoldOutput>& output) const {
  if (!output) return "none";
  if (output->isFile) return contentOf(output->name);
  const std::shared_ptr<data::Dataset> found = run_.manager().find(output->name);
  return found == nullptr ? "none" : describe(fromHost(*found));
}

std::string disagreement(const World& world, const Command& command, ObservedRun::Journal journal) {
  Foretold foretold = foretell(world, command);
  const ObservedRun observed(world, command, journal);
  const auto savedText = [](const std::optional<ForetoldOutput>& output) {
    if (!output) return std::string("none");
    if (!output->isFile) return describe(output->content);
    const std::string path = scratchFile("foretold.csv");
    writeFile(output->content, path);
    return contentOf(path);
  };
  std::set<std::string> handles = {"b"};
  if (world.activeHandle) handles.insert(folded(*world.activeHandle));
  std::vector<std::string> files;
  for (const auto& output : {foretold.matched, foretold.mismatched}) {
    if (output && output->isFile) {
      const std::filesystem::path name = std::filesystem::path(output->name).filename();
      files.push_back(name.string());
      // Every file of cases is written with its dictionary beside it.
      files.push_back(name.stem().string() + ".schema.json");
    }
    if (output && !output->isFile) handles.insert(folded(output->name));
  }
  foretold.report.openDatasets = listed({handles.begin(), handles.end()});
  foretold.report.files = listed(files);
  foretold.report.matched = savedText(foretold.matched);
  foretold.report.mismatched = savedText(foretold.mismatched);
  if (journal == ObservedRun::Journal::none) foretold.report.steps.clear();
  return firstDifference(textOf(foretold.report), textOf(observed.report(foretold)));
}

}  // namespace workbench::tests::model
