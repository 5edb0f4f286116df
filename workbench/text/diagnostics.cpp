#include "workbench/text/diagnostics.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace workbench::text {

void Diagnostics::sendToStandardError() {
  sink_ = [](std::string_view line) {
    std::string shown(line);
    const auto isControl = [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; };
    std::replace_if(shown.begin(), shown.end(), isControl, '?');
    fmt::print(stderr, "{}\n", shown);
  };
}

Diagnostics& diagnostics() {
  static Diagnostics theDiagnostics;
  return theDiagnostics;
}

}  // namespace workbench::text
