#include "workbench/output/terminal_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>
#include <utility>

#include "workbench/output/display_text.h"
#include "workbench/output/message_text.h"
#include "workbench/output/phrase.h"
#include "workbench/output/shown_results.h"
#include "workbench/output/table_layout.h"
#include "workbench/output/terminal_table.h"

namespace workbench::output {
namespace {

constexpr int anyWidth = 1 << 20;  // wider than any line

std::string visibleText(const Text& text, const TextOptions& options) {
  return visible(shown(text, options.wording, terminalStyleOf(options)));
}

void writeParagraph(std::ostream& out, const std::string& text, int width) {
  for (const std::string& line : wrapped(text, width > 0 ? width : anyWidth)) out << line << '\n';
}

std::string_view colorOf(int level) {
  switch (level) {
    case static_cast<int>(BpErrorLevel::note):
      return "\x1b[36m";
    case static_cast<int>(BpErrorLevel::warning):
      return "\x1b[33m";
    case static_cast<int>(BpErrorLevel::severeError):
      return "\x1b[1;31m";
    default:
      return "\x1b[31m";
  }
}

void writeTable(std::ostream& out, const Table& table, const TextOptions& options) {
  const char* separator = "";
  for (const TableLayout& layout : layoutsOf(table, options.wording, terminalStyleOf(options))) {
    out << std::exchange(separator, "\n");
    drawTable(out, layout, options);
  }
}

void writeItem(std::ostream& out, const Item& item, const TextOptions& options) {
  if (const auto* message = std::get_if<Message>(&item)) {
    writeMessage(out, *message, options);
  } else if (const auto* note = std::get_if<Note>(&item)) {
    writeParagraph(out, visible(noteSentence(*note, options.wording, terminalStyle)), options.width);
  } else {
    writeTable(out, *std::get<std::unique_ptr<Table>>(item), options);
  }
}

// The sentence that says what the results come to, before all of them.
void writeAnswer(std::ostream& out, const Answer& answer, const TextOptions& options) {
  const int width = options.width > 0 ? options.width : anyWidth;
  for (const std::string& line : wrapped(shownAnswer(answer, options.wording), width)) {
    out << emphasized(line, options) << '\n';
  }
}

void writeHeading(std::ostream& out, const std::string& name, const TextOptions& options) {
  const std::string heading = visible(name);
  out << emphasized(heading, options) << '\n';
  for (int column = displayWidth(heading); column > 0; --column) out << "\xE2\x95\x90";  // a double line
  out << "\n\n";
}

}  // namespace

void writeText(std::ostream& out, const Document& document, const TextOptions& options) {
  const std::vector<ShownCommand> showing = shownCommands(document, options.onlyTable);
  const char* separator = "";
  for (const ShownCommand& shown : showing) {
    if (showing.size() > 1) {
      out << std::exchange(separator, "");
      writeHeading(out, shown.command->name, options);
    }
    if (shown.answer != nullptr) {
      out << std::exchange(separator, "\n");
      writeAnswer(out, *shown.answer, options);
    }
    for (const Item* item : shown.items) {
      out << std::exchange(separator, "\n");
      writeItem(out, *item, options);
    }
  }
}

void writeDiagnostics(std::ostream& out, const Command& command, const TextOptions& options) {
  for (const Item& item : command.items) {
    const auto* message = std::get_if<Message>(&item);
    if (message != nullptr && !belongsToResults(*message)) writeMessage(out, *message, options);
  }
}

void writeMessage(std::ostream& out, const Message& message, const TextOptions& options) {
  const std::string label = messageLabel(message, options.wording);
  const std::string paragraph = label + ": " + visibleText(message.text, options);
  if (options.color) {
    // The label is cut off again after wrapping, so that its colour takes no columns.
    std::vector<std::string> lines = wrapped(paragraph, options.width > 0 ? options.width : anyWidth);
    if (lines[0].starts_with(label))
      lines[0] = fmt::format("{}{}\x1b[0m{}", colorOf(message.level), label, lines[0].substr(label.size()));
    for (const std::string& line : lines) out << line << '\n';
    return;
  }
  writeParagraph(out, paragraph, options.width);
}

std::string emphasized(const std::string& text, const TextOptions& options) {
  return options.color ? fmt::format("\x1b[1m{}\x1b[0m", text) : text;
}

}  // namespace workbench::output
