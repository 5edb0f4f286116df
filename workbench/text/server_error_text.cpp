// VrixServerErrorText: one numbered text of a message catalog.

#include <fmt/format.h>

#include "host/messages.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/wording.h"

struct VrixServerErrorText::State {
  std::string text;
};

VrixServerErrorText::VrixServerErrorText(std::string_view catalogFile, std::int64_t number)
    : state_(std::make_unique<State>()) {
  using namespace workbench;
  if (journal().isOn()) {
    const std::string name = journal().created(this, "VrixServerErrorText");
    journal().line(fmt::format("{} = VrixServerErrorText({}, {})", name, Journal::quoted(catalogFile), number));
  }
  const std::optional<std::string> known = text::wordingInForce().catalogText(catalogFile, number);
  state_->text = known ? *known
                       : text::sentence("The message catalog ^1 has no text with the number ^2.",
                                        {catalogFile, std::to_string(number)});
}

VrixServerErrorText::~VrixServerErrorText() { workbench::journal().destroyed(this); }

const std::string& VrixServerErrorText::GetText() const {
  using workbench::journal;
  if (journal().isOn()) journal().line(journal().nameOf(this, "VrixServerErrorText") + ".GetText()");
  return state_->text;
}
