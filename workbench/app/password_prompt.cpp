#include "workbench/app/password_prompt.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "workbench/runtime/interruption.h"
#include "workbench/text/wording.h"

namespace workbench::app {

namespace {

using text::sentence;

// The terminal without echo for as long as this lives. It gives every key as it is pressed, also those that would end
// the process and leave the terminal as it is now.
class SilentTerminal {
 public:
  explicit SilentTerminal(int descriptor) : descriptor_(descriptor) {
    isSilent_ = ::tcgetattr(descriptor_, &former_) == 0;
    if (!isSilent_) return;
    termios silent = former_;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL | ICANON | ISIG | IEXTEN);
    silent.c_cc[VMIN] = 1;
    silent.c_cc[VTIME] = 0;
    // A request to terminate ends the process at once and no destructor runs; the echo comes back all the same.
    beforeInterruptedEnd([this] { ::tcsetattr(descriptor_, TCSANOW, &former_); });
    isSilent_ = ::tcsetattr(descriptor_, TCSAFLUSH, &silent) == 0;
  }
  SilentTerminal(const SilentTerminal&) = delete;
  SilentTerminal& operator=(const SilentTerminal&) = delete;
  ~SilentTerminal() {
    if (isSilent_) ::tcsetattr(descriptor_, TCSAFLUSH, &former_);
    beforeInterruptedEnd({});
  }

  bool isSilent() const { return isSilent_; }
  // How the terminal was before, and which keys do what.
  const termios& former() const { return former_; }

 private:
  int descriptor_;
  termios former_{};
  bool isSilent_ = false;
};

void show(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written < 0) return;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

Problem noTerminal() {
  return {sentence("There is no terminal to ask for a password on."), "",
          sentence("Name a file that holds the password instead of -.")};
}

// Takes away the last character, which may be several bytes.
void takeBack(SecretBuffer& line) {
  std::size_t size = line.view().size();
  const auto isContinuation = [&] { return (static_cast<unsigned char>(line.view()[size - 1]) & 0xC0U) == 0x80U; };
  while (size > 0 && isContinuation()) --size;
  line.cut(size > 0 ? size - 1 : 0);
}

// One line from the terminal; a problem when it was broken off.
Outcome<Secret> readLine(int descriptor, const termios& keys) {
  SecretBuffer line;
  for (;;) {
    unsigned char key = 0;
    const ssize_t bytes = ::read(descriptor, &key, 1);
    if (bytes < 0 && errno == EINTR) continue;
    const bool isBrokenOff = bytes <= 0 || key == keys.c_cc[VINTR] || key == keys.c_cc[VQUIT];
    if (isBrokenOff) return Problem{sentence("No password was given."), "", ""};
    if (key == '\n' || key == '\r' || key == keys.c_cc[VEOF]) return line.secret();
    if (key == keys.c_cc[VERASE] || key == '\b') {
      takeBack(line);
    } else if (key == keys.c_cc[VKILL]) {
      line.cut(0);
    } else {
      line.append({reinterpret_cast<const char*>(&key), 1});
    }
  }
}

Outcome<Secret> ask(int descriptor, const std::string& prompt) {
  const SilentTerminal silent(descriptor);
  if (!silent.isSilent()) return noTerminal();
  show(descriptor, prompt + ": ");
  Outcome<Secret> line = readLine(descriptor, silent.former());
  show(descriptor, "\n");
  return line;
}

Outcome<Secret> askAt(int descriptor, const std::string& prompt, Asking asking) {
  Outcome<Secret> password = ask(descriptor, prompt);
  if (!password || asking == Asking::once) return password;
  const Outcome<Secret> again = ask(descriptor, sentence("The same once more"));
  if (!again) return again;
  if (again->view() == password->view()) return password;
  return Problem{sentence("The two passwords are not the same."), "", sentence("Try again.")};
}

}  // namespace

Outcome<Secret> askForPassword(const std::string& prompt, Asking asking) {
  const int descriptor = ::open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (descriptor < 0) return noTerminal();
  Outcome<Secret> password = askAt(descriptor, prompt, asking);
  ::close(descriptor);
  return password;
}

}  // namespace workbench::app
