#include "workbench/app/named_files.h"

#include <string>
#include <variant>
#include <vector>

#include "workbench/data/files/path_target.h"
#include "workbench/data/working/file_place.h"
#include "workbench/text/wording.h"

namespace workbench::app {

namespace {

struct NamedFiles {
  std::vector<std::string> read;
  std::vector<std::string> written;
  std::optional<std::string> savedOver;  // an output that may take the place of the first file that is read
};

void addIfGiven(const std::optional<std::string>& file, std::vector<std::string>& files) {
  if (file && *file != "-") files.push_back(*file);
}

void addPasswordFiles(const PasswordFiles& passwords, NamedFiles& files) {
  for (const auto& file : {passwords.input, passwords.comparison, passwords.output}) addIfGiven(file, files.read);
}

void addOutputs(const OutputChoice& output, NamedFiles& files) {
  addIfGiven(output.file, files.written);
  addIfGiven(output.journal, files.written);
}

NamedFiles filesOf(const CompareCommand& compare) {
  const CompareRequest& request = compare.request;
  NamedFiles files{{request.active, request.comparison}, {}, request.saveActive};
  addPasswordFiles(compare.passwordFiles, files);
  for (const auto& file : {request.matched, request.mismatched, request.saveActive}) addIfGiven(file, files.written);
  addOutputs(compare.output, files);
  return files;
}

NamedFiles filesOf(const RunCommand& run) {
  NamedFiles files;
  addIfGiven(run.job, files.read);
  addOutputs(run.output, files);
  return files;
}

NamedFiles filesOf(const DescribeCommand& describe) {
  NamedFiles files{{describe.data}, {}, {}};
  addPasswordFiles(describe.passwordFiles, files);
  addOutputs(describe.output, files);
  return files;
}

template <class Command>
NamedFiles filesOfCopy(const Command& command) {
  NamedFiles files{{command.input}, {command.output}, command.output};
  addPasswordFiles(command.passwordFiles, files);
  addOutputs(command.results, files);
  return files;
}

NamedFiles filesOf(const ConvertCommand& convert) { return filesOfCopy(convert); }
NamedFiles filesOf(const SortCommand& sort) { return filesOfCopy(sort); }
NamedFiles filesOf(const EncodePasswordCommand&) { return {}; }
NamedFiles filesOf(const ShowText&) { return {}; }

}  // namespace

Outcome<Done> checkNamedFiles(const ProgramCommand& command) {
  const NamedFiles files = std::visit([](const auto& one) { return filesOf(one); }, command);
  const std::string remedy = text::sentence("Choose another name.");
  std::vector<data::FilePlace> written;
  for (const std::string& file : files.written) {
    if (data::isStream(file)) continue;
    const data::FilePlace place = data::FilePlace::of(file);
    for (std::size_t index = 0; index < files.read.size(); ++index) {
      const bool mayReplace = index == 0 && file == files.savedOver;
      if (mayReplace || !(data::FilePlace::of(files.read[index]) == place)) continue;
      return Problem{text::sentence("This file would be read and replaced."), file, remedy};
    }
    for (const data::FilePlace& other : written) {
      if (other == place) return Problem{text::sentence("Two outputs would be written to this file."), file, remedy};
    }
    written.push_back(place);
  }
  return Done{};
}

}  // namespace workbench::app
