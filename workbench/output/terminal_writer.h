// The results for a person at a terminal.
//
// Nothing that came from data can act on the terminal: control characters are made visible. Texts are UTF-8.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

#include "workbench/output/document.h"
#include "workbench/output/moment.h"
#include "workbench/output/text_rendering.h"

namespace workbench::output {

struct TextOptions {
  const text::Wording& wording;
  int width = 80;                             // columns of the terminal; 0: any number
  bool color = false;                         // also bold titles
  std::optional<std::string> onlyTable = {};  // the key of the only table to show
  bool full = false;                          // long lists and texts are not shortened
  // At which the results were made: shown by some formats; others have to have one, and take it only when it is given.
  std::optional<MomentOfResults> moment = {};
};

// What belongs among the results: tables, notes, and the messages that a procedure wants there. When several commands
// of the job show something, each has a heading.
void writeText(std::ostream& out, const Document& document, const TextOptions& options);

// What belongs on standard error: all other messages of one command, one paragraph each.
void writeDiagnostics(std::ostream& out, const Command& command, const TextOptions& options);

// One message as a paragraph: "Error (line 3, column 14): ...".
void writeMessage(std::ostream& out, const Message& message, const TextOptions& options);

// The style in which texts are resolved for a terminal.
inline constexpr std::size_t longestTerminalList = 20;
inline constexpr TextStyle terminalStyle{NumberStyle::asFormatted, true, longestTerminalList};
inline constexpr TextStyle fullTerminalStyle{NumberStyle::asFormatted, true, 0};
inline const TextStyle& terminalStyleOf(const TextOptions& options) {
  return options.full ? fullTerminalStyle : terminalStyle;
}

// The text in bold, when options ask for it.
std::string emphasized(const std::string& text, const TextOptions& options);

}  // namespace workbench::output
