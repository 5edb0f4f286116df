// The real gpg, with a home of its own that goes away: what it writes is what we have to open, and the other way round.
#pragma once

#include <fmt/format.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace workbench::tests {

class GnuPg {
 public:
  GnuPg() {
    std::string pattern = (std::filesystem::temp_directory_path() / "gnupg-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder for gpg could be made");
    home_ = pattern;
  }
  ~GnuPg() {
    runs(fmt::format("gpgconf --homedir '{}' --kill all", home_));
    std::error_code ignored;
    std::filesystem::remove_all(home_, ignored);
  }
  GnuPg(const GnuPg&) = delete;
  GnuPg& operator=(const GnuPg&) = delete;

  // Encrypts a file to a password, as `gpg --symmetric` does with these options.
  void encrypt(const std::string& plain, const std::string& message, const std::string& password,
               const std::string& options = "") const {
    // So that tests do not wait for what is meant to take time.
    const char* const rounds = options.find("s2k") == std::string::npos ? "--s2k-count 65536" : "";
    if (!gpg(password, fmt::format("{} {} --output '{}' --symmetric '{}'", rounds, options, message, plain))) {
      throw std::runtime_error("gpg did not encrypt " + plain);
    }
  }
  // What gpg makes of a message; empty when it refuses it.
  std::string decrypted(const std::string& message, const std::string& password) const {
    const std::string plain = home_ + "/plain";
    if (!gpg(password, fmt::format("--output '{}' --decrypt '{}'", plain, message))) return {};
    std::ifstream file(plain, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  // What gpg tells of the message's packets.
  std::string packets(const std::string& message, const std::string& password) const {
    const std::string listing = home_ + "/packets";
    gpg(password, fmt::format("--list-packets '{}' > '{}' 2>&1", message, listing), "");
    std::ifstream file(listing);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  bool gpg(const std::string& password, const std::string& arguments, const std::string& quiet = "2>/dev/null") const {
    std::ofstream(home_ + "/password") << password << '\n';
    return runs(
        fmt::format("gpg --homedir '{0}' --batch --yes --quiet --no-symkey-cache --pinentry-mode loopback "
                    "--passphrase-file '{0}/password' {1} {2}",
                    home_, arguments, quiet));
  }
  static bool runs(const std::string& command) { return std::system(command.c_str()) == 0; }

  std::string home_;
};

}  // namespace workbench::tests
