#include "workbench/output/message_text.h"

#include <fmt/format.h>

#include "workbench/output/sentences.h"

namespace workbench::output {
namespace {

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

std::string messageLabel(const Message& message, const text::Wording& wording) {
  std::string label = wording.resolve(levelName(message.level));
  if (message.number) label += fmt::format(" {}", *message.number);
  if (message.line) {
    label += fmt::format(
        " ({})", shownSentence(sentences::place,
                               {std::to_string(*message.line), std::to_string(message.column.value_or(1))}, wording));
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
