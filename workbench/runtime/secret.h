// Secret: a text that nobody is to find in memory once it was used, a password above all.
//
// All copies share one piece of memory, which is overwritten when the last of them goes. Texts that have to pass
// through a std::string (a command's tokens) are overwritten with wipe().
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace workbench {

class Secret {
 public:
  Secret() = default;  // empty, as is one of an empty text
  Secret(std::string_view text);
  Secret(const char* text) : Secret(std::string_view(text)) {}

  bool empty() const { return text_ == nullptr; }
  // Valid as long as any copy; a NUL stands behind the text.
  std::string_view view() const;

 private:
  class Bytes;
  std::shared_ptr<const Bytes> text_;
};

// Gathers a secret bit by bit, as it comes from a file or a terminal.
class SecretBuffer {
 public:
  explicit SecretBuffer(std::size_t room = 256);
  ~SecretBuffer();
  SecretBuffer(const SecretBuffer&) = delete;
  SecretBuffer& operator=(const SecretBuffer&) = delete;

  // Room behind what was gathered, at least `bytes` of it, to be written to; then taken() says how much was.
  char* room(std::size_t bytes);
  void taken(std::size_t bytes) { size_ += bytes; }
  void append(std::string_view text);
  std::string_view view() const { return {bytes_, size_}; }
  // Keeps the first `size` bytes. Requires: there are as many.
  void cut(std::size_t size) { size_ = size; }
  Secret secret() const { return Secret(view()); }

 private:
  char* bytes_;
  std::size_t size_ = 0;
  std::size_t capacity_;
};

// Overwrites all that the text's memory holds, and leaves it empty.
void wipe(std::string& text) noexcept;

}  // namespace workbench
