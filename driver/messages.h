// The few channels through which the procedure speaks to its user.
//
// A fault is reported once, where it is found; whoever finds it returns false, and callers only release and return.
#pragma once

#include <string_view>

#include "host/messages.h"

namespace compdatas {

// A refusal: the command ends after it.
void reportRefusal(std::string_view text);

// Any other message, with the codes it is to be issued with.
void report(std::string_view text, BpErrorShow show, BpErrorLevel level);

}  // namespace compdatas
