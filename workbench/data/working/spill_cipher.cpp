#include "workbench/data/working/spill_cipher.h"

#include <sodium.h>

#include <cstring>

#include "workbench/data/working/refusal.h"

namespace workbench::data {
namespace {

using Nonce = std::array<unsigned char, crypto_aead_xchacha20poly1305_ietf_NPUBBYTES>;

// No two pages and no two versions of one have the same under one key.
Nonce nonceOf(std::uint64_t page, std::uint32_t version) {
  Nonce nonce{};
  std::memcpy(nonce.data(), &page, sizeof page);
  std::memcpy(nonce.data() + sizeof page, &version, sizeof version);
  return nonce;
}

const unsigned char* bytesOf(const char* text) { return reinterpret_cast<const unsigned char*>(text); }
unsigned char* bytesOf(char* text) { return reinterpret_cast<unsigned char*>(text); }

}  // namespace

SpillCipher::SpillCipher() {
  static_assert(sealedBytes - pageBytes == crypto_aead_xchacha20poly1305_ietf_ABYTES);
  static_assert(sizeof key_ == crypto_aead_xchacha20poly1305_ietf_KEYBYTES);
  if (::sodium_init() < 0) refuse("The system gives no random numbers.");
  ::randombytes_buf(key_.data(), key_.size());
}

SpillCipher::~SpillCipher() { ::sodium_memzero(key_.data(), key_.size()); }

void SpillCipher::seal(std::uint64_t page, const char* plain, char* sealed) {
  if (page >= versions_.size()) versions_.resize(page + 1);
  const Nonce nonce = nonceOf(page, ++versions_[page]);
  ::crypto_aead_xchacha20poly1305_ietf_encrypt(bytesOf(sealed), nullptr, bytesOf(plain), pageBytes, nullptr, 0, nullptr,
                                               nonce.data(), key_.data());
}

bool SpillCipher::open(std::uint64_t page, const char* sealed, char* plain) const {
  const Nonce nonce = nonceOf(page, versions_[page]);
  return ::crypto_aead_xchacha20poly1305_ietf_decrypt(bytesOf(plain), nullptr, nullptr, bytesOf(sealed), sealedBytes,
                                                      nullptr, 0, nonce.data(), key_.data()) == 0;
}

}  // namespace workbench::data
