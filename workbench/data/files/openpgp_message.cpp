#include "workbench/data/files/openpgp_message.h"

#include <fmt/format.h>
#include <rnp/rnp_err.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "workbench/data/files/openpgp_framing.h"
#include "workbench/data/files/openpgp_library.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr std::size_t longestPassword = 255;                // in bytes, of the library
constexpr std::size_t bytesHashed = std::size_t{16} << 20;  // for the key of a password: some 50 ms for who tries one

template <class Handle>
struct Closed {
  explicit Closed(rnp_result_t (*closeIt)(Handle)) : close(closeIt) {}
  Closed(const Closed&) = delete;
  Closed& operator=(const Closed&) = delete;
  ~Closed() {
    if (handle != nullptr) close(handle);
  }

  Handle handle = nullptr;
  rnp_result_t (*close)(Handle);
};

// What is read from and where the bytes go; how the one or the other failed, which the library does not keep.
struct Streams {
  int from = -1;
  off_t place = 0;
  std::function<bool(std::string_view)> write;
  int readError = 0;

  static bool read(void* context, void* into, std::size_t room, std::size_t* count) {
    auto& streams = *static_cast<Streams*>(context);
    ssize_t bytes = 0;
    do {
      bytes = ::pread(streams.from, into, room, streams.place);
    } while (bytes < 0 && errno == EINTR);
    if (bytes < 0) {
      streams.readError = errno;
      return false;
    }
    streams.place += bytes;
    *count = static_cast<std::size_t>(bytes);
    return true;
  }

  static bool writeTo(void* context, const void* bytes, std::size_t count) {
    return static_cast<Streams*>(context)->write({static_cast<const char*>(bytes), count});
  }
};

bool givePassword(rnp_ffi_t, void* context, rnp_key_handle_t, const char*, char* into, std::size_t room) {
  const std::string_view password = static_cast<const Secret*>(context)->view();
  if (password.size() + 1 > room) return false;
  std::memcpy(into, password.data(), password.size() + 1);
  return true;
}

Problem libraryProblem(const OpenPgpLibrary& library, rnp_result_t result) {
  return {text::sentence("The OpenPGP library reports: ^1.", {library.rnp_result_to_string(result)}), "", ""};
}

// The library's own objects for one message.
class Session {
 public:
  Session(const OpenPgpLibrary& library, Streams& streams)
      : library_(library),
        ffi_(library.rnp_ffi_destroy),
        input_(library.rnp_input_destroy),
        output_(library.rnp_output_destroy) {
    result_ = library.rnp_ffi_create(&ffi_.handle, "GPG", "GPG");
    if (isOpen()) result_ = library.rnp_input_from_callback(&input_.handle, Streams::read, nullptr, &streams);
    if (isOpen()) result_ = library.rnp_output_to_callback(&output_.handle, Streams::writeTo, nullptr, &streams);
  }

  bool isOpen() const { return result_ == RNP_SUCCESS; }
  Problem problem() const { return libraryProblem(library_, result_); }
  rnp_ffi_t ffi() const { return ffi_.handle; }
  rnp_input_t input() const { return input_.handle; }
  rnp_output_t output() const { return output_.handle; }

 private:
  const OpenPgpLibrary& library_;
  Closed<rnp_ffi_t> ffi_;
  Closed<rnp_input_t> input_;
  Closed<rnp_output_t> output_;
  rnp_result_t result_ = RNP_SUCCESS;
};

// What the library tells of a message that it has decrypted, or has tried to.
struct Finding {
  rnp_result_t result = RNP_SUCCESS;
  std::string protection = "none";  // of the integrity
  bool isIntact = false;
  std::size_t passwords = 0;  // to which the message is encrypted
  std::size_t keys = 0;
};

Finding decrypted(const OpenPgpLibrary& library, const Session& session) {
  Finding finding;
  Closed<rnp_op_verify_t> operation(library.rnp_op_verify_destroy);
  finding.result = library.rnp_op_verify_create(&operation.handle, session.ffi(), session.input(), session.output());
  if (finding.result != RNP_SUCCESS) return finding;
  // Whose signatures stand in it is nothing that we could judge.
  library.rnp_op_verify_set_flags(operation.handle, RNP_VERIFY_IGNORE_SIGS_ON_DECRYPT);
  finding.result = library.rnp_op_verify_execute(operation.handle);
  char* mode = nullptr;
  if (library.rnp_op_verify_get_protection_info(operation.handle, &mode, nullptr, &finding.isIntact) == RNP_SUCCESS &&
      mode != nullptr) {
    finding.protection = mode;
  }
  library.rnp_buffer_destroy(mode);
  library.rnp_op_verify_get_symenc_count(operation.handle, &finding.passwords);
  library.rnp_op_verify_get_recipient_count(operation.handle, &finding.keys);
  return finding;
}

std::string fetchAgain() { return text::sentence("Fetch the file again from where it came from."); }

std::optional<Problem> problemIn(const OpenPgpLibrary& library, const Finding& finding, const InputFile& message) {
  if (finding.result == RNP_SUCCESS && finding.isIntact) return std::nullopt;
  if (isCutOff(message))
    return Problem{text::sentence("The protected file is cut off: its end is missing."), "", fetchAgain()};
  if (finding.protection == "none" && finding.passwords == 0 && finding.keys == 0) {
    const char* const what = finding.result == RNP_SUCCESS
                                 ? "The file is an OpenPGP message that is not encrypted."
                                 : "The file is no OpenPGP message, as its name says it were.";
    return Problem{text::sentence(what), "",
                   text::sentence("Give it the name of what it is, and leave the password out.")};
  }
  if (finding.passwords == 0) {
    return Problem{
        text::sentence("The file is encrypted to somebody's key and not to a password."), "",
        text::sentence("Decrypt it with the program that keeps the key, or have it encrypted to a password.")};
  }
  if (finding.protection == "cfb") {
    return Problem{text::sentence("The file's integrity is not protected: nobody could tell whether it was changed."),
                   "", text::sentence("Encrypt it anew with a program of today.")};
  }
  if (finding.result == RNP_ERROR_BAD_PASSWORD || finding.result == RNP_ERROR_NO_SUITABLE_KEY) {
    return Problem{text::sentence("The password is wrong."), "",
                   text::sentence("Give the one that the file was protected with.")};
  }
  if (finding.result == RNP_ERROR_NOT_SUPPORTED || finding.result == RNP_ERROR_NOT_IMPLEMENTED ||
      finding.result == RNP_ERROR_OUT_OF_MEMORY) {
    return libraryProblem(library, finding.result);
  }
  return Problem{text::sentence("The protected file is damaged: what it holds is not what was encrypted."), "",
                 fetchAgain()};
}

rnp_result_t encrypted(const OpenPgpLibrary& library, const Session& session, const Secret& password) {
  Closed<rnp_op_encrypt_t> operation(library.rnp_op_encrypt_destroy);
  rnp_result_t result =
      library.rnp_op_encrypt_create(&operation.handle, session.ffi(), session.input(), session.output());
  const auto then = [&](const auto& step) {
    if (result == RNP_SUCCESS) result = step();
  };
  then([&] {
    return library.rnp_op_encrypt_add_password(operation.handle, password.view().data(), "SHA256", bytesHashed,
                                               "AES256");
  });
  then([&] { return library.rnp_op_encrypt_set_cipher(operation.handle, "AES256"); });
  // Not the newer kind of integrity protection: programs of many years do not know it.
  then([&] { return library.rnp_op_encrypt_set_aead(operation.handle, "None"); });
  // Who wants the data packed gives the file a name that says so (people.csv.zst.pgp).
  then([&] { return library.rnp_op_encrypt_set_compression(operation.handle, "Uncompressed", 0); });
  then([&] { return library.rnp_op_encrypt_execute(operation.handle); });
  return result;
}

}  // namespace

Outcome<Done> checkPassword(const Secret& password) {
  if (password.empty())
    return Problem{text::sentence("The password is empty."), "", text::sentence("Give one of one character or more.")};
  if (password.view().size() > longestPassword) {
    return Problem{text::sentence("The password has more than ^1 bytes.", {fmt::to_string(longestPassword)}), "",
                   text::sentence("Give a shorter one.")};
  }
  if (password.view().find('\0') != std::string_view::npos) {
    return Problem{text::sentence("The password holds a NUL byte."), "",
                   text::sentence("Give one of characters only.")};
  }
  return Done{};
}

Outcome<Done> decryptMessage(const InputFile& message, const Secret& password, MemoryFile& into) {
  if (const Outcome<Done> checked = checkPassword(password); !checked) return checked;
  const Outcome<const OpenPgpLibrary*> loaded = openPgpLibrary();
  if (!loaded) return loaded.problem();
  const OpenPgpLibrary& library = **loaded;

  Streams streams;
  streams.from = message.descriptor();
  std::optional<Problem> noRoom;
  streams.write = [&](std::string_view bytes) {
    const Outcome<Done> written = into.write(bytes);
    if (!written) noRoom = written.problem();
    return static_cast<bool>(written);
  };
  Finding finding;
  {
    const OpenPgpSilence silence;
    const Session session(library, streams);
    if (!session.isOpen()) return session.problem();
    Secret asked = password;
    library.rnp_ffi_set_pass_provider(session.ffi(), givePassword, &asked);
    finding = decrypted(library, session);
  }
  if (noRoom) return *std::move(noRoom);
  if (streams.readError != 0) {
    return Problem{text::sentence("The file cannot be read (^1).", {std::strerror(streams.readError)}), "",
                   text::sentence("Check the disk that it is on, or copy it to another place.")};
  }
  if (std::optional<Problem> problem = problemIn(library, finding, message)) return *std::move(problem);
  return Done{};
}

Outcome<Done> encryptMessage(const MemoryFile& from, const Secret& password,
                             const std::function<void(std::string_view)>& sink) {
  if (const Outcome<Done> checked = checkPassword(password); !checked) return checked;
  const Outcome<const OpenPgpLibrary*> loaded = openPgpLibrary();
  if (!loaded) return loaded.problem();

  Streams streams;
  streams.from = from.descriptor();
  std::exception_ptr failure;
  streams.write = [&](std::string_view bytes) {
    try {
      sink(bytes);
      return true;
    } catch (...) {
      failure = std::current_exception();  // it cannot pass through the library
      return false;
    }
  };
  rnp_result_t result = RNP_SUCCESS;
  {
    const OpenPgpSilence silence;
    const Session session(**loaded, streams);
    if (!session.isOpen()) return session.problem();
    result = encrypted(**loaded, session, password);
  }
  if (failure) std::rethrow_exception(failure);
  if (result != RNP_SUCCESS) return libraryProblem(**loaded, result);
  return Done{};
}

}  // namespace workbench::data
