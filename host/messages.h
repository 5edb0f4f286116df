// The host's messages: what a procedure says to its user outside tables, and the two exceptions that cross the
// boundary.
//
// A message is issued at the moment of the call and never taken back. The host copies every text at the call.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

#include "host/runtime.h"

class BpCellText;

// Where a message is shown. The results document has all of them.
enum class BpErrorShow : int {
  log = 0,          // standard error
  diagnostics = 2,  // standard error
  results = 4,      // among the results
};

enum class BpErrorLevel : int {
  note = 1,
  warning = 2,
  error = 3,
  severeError = 4,
};

// Issues one message. The text is resolved to the user's language when its translate flag is set.
HOST_API void BpError(const BpCellText& text, BpErrorShow show, BpErrorLevel level);

// What a note that a procedure adds to its output is about.
enum class BpNoteKind : int {
  savedFile = 2,      // cases were saved: what they are, nothing, the file
  addedVariable = 3,  // a variable was added to the active dataset: nothing, nothing, its name
};

// Attaches a note to the command's output under the number of its kind.
HOST_API void AddNotesWithGroup(BpNoteKind group, const BpCellText& first, const BpCellText& second,
                                const BpCellText& third);

// The text of a diagnostic line: a view for the length of the call.
struct BP_Character {
  BP_Character(std::string_view characters) : text(characters) {}
  std::string_view text;
};

// Writes a diagnostic line for people who look into a run. Never part of the results; shown only on request.
HOST_API void BP_ToFront(std::int64_t code, const BP_Character& line);

// One numbered text of a message catalog, in the user's language.
class HOST_API VrixServerErrorText {
 public:
  // An unknown catalog or number yields a text that names both.
  VrixServerErrorText(std::string_view catalogFile, std::int64_t number);
  VrixServerErrorText(const VrixServerErrorText&) = delete;
  VrixServerErrorText& operator=(const VrixServerErrorText&) = delete;
  ~VrixServerErrorText();

  // Valid as long as this object lives.
  const std::string& GetText() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// The host's exception: something it was asked for cannot be done. Its text is one sentence for the user: what, which
// name, what to do.
class HOST_API ErrorText : public std::exception {
 public:
  explicit ErrorText(std::string text);
  ~ErrorText() override;

  const char* what() const noexcept override;
  const std::string& GetText() const noexcept { return text_; }

 private:
  std::string text_;
};

// Thrown by a procedure that ends its command before its time. The host treats the command as failed and abandons its
// outputs; it adds a message of its own only when nothing was reported.
class HOST_API VrixGoToCaller {
 public:
  VrixGoToCaller();
  virtual ~VrixGoToCaller();
};
