// How a password that was encoded by the host's own encoder becomes plain again.
//
// The encoder's key lies with the user's configuration, which is no business of the data: whoever knows it sets the
// decoder. Until then encoded passwords are refused.
#pragma once

#include <functional>
#include <string_view>

#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

using PasswordDecoder = std::function<Outcome<Secret>(std::string_view encoded)>;

void setPasswordDecoder(PasswordDecoder decoder);
Outcome<Secret> decodedPassword(std::string_view encoded);

}  // namespace workbench::data
