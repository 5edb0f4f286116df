// DataFile: a file that holds a dataset, opened: its dictionary, and readers over its cases.
//
// Requires: the file does not change while it is open (a reader that notices throws ErrorText).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "workbench/data/case_reader.h"
#include "workbench/data/dictionary.h"
#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

class DataFile {
 public:
  virtual ~DataFile() = default;

  virtual const Dictionary& dictionary() const = 0;
  virtual const std::string& path() const = 0;  // as written
  // The file in which its dictionary is written down; empty when the dictionary was inferred.
  virtual std::string dictionaryFile() const { return {}; }
  // The files that the cases are read from, where these are others than what the path names. None may be replaced.
  virtual std::vector<std::string> furtherFiles() const { return {}; }
  virtual std::optional<std::int64_t> caseCount() const = 0;
  // A pass over all cases. Several may be open at once, each used by one thread at a time. Throws ErrorText.
  virtual std::unique_ptr<CaseReader> openReader(const VariableSubset& wanted) const = 0;
  std::unique_ptr<CaseReader> openReader() const { return openReader(VariableSubset()); }
  // Whether it is known without reading that the variable's values increase strictly from case to case and none is
  // missing: numbers by value, texts by their bytes over the full width with the blanks at their end left out, none of
  // them empty.
  virtual bool isKnownIncreasing(std::int32_t /*variable*/) const { return false; }
  // The same cases in ascending order of these variables, where whoever holds them can bring them into one. That may be
  // another one than sort_order.h has, so who asks has to look. Null: nobody can.
  virtual std::shared_ptr<const DataFile> broughtIntoOrder(const std::vector<std::int32_t>& /*variables*/) const {
    return nullptr;
  }
  // What a user should know of how the file was read: a renamed column, a column that stayed text and why. Sentences.
  virtual const std::vector<std::string>& warnings() const = 0;
};

// Variables that get other names or are left out when a file is opened. Names are those of the file, without regard to
// case; all changes are made at once, so two variables may exchange their names.
struct VariableChanges {
  std::vector<std::pair<std::string, std::string>> renamed;  // old name, new name
  std::vector<std::string> dropped;
};

struct OpenOptions {
  Secret password;                            // empty: none
  std::optional<std::string> typesWith = {};  // another data file: what no dictionary declares is inferred over both
  Secret typesPassword = {};                  // of that file
  VariableChanges changes = {};
  VariableChanges typesChanges = {};  // under which that file is going to be opened, or was
};

// Opens a data file; its whole content has been read and found sound when types had to be inferred. A protected file,
// and a protected dictionary beside it, are opened with the password, their plain content lying in memory as long as
// the DataFile lives.
Outcome<std::shared_ptr<const DataFile>> openDataFile(const std::string& path, const OpenOptions& options);

// Whether a dictionary is written down for the data file, or said to be: a file that cannot be read says so when it is
// opened.
bool bringsDictionary(const std::string& path);

// The file that is written beside the data file, with its dictionary; none where that goes into a package, which is
// brought up to date.
Outcome<std::optional<std::string>> fileWrittenBeside(const std::string& path);

// Whether the name is one of a kind of data that is written.
Outcome<Done> checkCanBeWritten(const std::string& path);

// Begins writing a data file of the kind that its name's ending says, and its dictionary. Nothing stands at `path`
// before commit(). With a password, which has to be given when and only when the name says so (protected_name.h), both
// are protected files.
Outcome<std::unique_ptr<CaseWriter>> createDataFile(const std::string& path, const Dictionary& dictionary,
                                                    const Secret& password);

}  // namespace workbench::data
