#include "workbench/data/data_file.h"

#include "workbench/data/files/csv_case_writer.h"
#include "workbench/data/files/csv_file.h"
#include "workbench/data/files/file_kind.h"

namespace workbench::data {

Outcome<std::shared_ptr<const DataFile>> openDataFile(const std::string& path, const OpenOptions& options) {
  const Outcome<FileKind> kind = fileKind(path);
  if (!kind) return kind.problem();
  if (!options.password.empty()) {
    return Problem{"The file is not protected by a password.", path, "Leave the password out."};
  }
  return openCsvFile(path, *kind, options.typesWith);
}

Outcome<std::unique_ptr<CaseWriter>> createDataFile(const std::string& path, const Dictionary& dictionary,
                                                    const std::string& password) {
  const Outcome<FileKind> kind = fileKind(path);
  if (!kind) return kind.problem();
  if (!password.empty()) {
    return Problem{"A file of this kind cannot be protected by a password.", path, "Leave the password out."};
  }
  return createCsvFile(path, *kind, dictionary);
}

}  // namespace workbench::data
