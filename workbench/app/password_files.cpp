#include "workbench/app/password_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <iostream>

#include "workbench/app/password_prompt.h"
#include "workbench/data/files/openpgp_message.h"
#include "workbench/data/working/password_reference.h"
#include "workbench/output/display_text.h"
#include "workbench/text/wording.h"

namespace workbench::app {

namespace {

using text::sentence;

constexpr const char* terminal = "-";
constexpr std::size_t mostBytes = 4096;  // no password is that long, and what is read may have no end

bool othersCanRead(int descriptor) {
  struct stat status{};
  return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && (status.st_mode & (S_IRGRP | S_IROTH)) != 0;
}

Outcome<Secret> passwordIn(const std::string& path, bool isQuiet) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) {
    return Problem{sentence("The password file cannot be read (^1).", {std::strerror(errno)}), path,
                   sentence("Check its name and rights.")};
  }
  if (othersCanRead(descriptor) && !isQuiet) {
    std::cerr << output::visible(sentence("Warning: Others can read the password file ^1; keep it to yourself (chmod "
                                          "600).",
                                          {path}))
              << '\n';
  }
  Outcome<Secret> password = firstLineOf(descriptor, path);
  ::close(descriptor);
  return password;
}

// The reference to one password; empty when none was asked for.
Outcome<std::string> referenceFrom(const std::optional<std::string>& source, const std::string& prompt, Asking asking,
                                   bool isQuiet) {
  if (!source) return std::string();
  const Outcome<Secret> password = *source == terminal ? askForPassword(prompt, asking) : passwordIn(*source, isQuiet);
  if (!password) return password.problem();
  if (const Outcome<Done> usable = data::checkPassword(*password); !usable) {
    return Problem{usable.problem().what, *source == terminal ? "" : *source, usable.problem().remedy};
  }
  return data::referenceTo(*password);
}

}  // namespace

Outcome<JobPasswords> readPasswords(const PasswordFiles& files, bool isQuiet) {
  JobPasswords passwords;
  const auto read = [&](const std::optional<std::string>& source, const std::string& prompt, Asking asking,
                        std::string& reference) -> Outcome<Done> {
    Outcome<std::string> found = referenceFrom(source, prompt, asking, isQuiet);
    if (!found) return found.problem();
    reference = std::move(*found);
    return Done{};
  };
  const std::string ofData = files.comparison ? sentence("Password of the active dataset") : sentence("Password");
  if (const auto done = read(files.input, ofData, Asking::once, passwords.input); !done) return done.problem();
  const auto compared =
      read(files.comparison, sentence("Password of the comparison dataset"), Asking::once, passwords.comparison);
  if (!compared) return compared.problem();
  const auto written = read(files.output, sentence("New password of the saved data"), Asking::twice, passwords.output);
  if (!written) return written.problem();
  return passwords;
}

Outcome<Secret> firstLineOf(int descriptor, const std::string& name) {
  SecretBuffer buffer(mostBytes);
  std::size_t lineEnd = std::string_view::npos;
  while (lineEnd == std::string_view::npos && buffer.view().size() < mostBytes) {
    const ssize_t bytes = ::read(descriptor, buffer.room(1), mostBytes - buffer.view().size());
    if (bytes < 0 && errno == EINTR) continue;
    if (bytes < 0) {
      return Problem{sentence("The password file cannot be read (^1).", {std::strerror(errno)}), name,
                     sentence("Check its name and rights.")};
    }
    if (bytes == 0) break;
    buffer.taken(static_cast<std::size_t>(bytes));
    lineEnd = buffer.view().find('\n');
  }
  std::string_view line = buffer.view().substr(0, lineEnd);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return Secret(line);
}

}  // namespace workbench::app
