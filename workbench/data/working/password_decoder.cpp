#include "workbench/data/working/password_decoder.h"

#include <utility>

#include "workbench/data/working/refusal.h"

namespace workbench::data {
namespace {

PasswordDecoder& theDecoder() {
  static PasswordDecoder decoder;
  return decoder;
}

}  // namespace

void setPasswordDecoder(PasswordDecoder decoder) { theDecoder() = std::move(decoder); }

Outcome<Secret> decodedPassword(std::string_view encoded) {
  if (!theDecoder()) return problem("Encoded passwords cannot be read here; give the password as it is.");
  return theDecoder()(encoded);
}

}  // namespace workbench::data
