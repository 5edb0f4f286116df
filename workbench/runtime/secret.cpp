#include "workbench/runtime/secret.h"

#include <algorithm>
#include <cstring>

namespace workbench {
namespace {

void wipeAndFree(char* bytes, std::size_t size) noexcept {
  ::explicit_bzero(bytes, size);
  delete[] bytes;
}

}  // namespace

class Secret::Bytes {
 public:
  explicit Bytes(std::string_view text) : bytes_(new char[text.size() + 1]), size_(text.size()) {
    std::copy(text.begin(), text.end(), bytes_);
    bytes_[size_] = '\0';
  }
  Bytes(const Bytes&) = delete;
  Bytes& operator=(const Bytes&) = delete;
  ~Bytes() { wipeAndFree(bytes_, size_); }

  std::string_view view() const { return {bytes_, size_}; }

 private:
  char* bytes_;
  std::size_t size_;
};

Secret::Secret(std::string_view text) : text_(text.empty() ? nullptr : std::make_shared<const Bytes>(text)) {}

std::string_view Secret::view() const { return text_ == nullptr ? std::string_view("") : text_->view(); }

SecretBuffer::SecretBuffer(std::size_t room) : bytes_(new char[room]), capacity_(room) {}

SecretBuffer::~SecretBuffer() { wipeAndFree(bytes_, capacity_); }

char* SecretBuffer::room(std::size_t bytes) {
  if (size_ + bytes > capacity_) {
    const std::size_t larger = std::max(size_ + bytes, capacity_ * 2);
    char* const moved = new char[larger];
    std::copy_n(bytes_, size_, moved);
    wipeAndFree(bytes_, capacity_);
    bytes_ = moved;
    capacity_ = larger;
  }
  return bytes_ + size_;
}

void SecretBuffer::append(std::string_view text) {
  std::copy(text.begin(), text.end(), room(text.size()));
  taken(text.size());
}

void wipe(std::string& text) noexcept {
  text.resize(text.capacity());  // no more than there is room for, so nothing moves
  ::explicit_bzero(text.data(), text.size());
  text.clear();
}

}  // namespace workbench
