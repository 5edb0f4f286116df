#include "workbench/app/terminal_width.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <string_view>

namespace workbench::app {

std::optional<int> terminalWidth(int descriptor) {
  if (const char* columns = std::getenv("COLUMNS")) {
    const std::string_view text(columns);
    int width = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), width);
    if (error == std::errc() && end == text.data() + text.size() && width > 0) return width;
  }
  winsize window{};
  if (isatty(descriptor) != 0 && ioctl(descriptor, TIOCGWINSZ, &window) == 0 && window.ws_col > 0) {
    return window.ws_col;
  }
  return std::nullopt;
}

}  // namespace workbench::app
