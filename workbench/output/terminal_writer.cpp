#include "workbench/output/terminal_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>
#include <utility>

#include "workbench/output/display_text.h"
#include "workbench/output/sentences.h"
#include "workbench/output/table_layout.h"
#include "workbench/output/terminal_table.h"

namespace workbench::output {
namespace {

constexpr int anyWidth = 1 << 20;  // wider than any line

bool belongsToResults(const Message& message) { return message.show == static_cast<int>(BpErrorShow::results); }

bool isShownTable(const Table& table, const TextOptions& options) {
  if (table.destroyed || table.cells.empty()) return false;
  const auto* key = std::get_if<StringText>(&table.title.held);
  return !options.onlyTable || (key != nullptr && key->key == *options.onlyTable);
}

bool isShown(const Item& item, const TextOptions& options) {
  if (const auto* table = std::get_if<std::unique_ptr<Table>>(&item)) return isShownTable(**table, options);
  if (options.onlyTable) return false;
  const auto* message = std::get_if<Message>(&item);
  return message == nullptr || belongsToResults(*message);
}

std::string visibleText(const Text& text, const TextOptions& options) {
  return visible(shown(text, options.wording, terminalStyleOf(options)));
}

void writeParagraph(std::ostream& out, const std::string& text, int width) {
  for (const std::string& line : wrapped(text, width > 0 ? width : anyWidth)) out << line << '\n';
}

struct Level {
  std::string_view name;
  std::string_view color;
};

Level levelOf(int level) {
  switch (level) {
    case static_cast<int>(BpErrorLevel::note):
      return {sentences::note, "\x1b[36m"};
    case static_cast<int>(BpErrorLevel::warning):
      return {sentences::warning, "\x1b[33m"};
    case static_cast<int>(BpErrorLevel::severeError):
      return {sentences::severeError, "\x1b[1;31m"};
    default:
      return {sentences::error, "\x1b[31m"};
  }
}

std::string noteSentence(const Note& note, const TextOptions& options) {
  const std::string first = visibleText(note.texts[0], options);
  const std::string second = visibleText(note.texts[1], options);
  const std::string third = visibleText(note.texts[2], options);
  if (note.group == static_cast<int>(BpNoteKind::savedFile)) {
    return shownSentence(sentences::savedFile, {first, third}, options.wording);
  }
  if (note.group == static_cast<int>(BpNoteKind::addedVariable)) {
    return shownSentence(sentences::addedVariable, {third}, options.wording);
  }
  std::string all;
  for (const std::string& text : {first, second, third}) {
    if (!all.empty() && !text.empty()) all += ' ';
    all += text;
  }
  return all;
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
    writeParagraph(out, noteSentence(*note, options), options.width);
  } else {
    writeTable(out, *std::get<std::unique_ptr<Table>>(item), options);
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
  std::vector<const Command*> showing;
  for (const std::unique_ptr<Command>& command : document.commands) {
    const bool shows = std::any_of(command->items.begin(), command->items.end(),
                                   [&](const Item& item) { return isShown(item, options); });
    if (shows) showing.push_back(command.get());
  }
  const char* separator = "";
  for (const Command* command : showing) {
    if (showing.size() > 1) {
      out << std::exchange(separator, "");
      writeHeading(out, command->name, options);
    }
    for (const Item& item : command->items) {
      if (!isShown(item, options)) continue;
      out << std::exchange(separator, "\n");
      writeItem(out, item, options);
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
  const Level level = levelOf(message.level);
  std::string label = options.wording.resolve(level.name);
  if (message.number) label += fmt::format(" {}", *message.number);
  if (message.line) {
    label +=
        fmt::format(" ({})", shownSentence(sentences::place,
                                           {std::to_string(*message.line), std::to_string(message.column.value_or(1))},
                                           options.wording));
  }
  std::string paragraph = label + ": " + visibleText(message.text, options);
  if (options.color) {
    // The label is cut off again after wrapping, so that its colour takes no columns.
    std::vector<std::string> lines = wrapped(paragraph, options.width > 0 ? options.width : anyWidth);
    if (lines[0].starts_with(label))
      lines[0] = fmt::format("{}{}\x1b[0m{}", level.color, label, lines[0].substr(label.size()));
    for (const std::string& line : lines) out << line << '\n';
    return;
  }
  writeParagraph(out, paragraph, options.width);
}

std::string emphasized(const std::string& text, const TextOptions& options) {
  return options.color ? fmt::format("\x1b[1m{}\x1b[0m", text) : text;
}

}  // namespace workbench::output
