// The messages of host/messages.h: each is appended to the document of the command that is running.

#include "host/messages.h"

#include <fmt/format.h>

#include <utility>

#include "host/output.h"
#include "workbench/output/call_text.h"
#include "workbench/output/document.h"
#include "workbench/output/text_access.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/diagnostics.h"
#include "workbench/text/wording.h"

namespace {

using namespace workbench;

output::Command& commandInForce() {
  if (currentRun().command == nullptr) {
    throw ErrorText(text::sentence("A message was issued while no command was running."));
  }
  return *currentRun().command;
}

std::string asArgument(const BpCellText& text) { return output::asArgument(output::textOf(text)); }

output::Text plainText(std::string words) { return {output::StringText{std::move(words), false}}; }

}  // namespace

void BpError(const BpCellText& text, BpErrorShow show, BpErrorLevel level) {
  if (journal().isOn()) {
    journal().line(
        fmt::format("BpError({}, {}, {})", asArgument(text), static_cast<int>(show), static_cast<int>(level)));
  }
  output::Message message;
  message.show = static_cast<int>(show);
  message.level = static_cast<int>(level);
  message.text = output::textOf(text);
  commandInForce().items.emplace_back(std::move(message));
}

void AddNotesWithGroup(BpNoteKind group, const BpCellText& first, const BpCellText& second, const BpCellText& third) {
  if (journal().isOn()) {
    journal().line(fmt::format("AddNotesWithGroup({}, {}, {}, {})", static_cast<int>(group), asArgument(first),
                               asArgument(second), asArgument(third)));
  }
  commandInForce().items.emplace_back(
      output::Note{static_cast<int>(group), {output::textOf(first), output::textOf(second), output::textOf(third)}});
}

void BACKENDERROR(const std::int64_t& number, const std::int64_t& show, const std::int64_t& level) {
  if (journal().isOn()) journal().line(fmt::format("BACKENDERROR({}, {}, {})", number, show, level));
  output::Message message;
  message.show = static_cast<int>(show);
  message.level = static_cast<int>(level);
  message.number = number;
  message.text = plainText(text::wordingInForce().errorText(number).value_or(std::to_string(number)));
  commandInForce().items.emplace_back(std::move(message));
  const Journal::Pause pause(journal());
  pvGetCmnGlb()->pendingError = number != 0 ? number : -1;
}

void BP_ToFront(std::int64_t code, const BP_Character& line) {
  if (journal().isOn()) journal().line(fmt::format("BP_ToFront({}, {})", code, Journal::quoted(line.text)));
  text::diagnostics().write(line.text);
}
