#include "workbench/app/journal_file.h"

#include <fstream>
#include <string_view>

#include "workbench/data/data_file.h"
#include "workbench/data/descriptors/dictionary_place.h"
#include "workbench/data/files/output_stream.h"
#include "workbench/data/files/path_target.h"
#include "workbench/data/kinds/data_kind.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/wording.h"

namespace workbench::app {

namespace {

bool isNamedAsData(const std::string& path) { return data::dataKind(path) || data::isSchemaName(path); }

Problem unwritable(const std::string& path) {
  return {text::sentence("The journal cannot be written."), path,
          text::sentence("Name a file in a folder that you can write to.")};
}

}  // namespace

Outcome<std::unique_ptr<JournalFile>> JournalFile::begin(const std::string& path) {
  // It is begun before a job says what it opens, so nothing that looks like data is ever replaced.
  if (isNamedAsData(path) || isNamedAsData(data::linkTarget(path).string())) {
    return Problem{text::sentence("The journal is no data, and the name is that of a data file."), path,
                   text::sentence("Choose another name.")};
  }
  std::unique_ptr<JournalFile> file(new JournalFile(path));
  if (data::isStream(path)) {
    auto stream = data::OutputFile::create(path);
    if (!stream) return unwritable(path);
    file->stream_ = std::move(*stream);
    file->out_ = std::make_unique<data::OutputStream>(*file->stream_);
  } else {
    file->out_ = std::make_unique<std::ofstream>(path, std::ios::binary | std::ios::trunc);
  }
  if (!*file->out_) return unwritable(path);
  // A line at a time: nothing is lost with the process, and what else goes to the same place stands in order.
  journal().sendTo([&out = *file->out_](std::string_view line) { out << line << '\n' << std::flush; });
  return file;
}

JournalFile::~JournalFile() { journal().sendTo({}); }

Outcome<Done> JournalFile::end() {
  journal().sendTo({});
  if (!out_->flush()) return unwritable(path_);
  return Done{};
}

}  // namespace workbench::app
