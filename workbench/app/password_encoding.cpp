#include "workbench/app/password_encoding.h"

#include <sodium.h>

#include <algorithm>
#include <vector>

#include "workbench/app/password_key.h"
#include "workbench/text/wording.h"

namespace workbench::app {

namespace {

using text::sentence;
using Bytes = std::vector<unsigned char>;

// What an encoded password is made of, one after the other, written as letters, digits, "-" and "_".
constexpr std::string_view beginning = "encoded-1-";
constexpr std::size_t markBytes = 8;  // tells the key from others
constexpr std::size_t nonceBytes = crypto_aead_xchacha20poly1305_ietf_NPUBBYTES;
constexpr std::size_t tagBytes = crypto_aead_xchacha20poly1305_ietf_ABYTES;
constexpr int alphabet = sodium_base64_VARIANT_URLSAFE_NO_PADDING;

const unsigned char* bytesOf(std::string_view text) { return reinterpret_cast<const unsigned char*>(text.data()); }

Bytes markOf(const Secret& key) {
  constexpr std::string_view purpose = "compare-datasets password key";
  Bytes mark(crypto_generichash_BYTES);
  ::crypto_generichash(mark.data(), mark.size(), bytesOf(purpose), purpose.size(), bytesOf(key.view()),
                       key.view().size());
  mark.resize(markBytes);
  return mark;
}

Problem noEncodedPassword() {
  return {sentence("ENCRYPTEDPW=YES takes passwords that were encoded, and this is none."), "",
          sentence("Encode the password with compare-datasets encode-password, or leave ENCRYPTEDPW out.")};
}

}  // namespace

Outcome<std::string> encodedPassword(const Secret& password) {
  const Outcome<Secret> key = passwordKey(MissingKey::make);
  if (!key) return key.problem();
  Bytes all = markOf(*key);
  all.resize(markBytes + nonceBytes + password.view().size() + tagBytes);
  unsigned char* const nonce = all.data() + markBytes;
  ::randombytes_buf(nonce, nonceBytes);
  ::crypto_aead_xchacha20poly1305_ietf_encrypt(nonce + nonceBytes, nullptr, bytesOf(password.view()),
                                               password.view().size(), all.data(), markBytes, nullptr, nonce,
                                               bytesOf(key->view()));
  std::string encoded(::sodium_base64_encoded_len(all.size(), alphabet), '\0');
  ::sodium_bin2base64(encoded.data(), encoded.size(), all.data(), all.size(), alphabet);
  encoded.pop_back();  // the NUL behind it
  return std::string(beginning) + encoded;
}

Outcome<Secret> decodedPassword(std::string_view encoded) {
  if (!encoded.starts_with(beginning)) return noEncodedPassword();
  encoded.remove_prefix(beginning.size());
  Bytes all(encoded.size());
  std::size_t size = 0;
  if (::sodium_base642bin(all.data(), all.size(), encoded.data(), encoded.size(), nullptr, &size, nullptr, alphabet) !=
          0 ||
      size < markBytes + nonceBytes + tagBytes) {
    return noEncodedPassword();
  }
  const Outcome<Secret> key = passwordKey(MissingKey::leave);
  if (!key) return key.problem();
  const Bytes mark = key->empty() ? Bytes() : markOf(*key);
  if (!std::equal(mark.begin(), mark.end(), all.begin(), all.begin() + markBytes)) {
    return Problem{sentence("The password was encoded with another key: by another user, or on another machine."), "",
                   sentence("Encode it here, with compare-datasets encode-password.")};
  }
  const unsigned char* const nonce = all.data() + markBytes;
  const std::size_t sealed = size - markBytes - nonceBytes;
  SecretBuffer password(sealed);
  auto* const room = reinterpret_cast<unsigned char*>(password.room(sealed - tagBytes));
  if (::crypto_aead_xchacha20poly1305_ietf_decrypt(room, nullptr, nullptr, nonce + nonceBytes, sealed, all.data(),
                                                   markBytes, nonce, bytesOf(key->view())) != 0) {
    return Problem{sentence("The encoded password is damaged: it is not what was encoded."), "",
                   sentence("Copy it again, or encode the password anew.")};
  }
  password.taken(sealed - tagBytes);
  return password.secret();
}

}  // namespace workbench::app
