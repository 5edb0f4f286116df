// SystemFileDataSource: a data file as a source that a procedure reads and deletes.
#include <fmt/format.h>

#include <memory>

#include "host/data.h"
#include "workbench/data/working/dataset_source.h"
#include "workbench/data/working/journal_call.h"
#include "workbench/data/working/journaled_source.h"
#include "workbench/data/working/open_dataset.h"
#include "workbench/data/working/password_reference.h"
#include "workbench/data/working/refusal.h"

using workbench::journal;
using workbench::Journal;
using workbench::data::DatasetSource;
using workbench::data::JournaledSource;
using workbench::data::SourceKind;

namespace {

std::unique_ptr<JournaledSource> open(std::string_view path, std::string_view password, bool forReading) {
  if (!forReading) {
    workbench::data::refuse("The data file ^1 can only be opened for reading; it is written by saving to it.", {path});
  }
  auto dataset = workbench::data::openDataset(std::string(path), {workbench::data::givenPassword(password)});
  if (!dataset) throw ErrorText(dataset.problem().text());
  auto source = std::make_unique<DatasetSource>(*dataset, SourceKind::readOnlyView);
  return std::make_unique<JournaledSource>(std::move(source), "VRIX_DataSource");
}

}  // namespace

VRIX_DataSource* SystemFileDataSource::GetSystemFile(std::string_view path, std::string_view password, bool forReading,
                                                     FileErrorMonitor* monitor) {
  if (!journal().isOn()) return open(path, password, forReading).release();
  const std::string call =
      fmt::format("SystemFileDataSource.GetSystemFile({}, {}, {}, {})", Journal::quoted(path),
                  workbench::data::hiddenPassword(password), forReading, monitor == nullptr ? "null" : "monitor");
  try {
    auto source = open(path, password, forReading);
    journal().line(fmt::format("{} = {}", source->name(), call));
    return source.release();
  } catch (const ErrorText& error) {
    journal().line(fmt::format("{} throws ErrorText({})", call, Journal::quoted(error.GetText())));
    throw;
  }
}
