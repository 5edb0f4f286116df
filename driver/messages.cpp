#include "driver/messages.h"

#include "host/output.h"

namespace compdatas {

void reportRefusal(std::string_view text) { report(text, BpErrorShow::diagnostics, BpErrorLevel::error); }

void report(std::string_view text, BpErrorShow show, BpErrorLevel level) {
  const BpString message(text, true);
  BpError(message, show, level);
}

}  // namespace compdatas
