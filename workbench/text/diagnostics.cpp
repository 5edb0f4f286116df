#include "workbench/text/diagnostics.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>

namespace workbench::text {

void Diagnostics::sendToStandardError(std::function<void()> beforeLine) {
  sink_ = [beforeLine = std::move(beforeLine)](std::string_view line) {
    if (beforeLine) beforeLine();
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
