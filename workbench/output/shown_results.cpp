#include "workbench/output/shown_results.h"

#include <fmt/format.h>

#include <utility>

#include "workbench/output/sentences.h"

namespace workbench::output {
namespace {

bool isShownTable(const Table& table, const std::optional<std::string>& onlyTable) {
  return !table.destroyed && !table.cells.empty() && (!onlyTable || keyOf(table) == *onlyTable);
}

bool isShown(const Item& item, const std::optional<std::string>& onlyTable) {
  if (const Table* table = tableOf(item)) return isShownTable(*table, onlyTable);
  if (onlyTable) return false;
  const auto* message = std::get_if<Message>(&item);
  return message == nullptr || belongsToResults(*message);
}

std::string_view levelName(int level) {
  switch (level) {
    case static_cast<int>(BpErrorLevel::note):
      return sentences::note;
    case static_cast<int>(BpErrorLevel::warning):
      return sentences::warning;
    case static_cast<int>(BpErrorLevel::severeError):
      return sentences::severeError;
    default:
      return sentences::error;
  }
}

}  // namespace

std::vector<ShownCommand> shownCommands(const Document& document, const std::optional<std::string>& onlyTable) {
  std::vector<ShownCommand> showing;
  for (const std::unique_ptr<Command>& command : document.commands) {
    ShownCommand shown{command.get(), {}};
    for (const Item& item : command->items) {
      if (isShown(item, onlyTable)) shown.items.push_back(&item);
    }
    if (!shown.items.empty()) showing.push_back(std::move(shown));
  }
  return showing;
}

const Table* tableOf(const Item& item) {
  const auto* table = std::get_if<std::unique_ptr<Table>>(&item);
  return table != nullptr ? table->get() : nullptr;
}

std::string_view keyOf(const Table& table) {
  const auto* key = std::get_if<StringText>(&table.title.held);
  return key != nullptr ? std::string_view(key->key) : std::string_view();
}

bool belongsToResults(const Message& message) { return message.show == static_cast<int>(BpErrorShow::results); }

std::string messageLabel(const Message& message, const text::Wording& wording) {
  std::string label = wording.resolve(levelName(message.level));
  if (message.number) label += fmt::format(" {}", *message.number);
  if (message.line) {
    const std::string line = std::to_string(*message.line);
    const std::string column = std::to_string(message.column.value_or(1));
    label += fmt::format(" ({})", shownSentence(sentences::place, {line, column}, wording));
  }
  return label;
}

std::string noteSentence(const Note& note, const text::Wording& wording, TextStyle style) {
  const std::string first = shown(note.texts[0], wording, style);
  const std::string second = shown(note.texts[1], wording, style);
  const std::string third = shown(note.texts[2], wording, style);
  if (note.group == static_cast<int>(BpNoteKind::savedFile)) {
    return shownSentence(sentences::savedFile, {first, third}, wording);
  }
  if (note.group == static_cast<int>(BpNoteKind::addedVariable)) {
    return shownSentence(sentences::addedVariable, {third}, wording);
  }
  std::string all;
  for (const std::string& text : {first, second, third}) {
    if (!all.empty() && !text.empty()) all += ' ';
    all += text;
  }
  return all;
}

}  // namespace workbench::output
