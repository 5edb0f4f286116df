// DictionaryOutput: the dictionary of a data file that is being written, on its way to where it is looked for.
//
// A schema stands in a private file beside its place until commit, like the data. A package, which is of other data as
// well, is brought up to date at commit, so that two outputs of one run can both have their resource in it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbench/data/descriptors/dictionary_check.h"
#include "workbench/data/descriptors/dictionary_place.h"
#include "workbench/data/dictionary.h"
#include "workbench/data/files/output_file.h"
#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

class DictionaryOutput {
 public:
  // Without a delimiter the data are JSON lines. With a password the schema is a protected file, as the data are. A
  // problem when the dictionary cannot be written down.
  static Outcome<std::unique_ptr<DictionaryOutput>> create(const std::string& dataPath, std::optional<char> delimiter,
                                                           const Dictionary& dictionary, const Secret& password = {});

  // What of the dictionary cannot be written, sentences.
  const std::vector<std::string>& losses() const { return written_.losses; }

  // Both throw ErrorText.
  void complete();
  void commit();  // requires: complete() was called

 private:
  DictionaryOutput(std::string dataPath, std::optional<char> delimiter, const Dictionary& dictionary,
                   DictionaryPlace place, Secret password);
  Outcome<std::string> text() const;

  std::string dataPath_;
  std::optional<char> delimiter_;
  WritableDictionary written_;
  DictionaryPlace place_;
  Secret password_;
  std::unique_ptr<OutputFile> file_;  // of a schema, once it is complete
};

}  // namespace workbench::data
