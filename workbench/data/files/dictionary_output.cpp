#include "workbench/data/files/dictionary_output.h"

#include <filesystem>
#include <fstream>
#include <utility>

#include "host/messages.h"
#include "workbench/data/descriptors/package_writer.h"
#include "workbench/data/descriptors/schema_writer.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

template <class Value>
Value valueOrThrow(Outcome<Value> outcome) {
  if (!outcome) throw ErrorText(outcome.problem().text());
  return std::move(*outcome);
}

std::unique_ptr<OutputFile> completeFile(const std::string& path, const std::string& text, const Secret& password) {
  std::unique_ptr<OutputFile> file = valueOrThrow(OutputFile::create(path, password));
  std::ofstream content(file->descriptorPath(), std::ios::binary);
  content.write(text.data(), static_cast<std::streamsize>(text.size()));
  content.close();
  if (!content) {
    file->checkRoom();
    throw ErrorText(Problem{text::sentence("The dictionary could not be written."), path,
                            text::sentence("Is there room on the disk?")}
                        .text());
  }
  file->complete();
  return file;
}

}  // namespace

Outcome<std::unique_ptr<DictionaryOutput>> DictionaryOutput::create(const std::string& dataPath,
                                                                    std::optional<char> delimiter,
                                                                    const Dictionary& dictionary,
                                                                    const Secret& password) {
  Outcome<DictionaryPlace> place = dictionaryPlaceOf(dataPath);
  if (!place) return place.problem();
  std::unique_ptr<DictionaryOutput> output(
      new DictionaryOutput(dataPath, delimiter, dictionary, std::move(*place), password));
  if (const Outcome<std::string> text = output->text(); !text) {
    Problem problem = text.problem();
    if (problem.where.empty()) problem.where = dataPath;
    return problem;
  }
  return output;
}

DictionaryOutput::DictionaryOutput(std::string dataPath, std::optional<char> delimiter, const Dictionary& dictionary,
                                   DictionaryPlace place, Secret password)
    : dataPath_(std::move(dataPath)),
      delimiter_(delimiter),
      written_(writablePartOf(dictionary)),
      place_(std::move(place)),
      password_(std::move(password)) {}

void DictionaryOutput::complete() {
  if (!place_.isPackage) file_ = completeFile(place_.path, valueOrThrow(text()), password_);
  password_ = {};
}

void DictionaryOutput::commit() {
  if (place_.isPackage) file_ = completeFile(place_.path, valueOrThrow(text()), {});
  file_->commit();
}

Outcome<std::string> DictionaryOutput::text() const {
  if (!place_.isPackage) return schemaText(written_.dictionary);
  return packageTextWith(place_.path, std::filesystem::path(dataPath_).filename().string(), written_.dictionary,
                         delimiter_);
}

}  // namespace workbench::data
