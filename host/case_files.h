// The host's data files: datasets and files as users name them, opened for reading or writing. Unless a declaration
// says otherwise, what a call cannot do is thrown as ErrorText.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/cases.h"
#include "host/runtime.h"

// A dataset or data file as a user names it in a command. Not valid before Init succeeded.
class HOST_API UserCaseFileSpec {
 public:
  UserCaseFileSpec();
  UserCaseFileSpec(const UserCaseFileSpec&) = delete;
  UserCaseFileSpec& operator=(const UserCaseFileSpec&) = delete;
  ~UserCaseFileSpec();

  // For input: a quoted string is a data file, a word an open dataset's handle, "*" the working file.
  // False when it does not exist; ErrorText() then says so. Nothing is opened.
  bool Init(std::string_view name, bool isQuoted, bool forOutput);
  // For output: a well-formed handle is a dataset, anything else a data file. False when the place cannot be written.
  // An encrypted password was made by the host's own encoder.
  bool Init(std::string_view name, bool isQuoted, bool forOutput, std::string_view password, bool passwordIsEncrypted);

  bool IsValid() const;
  bool IsDataset() const;
  bool IsFile() const;
  bool IsWorkingFile() const;
  // What to show: the handle, or the path as written, lexically cleaned. Valid as long as this object is unchanged.
  const std::string& DocumentationString() const;
  // Why Init failed, in one sentence.
  const std::string& ErrorText() const;

 private:
  friend class UserOutputCaseFile;
  struct State;
  std::unique_ptr<State> state_;
};

// An output opened over a valid specification. A file is written beside its place and moved there by the host when the
// command has ended well. Destroying it without a Close of its source abandons it.
class HOST_API UserOutputCaseFile {
 public:
  // Throws ErrorText when it cannot be opened. Requires: the spec is valid and outlives this object.
  explicit UserOutputCaseFile(const UserCaseFileSpec& spec);
  UserOutputCaseFile(const UserOutputCaseFile&) = delete;
  UserOutputCaseFile& operator=(const UserOutputCaseFile&) = delete;
  ~UserOutputCaseFile();

  // Belongs to this object.
  VRIX_DataSource& GetDataSource() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Told of trouble in a file that can still be read. A procedure may pass none.
class FileErrorMonitor;

// Opens data files.
class HOST_API SystemFileDataSource {
 public:
  // The file as a source, owned by the caller and deleted through its virtual destructor. The password may be empty.
  // Throws ErrorText when the file cannot be opened.
  static VRIX_DataSource* GetSystemFile(std::string_view path, std::string_view password, bool forReading,
                                        FileErrorMonitor* monitor);
};
