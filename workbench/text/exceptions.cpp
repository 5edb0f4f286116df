// The two exceptions that cross the boundary. Their key functions stand here, in the host, so that a procedure and the
// host agree on their types.

#include <utility>

#include "host/messages.h"
#include "workbench/runtime/journal.h"

ErrorText::ErrorText(std::string text) : text_(std::move(text)) {}

ErrorText::~ErrorText() = default;

const char* ErrorText::what() const noexcept { return text_.c_str(); }

VrixGoToCaller::VrixGoToCaller() {
  if (workbench::journal().isOn()) workbench::journal().line("throw VrixGoToCaller()");
}

VrixGoToCaller::~VrixGoToCaller() = default;
